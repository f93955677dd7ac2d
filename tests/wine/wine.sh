#!/bin/sh
# Runs Windows programs for tests, in a Wine of their own under DIR:
#
#   wine.sh start DIR keepalive.exe    makes the prefix (once) and keeps Wine's server up
#   wine.sh run DIR PROGRAM [ARG...]   one program; its exit status
#   wine.sh line DIR start|stop        the serial line COM3 - COM4: a cable from one to the other
#   wine.sh stop DIR                   ends everything that runs in the prefix
#
# VGPS_TEST_LIMIT   seconds that a program may take (110)
# VGPS_TEST_X       not empty: on the display, otherwise without any
# VGPS_TEST_LOCALE  the language and region (C.UTF-8)
# VGPS_TEST_DEBUG   not empty: a crash prints where it was, but may exit with 0
set -eu

command=$1
mkdir -p "$2"
dir=$(cd "$2" && pwd)
shift 2
here=$(cd "$(dirname "$0")" && pwd)

export WINEPREFIX="$dir/prefix" WINEARCH=win64 WINEDEBUG=-all HOME="$dir/home"
export LC_ALL="${VGPS_TEST_LOCALE:-C.UTF-8}"
export WINEDLLOVERRIDES="winemenubuilder.exe,winebrowser.exe,mscoree,mshtml=d"
[ -n "${VGPS_TEST_DEBUG:-}" ] || WINEDLLOVERRIDES="$WINEDLLOVERRIDES;winedbg.exe=d"
[ -n "${VGPS_TEST_X:-}" ] || unset DISPLAY

# quiet SECONDS COMMAND...: without input and output, for a while at most.
quiet() {
  limit=$1
  shift
  timeout -k 5 "$limit" "$@" </dev/null >/dev/null 2>&1
}

make_prefix() {
  rm -rf "$WINEPREFIX"
  mkdir -p "$HOME"
  quiet 300 wineboot -i
  cp "$(dpkg -L fonts-wine | grep marlett)" "$WINEPREFIX/drive_c/windows/Fonts/"
  cp "$here/wine.reg" "$WINEPREFIX/drive_c/"
  quiet 60 wine regedit /S 'C:\wine.reg'
  quiet 60 wineserver -w
  touch "$WINEPREFIX/.ready"
}

# Wine gives the machine's own serial devices the first numbers; the tests' line takes their place.
make_ports() {
  rm -f "$WINEPREFIX"/dosdevices/com*
  ln -s "$dir/line/com3" "$WINEPREFIX/dosdevices/com3"
  ln -s "$dir/line/com4" "$WINEPREFIX/dosdevices/com4"
}

start_line() {
  stop_line
  setsid socat "pty,raw,echo=0,link=$dir/line/com3" "pty,raw,echo=0,link=$dir/line/com4" \
    </dev/null >/dev/null 2>&1 &
  echo $! >"$dir/line/pid"
  tries=0
  until [ -e "$dir/line/com3" ] && [ -e "$dir/line/com4" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 100 ] || return 1
    sleep 0.02
  done
}

# The end of socat takes the links away; its process may stay as a zombie.
stop_line() {
  mkdir -p "$dir/line"
  [ -f "$dir/line/pid" ] || return 0
  kill "$(cat "$dir/line/pid")" 2>/dev/null || true
  rm -f "$dir/line/pid"
  tries=0
  while [ -L "$dir/line/com3" ] || [ -L "$dir/line/com4" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 100 ] || break
    sleep 0.02
  done
  rm -f "$dir/line/com3" "$dir/line/com4"
}

case $command in
  start)
    [ -f "$WINEPREFIX/.ready" ] || make_prefix
    setsid wine "$1" </dev/null >/dev/null 2>&1 &
    quiet 60 wine "$1" wait
    make_ports
    ;;
  run)
    VGPS_TEST_WINE="$here/wine.sh" VGPS_TEST_WINE_DIR="$dir"
    export VGPS_TEST_WINE VGPS_TEST_WINE_DIR
    exec timeout -k 5 "${VGPS_TEST_LIMIT:-110}" wine "$@" </dev/null
    ;;
  line)
    case $1 in
      start) start_line ;;
      stop) stop_line ;;
      *) exit 2 ;;
    esac
    # For a test in Wine, which cannot wait for this script.
    echo "$1" >"$dir/line/state"
    ;;
  stop)
    stop_line
    wineserver -k || true
    wineserver -w
    ;;
  *)
    sed -n '2,/^set/s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac
