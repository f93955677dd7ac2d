# shellcheck shell=bash
# Read by vexa: benchmarks. Programs that print, never tests: how fast this machine is today is no
# fault of the code.

# The word names a function below; each builds what it runs.
word_bench() {
  local name
  [ $# -gt 0 ] || set -- nmea xml track
  for name; do
    [ "$(type -t "bench_$name")" = function ] || fail "no benchmark '$name'; there are: nmea xml track"
  done
  need build bench
  for name; do "bench_$name"; done
}

# The documents it writes are 50 MB each.
bench_xml() {
  build_preset bench bench_xml
  (cd build/bench && bin/bench_xml)
}

bench_track() {
  build_preset bench bench_track
  (cd build/bench && bin/bench_track)
}

bench_nmea() {
  build_preset native vgps
  build_preset bench bench_nmea bench_replay
  build/bench/bin/bench_nmea
  build/bench/bin/bench_replay build/native/bin/vgps build/bench/replay.nmea
}
