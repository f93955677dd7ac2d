# shellcheck shell=bash
# Read by vexa: benchmarks. Programs that print, never tests: how fast this machine is today is no
# fault of the code.

# The word names a function below; each builds what it runs.
word_bench() {
  local name
  [ $# -gt 0 ] || set -- nmea xml track formats start
  for name; do
    [ "$(type -t "bench_$name")" = function ] || fail "no benchmark '$name'; there are: nmea xml track formats start"
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

# The files it converts are up to 250 MB each.
bench_formats() {
  build_preset native vgps
  build_preset bench bench_formats
  (cd build/bench && bin/bench_formats ../native/bin/vgps)
}

# The program's start beside a bare window's, in the same Wine.
bench_start() {
  need windows wine
  build_preset windows bench_start keepalive
  trap stop_wine EXIT
  tests/wine/wine.sh start "$WINE_DIR" build/windows/bin/keepalive.exe >/dev/null 2>&1 </dev/null
  in_wine bench_start.exe
}

bench_nmea() {
  build_preset native vgps
  build_preset bench bench_nmea bench_replay
  build/bench/bin/bench_nmea
  build/bench/bin/bench_replay build/native/bin/vgps build/bench/replay.nmea
}
