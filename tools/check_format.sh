#!/bin/sh
# Every source as .clang-format wants it. `check_format.sh --fix` writes it so.
set -eu
cd "$(dirname "$(readlink -f "$0")")/.."
sources=$(find . \( -path ./build -o -path './.*' \) -prune -o \( -name '*.cpp' -o -name '*.h' \) -print)
# shellcheck disable=SC2086
if [ "${1:-}" = --fix ]; then exec clang-format -i $sources; fi
# shellcheck disable=SC2086
if clang-format --dry-run -Werror $sources; then
  echo "ok - format"
else
  echo "not ok - format; tools/check_format.sh --fix mends it"
  exit 1
fi
