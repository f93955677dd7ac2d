#!/bin/sh
# check_layering.sh [TREE]: holds the sources to the table of rooms in cmake/rooms.cmake. Prints one
# line for each breach and fails when there is one.
set -eu
here=$(dirname "$(readlink -f "$0")")
cd "${1:-$here/..}"

rooms=" $("$here/rooms.sh" . | tr '\n' ' ')"
[ "$rooms" != ' ' ] || { echo "cmake/rooms.cmake names no room"; exit 1; }

# Folders that are no rooms: data, and sources that belong to no program. Every other folder with
# sources, at whatever depth, is a room of its own.
outside='^(res|tests|bench|fuzz|tools|build|\..*)(/|$)'
sources=$(find . \( -path ./build -o -path './.*' \) -prune -o \( -name '*.cpp' -o -name '*.h' \) -print |
  sed 's|^\./||' | LC_ALL=C sort)
status=0
inside=''
for folder in $(echo "$sources" | sed 's|/*[^/]*$||' | LC_ALL=C sort -u); do
  if echo "$folder" | grep -qE "$outside"; then continue; fi
  case $rooms in
    *" $folder "*) inside="$inside $(echo "$sources" | grep -E "^$folder/[^/]*$" | tr '\n' ' ')" ;;
    *)
      echo "$folder: has sources but no row in cmake/rooms.cmake"
      status=1
      ;;
  esac
done
[ -n "$inside" ] || { echo "no room has a source"; exit 1; }
# shellcheck disable=SC2086
LC_ALL=C awk -f "$here/check_layering.awk" cmake/rooms.cmake $inside || status=1
exit $status
