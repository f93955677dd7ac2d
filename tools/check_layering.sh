#!/bin/sh
# check_layering.sh [TREE]: holds the sources to the table of rooms in cmake/rooms.cmake. Prints one
# line for each breach and fails when there is one.
set -eu
here=$(dirname "$(readlink -f "$0")")
cd "${1:-$here/..}"

rooms=$(sed -n 's/^room(\([a-z0-9]*\).*/\1/p' cmake/rooms.cmake | tr '\n' ' ')
[ -n "$rooms" ] || { echo "cmake/rooms.cmake names no room"; exit 1; }

# Folders that are no rooms: data, and sources that belong to no program.
outside='res tests bench fuzz tools build'
status=0
for folder in */; do
  folder=${folder%/}
  case " $rooms $outside " in *" $folder "*) continue ;; esac
  if find "$folder" -name '*.cpp' -o -name '*.h' | grep -q .; then
    echo "$folder: has sources but no row in cmake/rooms.cmake"
    status=1
  fi
done

# shellcheck disable=SC2086
sources=$(for room in $rooms; do
  [ ! -d "$room" ] || find "$room" -name '*.cpp' -o -name '*.h'
done | LC_ALL=C sort)
[ -n "$sources" ] || { echo "no room has a source"; exit 1; }
# shellcheck disable=SC2086
LC_ALL=C awk -f "$here/check_layering.awk" cmake/rooms.cmake $sources || status=1
exit $status
