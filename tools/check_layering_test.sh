#!/bin/sh
# The layering check on this tree, and on small trees made to break each of its rules: a check that
# cannot fail guards nothing. One line "ok" or "not ok" each.
# shellcheck disable=SC2059  # the texts are formats on purpose: their line ends
set -eu
here=$(dirname "$(readlink -f "$0")")
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
status=0

result() {
  if [ "$1" = 0 ]; then echo "ok - $2"; else echo "not ok - $2"; status=1; fi
}

# fresh: a tree of rooms, one with others inside it, that breaks nothing.
fresh() {
  rm -rf "${tree:?}"/*
  mkdir -p "$tree/cmake" "$tree/base" "$tree/gps" "$tree/platform/win32" "$tree/app/session" \
    "$tree/app/win32" "$tree/cli" "$tree/tests/app"
  printf 'room(%s)\n' base 'platform base' 'platform/win32 platform base' 'gps platform base' \
    'app/session gps base' 'app/win32 app/session gps base' 'cli app/session' >"$tree/cmake/rooms.cmake"
  printf '#pragma once\n#include <vector>\n' >"$tree/base/text.h"
  printf '#include "base/text.h"\n#include <windows.h>\n#ifdef _WIN32\n#endif\n' >"$tree/platform/win32/port.cpp"
  printf '#include "app/session/state.h"\n#include <windows.h>\n' >"$tree/app/win32/window.cpp"
  printf '#include "app/session/state.h"\n#include "gps/fix.h"\n' >"$tree/app/session/state.cpp"
  printf '#include <CLI/CLI.hpp>\n' >"$tree/cli/main.cpp"
  printf '#include <unistd.h>\nvoid f() { throw 1; }\n' >"$tree/tests/app/a.cpp"
}

# allowed NAME FILE TEXT, refused NAME FILE TEXT WORDS: `TEXT` (as printf takes it) in FILE breaks
# nothing, or is told of in a line that begins with FILE and holds WORDS.
allowed() {
  fresh
  printf "$3" >"$tree/$2"
  if said=$("$here/check_layering.sh" "$tree" 2>&1); then result 0 "$1"; return; fi
  echo "# $said"
  result 1 "$1"
}

refused() {
  fresh
  mkdir -p "$(dirname "$tree/$2")"
  printf "$3" >"$tree/$2"
  if said=$("$here/check_layering.sh" "$tree" 2>&1); then result 1 "$1: nothing was said"; return; fi
  case $said in
    "${2%/new.cpp}"*"$4"*) result 0 "$1" ;;
    *) echo "# $said"; result 1 "$1" ;;
  esac
}

g=gps/fix.cpp
allowed 'neighbours and the language' $g '#include "base/text.h"\n#include "gps/fix.h"\n#include <cstdio>\n'
allowed 'words in comments and texts' $g \
  '// throw\n/* std::stoi\n#ifdef _WIN32 */\nauto a = "throw \\" throw"; auto b = R"x(throw "\nthrow)x";\n'
allowed 'a separator in a number is no text' $g "int a = 10'000; // throw ' throw\nchar c = '\"'; // throw\n"
allowed 'names that only begin so' $g 'int throwing, stoi_, mystof; int WIN32x;\n'

refused 'an include upward' base/text.cpp '#include "gps/fix.h"\n' 'may not look into gps'
refused 'an include of the other side of a seam' $g '#include "platform/win32/port.h"\n' 'may not look into platform/win32'
refused 'an include of a room beside' app/session/state.cpp '#include "app/win32/window.h"\n' 'may not look into app/win32'
refused 'an include of the room inside a neighbour' cli/main.cpp '#include "app/session/deep/a.h"\n' 'app/session/deep'
refused 'an include of the room around a neighbour' cli/main.cpp '#include "app/state.h"\n' 'may not look into app'
refused 'an include of the tests' $g '#include "tests/fake.h"\n' 'may not look into tests'
refused 'an include with blanks' $g ' #  include   "cli/main.h"\n' 'may not look into cli'
refused 'an include beside' $g '#include "fix.h"\n' 'not by its path'
refused 'an include by dots' $g '#include "base/../cli/main.h"\n' 'not by its path'
for header in windows.h unistd.h termios.h sys/stat.h pthread.h cairo/cairo.h math.h; do
  refused "a system header, $header" $g "#include <$header>\n" "only a system's room"
done
refused 'a system header in a room inside another' app/session/state.cpp '#include <unistd.h>\n' "only a system's room"
refused 'a system header among the seams' platform/port.h '#include <windows.h>\n' "only a system's room"
refused 'a library that is not this room'"'"'s' $g '#include <CLI/CLI.hpp>\n' "only a system's room"
for macro in _WIN32 __linux__ __MINGW32__ _MSC_VER; do
  refused "a question for the system, $macro" $g "int a;\n#ifdef $macro\n#endif\n" 'which system'
done
refused 'a question for the system in a room inside another' app/session/state.cpp '#if _WIN32\n#endif\n' 'which system'
refused 'a question after a comment' $g '/* a */ #if 1 && \\\n  defined(__unix__)\n' 'which system'
refused 'throw' $g 'void f() { /* */ throw 1; }\n' 'uses throw'
refused 'throw behind a number' $g "int a = 10'000; void f() { throw 'a'; }\n" 'uses throw'
refused 'throw in the room of a system' platform/win32/port.cpp 'void f() { throw 1; }\n' 'uses throw'
refused 'numbers that throw' $g 'int a = std::stoi(b);\n' 'uses stoi'
refused 'throw in a room inside another' app/session/state.cpp 'void f() { throw 1; }\n' 'uses throw'
refused 'a folder without a row' extra/new.cpp 'int a;\n' 'no row'
refused 'a folder in a room without a row' gps/extra/new.cpp 'int a;\n' 'no row'
refused 'the folder around a room without a row' app/new.cpp 'int a;\n' 'no row'

if said=$("$here/check_layering.sh" 2>&1); then
  result 0 'this tree'
else
  echo "$said"
  result 1 'this tree'
fi
exit $status
