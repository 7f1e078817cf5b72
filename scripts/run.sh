#!/usr/bin/env bash
# Builds Zelvo when needed and runs the command-line host with the given
# arguments. Without arguments it shows the tables of the default book,
# creating the book when it is missing.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$("$root/scripts/build.sh" | tail -n 1)
if (($# == 0)); then
  data="${XDG_DATA_HOME:-$HOME/.local/share}/zelvo"
  mkdir -p "$data"
  db="$data/AddressBookW.mdb"
  create=()
  [[ -f "$db" ]] || create=(--create)
  exec "$dir/bin/zelvo" sql --db "$db" "${create[@]}" "Select * from PersonalData"
fi
exec "$dir/bin/zelvo" "$@"
