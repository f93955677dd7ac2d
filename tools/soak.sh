# shellcheck shell=bash
# Read by vexa: the long form of the tests about growth. `./vexa test` runs a short one.

SOAK_CYCLES=500
SENTENCES_PER_CYCLE=4000

word_soak() {
  local cycles=$SOAK_CYCLES
  if [ "${1:-}" = --faults ]; then
    shift
    no_more "$@"
    soak_faults
    return
  fi
  while [ $# -gt 0 ]; do
    case $1 in
      --cycles)
        cycles=$(seconds "$@")
        shift
        ;;
      *) fail "'$1' means nothing here; ./vexa help lists the words" ;;
    esac
    shift
  done
  need build windows wine test
  build_preset windows
  place build/windows/bin/VexaGPS.exe
  trap stop_wine EXIT
  tests/wine/wine.sh start "$WINE_DIR" build/windows/bin/keepalive.exe >/dev/null 2>&1 </dev/null
  say "$cycles times $SENTENCES_PER_CYCLE sentences, a recording, every screen and an unplugged receiver"
  export VGPS_SOAK_CYCLES=$cycles VGPS_SOAK_SENTENCES=$SENTENCES_PER_CYCLE
  GROUP_LIMIT=$((cycles * 40 + 600))
  in_wine window_tests.exe '--gtest_filter=Soak.*'
}

# Kills, writes that stop at every byte, full disks and several writers: the table.
soak_faults() {
  need build test
  build_preset native
  VGPS_SOAK_FAULTS=1 build/native/bin/program_tests --gtest_brief=1 '--gtest_filter=Faults.*'
}
