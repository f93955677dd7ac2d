# shellcheck shell=bash
# Read by vexa: configuring and building.

# build_preset NAME [TARGET...]: into build/NAME, quietly; what the compiler said when it fails.
build_preset() {
  local preset=$1 log=build/log/build-$1.log start=$SECONDS
  shift
  mkdir -p build/log
  # A tree that was moved or copied cannot be configured again in place.
  if [ -f "build/$preset/CMakeCache.txt" ] &&
     ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "build/$preset/CMakeCache.txt"; then
    rm -rf "build/$preset"
  fi
  if ! cmake --preset "$preset" >"$log" 2>&1 ||
     ! cmake --build "build/$preset" -j "$(nproc)" ${1:+--target "$@"} >>"$log" 2>&1; then
    grep -E -A12 'FAILED|[Ee]rror' "$log" | head -n 80 >&2 || true
    fail "building $preset failed; all of it stands in $log"
  fi
  say "built $preset in $((SECONDS - start)) s"
}

# place FROM...: copies the programs that changed into build/bin.
place() {
  local program
  mkdir -p build/bin
  for program; do
    cmp -s "$program" "build/bin/${program##*/}" || install -m 755 "$program" build/bin/
  done
}

word_build() {
  no_more "$@"
  need build windows
  build_programs
  say "build/bin: vgps VexaGPS.exe vgps.exe"
}

build_programs() {
  build_preset native vgps
  build_preset windows vgps VexaGPS
  place build/native/bin/vgps build/windows/bin/vgps.exe build/windows/bin/VexaGPS.exe
}
