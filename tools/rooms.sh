#!/bin/sh
# rooms.sh [TREE]: the folders that cmake/rooms.cmake names, one to a line.
cd "${1:-$(dirname "$(readlink -f "$0")")/..}" && sed -n 's/^room(\([a-z0-9_/]*\).*/\1/p' cmake/rooms.cmake
