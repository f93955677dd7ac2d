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

# fresh: a tree of three rooms that breaks nothing.
fresh() {
  rm -rf "${tree:?}"/*
  mkdir -p "$tree/cmake" "$tree/base" "$tree/gps" "$tree/win32" "$tree/cli" "$tree/tests"
  printf 'room(base)\nroom(gps base)\nroom(win32 gps base)\nroom(cli gps base)\n' >"$tree/cmake/rooms.cmake"
  printf '#pragma once\n#include <vector>\n' >"$tree/base/text.h"
  printf '#include "base/text.h"\n#include <windows.h>\n#ifdef _WIN32\n#endif\n' >"$tree/win32/port.cpp"
  printf '#include <CLI/CLI.hpp>\n' >"$tree/cli/main.cpp"
  printf '#include <unistd.h>\nvoid f() { throw 1; }\n' >"$tree/tests/a.cpp"
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
refused 'an include of another system' $g '#include "win32/port.h"\n' 'may not look into win32'
refused 'an include of the tests' $g '#include "tests/fake.h"\n' 'may not look into tests'
refused 'an include with blanks' $g ' #  include   "cli/main.h"\n' 'may not look into cli'
refused 'an include beside' $g '#include "fix.h"\n' 'not by its path'
refused 'an include by dots' $g '#include "base/../cli/main.h"\n' 'not by its path'
for header in windows.h unistd.h termios.h sys/stat.h pthread.h cairo/cairo.h math.h; do
  refused "a system header, $header" $g "#include <$header>\n" 'only win32 and posix'
done
refused 'a library that is not this room'"'"'s' $g '#include <CLI/CLI.hpp>\n' 'only win32 and posix'
for macro in _WIN32 __linux__ __MINGW32__ _MSC_VER; do
  refused "a question for the system, $macro" $g "int a;\n#ifdef $macro\n#endif\n" 'which system'
done
refused 'a question after a comment' $g '/* a */ #if 1 && \\\n  defined(__unix__)\n' 'which system'
refused 'throw' $g 'void f() { /* */ throw 1; }\n' 'uses throw'
refused 'throw behind a number' $g "int a = 10'000; void f() { throw 'a'; }\n" 'uses throw'
refused 'throw in the room of a system' win32/port.cpp 'void f() { throw 1; }\n' 'uses throw'
refused 'numbers that throw' $g 'int a = std::stoi(b);\n' 'uses stoi'
refused 'a folder without a row' extra/new.cpp 'int a;\n' 'no row'

if said=$("$here/check_layering.sh" 2>&1); then
  result 0 'this tree'
else
  echo "$said"
  result 1 'this tree'
fi
exit $status
