#!/usr/bin/env bash
# Builds Zelvo when needed and runs the command-line host with the given
# arguments. Without arguments it opens the address book window
# (zelvo-desktop) on the default book ($XDG_DATA_HOME/zelvo/AddressBookW.mdb)
# when a display is available, and otherwise lists its persons; either way
# the book is made first when it is missing.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$("$root/scripts/build.sh" | tail -n 1)
if (($# == 0)); then
  data="${XDG_DATA_HOME:-$HOME/.local/share}/zelvo"
  if [[ ! -f "$data/AddressBookW.mdb" ]]; then
    "$dir/bin/zelvo" --app-path "$data" correct-db
  fi
  if [[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" && -x "$dir/bin/zelvo-desktop" ]]; then
    exec "$dir/bin/zelvo-desktop" --app-path "$data"
  fi
  exec "$dir/bin/zelvo" --app-path "$data" list
fi
exec "$dir/bin/zelvo" "$@"
