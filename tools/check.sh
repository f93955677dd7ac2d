# shellcheck shell=bash
# Read by vexa: what looks at the sources without running them.

word_check() {
  no_more "$@"
  need build windows check
  local status=0 includes
  mkdir -p build/log
  : >build/log/tidy.log  # how much it left out, and where it broke off
  tools/check_layering_test.sh | { grep -v '^ok' || true; } || status=1
  tools/check_format.sh || status=1
  say "$(tools/code_share.sh)"
  # shellcheck disable=SC2046
  tidy native $(tools/rooms.sh | grep -vE '(^|/)win32$') || status=1
  # clang has headers of its own for the processor, but none for Windows.
  mapfile -t includes < <(mingw_includes | sed 's/^/--extra-arg=-isystem/')
  # shellcheck disable=SC2046
  tidy windows $(tools/rooms.sh | grep -E '(^|/)win32$') \
    --extra-arg-before=--target=x86_64-w64-mingw32 "${includes[@]}" || status=1
  [ $status = 0 ] && say "layering, format and clang-tidy find nothing"
}

mingw_includes() {
  x86_64-w64-mingw32-g++-posix -E -v -xc++ /dev/null 2>&1 |
    sed -n '/^#include </,/^End/s/^ //p' | grep -v -E 'posix/include(-fixed)?$'
}

# tidy PRESET ROOM... [OPTION...]: clang-tidy over the rooms' sources as the preset builds them,
# but each on its own: clang cannot read the compiler's precompiled headers.
tidy() {
  local preset=$1 rooms=() sources
  shift
  while [ $# -gt 0 ] && [ "${1#-}" = "$1" ]; do
    rooms+=("$1")
    shift
  done
  cmake --preset "$preset" -B "build/check/$preset" -DVEXA_QUICK=OFF >"build/log/build-$preset.log" 2>&1 ||
    fail "configuring $preset failed: build/log/build-$preset.log"
  mapfile -t sources < <(for room in "${rooms[@]}"; do
    find "$room" -maxdepth 1 -name '*.cpp' 2>/dev/null
  done | sort)
  say "clang-tidy, ${rooms[*]}: ${#sources[@]} files"
  printf '%s\n' "${sources[@]}" |
    xargs -P "$(nproc)" -n 1 clang-tidy -quiet -p "build/check/$preset" "$@" 2>>build/log/tidy.log
}
