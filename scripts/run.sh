#!/usr/bin/env bash
# Builds Zelvo when needed and runs the command-line host with the given
# arguments. Without arguments it lists the persons of the default book
# ($XDG_DATA_HOME/zelvo/AddressBookW.mdb), making the book first when it is
# missing.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$("$root/scripts/build.sh" | tail -n 1)
if (($# == 0)); then
  data="${XDG_DATA_HOME:-$HOME/.local/share}/zelvo"
  if [[ ! -f "$data/AddressBookW.mdb" ]]; then
    "$dir/bin/zelvo" --app-path "$data" correct-db
  fi
  exec "$dir/bin/zelvo" --app-path "$data" list
fi
exec "$dir/bin/zelvo" "$@"
