# shellcheck shell=bash
# Read by vexa: every test, in groups (tools/groups.sh).

WINE_DIR=$PWD/build/windows/wine

word_test() {
  no_more "$@"
  local start=$SECONDS wine_start beside=()
  need build windows wine test
  rm -rf build/test
  mkdir -p build/test build/log
  trap end_test EXIT
  build_preset windows
  # A new Wine prefix takes its time and little of the processor: it is made beside the builds.
  tests/wine/wine.sh start "$WINE_DIR" build/windows/bin/keepalive.exe \
    >build/log/wine.log 2>&1 </dev/null &
  wine_start=$!
  build_preset native
  place build/native/bin/vgps build/windows/bin/vgps.exe build/windows/bin/VexaGPS.exe

  groups_begin
  test_native &
  beside+=($!)
  build_preset asan
  test_asan &
  beside+=($!)
  build_preset tsan unit_tests program_tests
  group gtest 'unit, tsan' unrandomised build/tsan/bin/unit_tests
  wait "${beside[@]}"
  wait "$wine_start" || say "Wine did not start: build/log/wine.log"
  test_alone
  say "$((SECONDS - start)) s, builds included"
  groups_end
}

# Groups that measure no time run beside the next build.
test_native() {
  group gtest 'unit' limited build/native/bin/unit_tests
  group tap 'layering' limited tools/check_layering_test.sh
  group tap 'format' limited tools/check_format.sh
}

test_asan() {
  group gtest 'unit, asan' limited build/asan/bin/unit_tests
  group tap 'fuzz corpora, asan' replay_corpora asan
  group gtest 'programs, asan' limited build/asan/bin/program_tests
}

# A receiver on a line is about time; only the optimised build is held to it. The windows share one
# Wine server.
test_alone() {
  local tsan
  group gtest 'programs' limited build/native/bin/program_tests
  group gtest 'programs, tsan' unrandomised build/tsan/bin/program_tests &
  tsan=$!
  group gtest 'unit, Windows' in_wine unit_tests.exe
  wait "$tsan"
  group gtest 'windows' in_wine window_tests.exe
}

# When a build fails, groups may still run beside it.
end_test() {
  wait
  stop_wine
}

# The thread sanitizer's memory layout does not bear the address randomisation of newer kernels.
unrandomised() {
  if setarch -R true 2>/dev/null; then limited setarch -R "$@"; else limited "$@"; fi
}

# Wine finds its server by way of the temporary folder, so that one must stay the same; Windows
# programs have one of their own anyhow.
in_wine() {
  local wine=$PWD/tests/wine/wine.sh
  (cd build/windows/bin && unset TMPDIR &&
    VGPS_TEST_LIMIT=$GROUP_LIMIT "$wine" run "$WINE_DIR" "$@")
}

stop_wine() {
  [ ! -d "$WINE_DIR" ] || tests/wine/wine.sh stop "$WINE_DIR" >/dev/null 2>&1 </dev/null || true
}

# replay_corpora PRESET: each fuzz target over its inputs, without a fuzzer.
replay_corpora() {
  local target status=0
  for target in build/"$1"/bin/fuzz_*; do
    if limited "$target"; then
      echo "ok - ${target##*/}"
    else
      echo "not ok - ${target##*/}"
      status=1
    fi
  done
  return $status
}
