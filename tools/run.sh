# shellcheck shell=bash
# Read by vexa: the desktop program on its simulation, with the live fix in the terminal.

RUN_DIR=$PWD/build/run
PICTURE=build/vexa-gps.png
PICTURE_SECONDS=3
virtual='' display_pid='' window_pid='' monitor_pid=''

word_run() {
  local limit=
  while [ $# -gt 0 ]; do
    case $1 in
      --for)
        limit=$(seconds "$@")
        shift
        ;;
      *) no_more "$1" ;;
    esac
    shift
  done
  need build windows wine run
  build_programs
  mkdir -p "$RUN_DIR"
  # From here on every way out passes end_run: Ctrl-C is the usual one and no failure.
  trap end_run EXIT
  trap 'exit 0' INT TERM HUP
  find_display
  make_wine_prefix
  start_programs
  follow_programs "$limit"
}

# Sets `virtual` and, where there is no display to be reached, starts one on a free number.
find_display() {
  if [ -n "${DISPLAY:-}" ] && timeout 5 xdpyinfo >/dev/null 2>&1; then return; fi
  virtual=1
  : >"$RUN_DIR/display"
  setsid Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp \
    3>"$RUN_DIR/display" >"$RUN_DIR/display.log" 2>&1 </dev/null &
  display_pid=$!
  local tries=0
  until [ -s "$RUN_DIR/display" ]; do
    if ! kill -0 "$display_pid" 2>/dev/null || [ $((++tries)) -gt 100 ]; then
      fail "no virtual display: $RUN_DIR/display.log tells why"
    fi
    sleep 0.1
  done
  DISPLAY=:$(cat "$RUN_DIR/display")
  export DISPLAY
  say "no display here: a picture of the window goes to $PICTURE every $PICTURE_SECONDS seconds"
}

# A Wine of its own, apart from the person's and from the tests'.
in_run_wine() {
  env XAUTHORITY="${XAUTHORITY:-$HOME/.Xauthority}" HOME="$RUN_DIR/home" \
    WINEPREFIX="$RUN_DIR/prefix" WINEARCH=win64 WINEDEBUG=-all \
    WINEDLLOVERRIDES='winemenubuilder.exe,winebrowser.exe,mscoree,mshtml=d' "$@"
}

# Made once; the settings are those of the tests, but for sound and window frames where a person
# looks on: a window manager draws the frame there.
make_wine_prefix() {
  local kind=person
  [ -z "$virtual" ] || kind=virtual
  [ "$(cat "$RUN_DIR/prefix/.ready" 2>/dev/null)" != "$kind" ] || return 0
  if [ ! -f "$RUN_DIR/prefix/.ready" ]; then
    say "setting up Wine, once"
    rm -rf "$RUN_DIR/prefix"
    mkdir -p "$RUN_DIR/home"
    waited 300 wineboot -i
    cp "$(dpkg -L fonts-wine | grep marlett)" "$RUN_DIR/prefix/drive_c/windows/Fonts/"
  fi
  if [ "$kind" = virtual ]; then cat tests/wine/wine.reg
  else sed -e '/"Audio"=/d' -e 's/"Managed"="N"/"Managed"="Y"/' tests/wine/wine.reg; fi \
    >"$RUN_DIR/prefix/drive_c/vexa.reg"
  waited 60 wine regedit /S 'C:\vexa.reg'
  echo "$kind" >"$RUN_DIR/prefix/.ready"
}

# waited SECONDS COMMAND...: in Wine; a signal ends the wait at once, end_run the command.
waited() {
  local limit=$1
  shift
  in_run_wine timeout -k 5 "$limit" "$@" >"$RUN_DIR/setup.log" 2>&1 </dev/null &
  wait $! || fail "'$*' failed: $RUN_DIR/setup.log"
}

start_programs() {
  in_run_wine setsid wine build/bin/VexaGPS.exe --simulate >"$RUN_DIR/window.log" 2>&1 </dev/null &
  window_pid=$!
  build/bin/vgps monitor --simulate &
  monitor_pid=$!
}

# Until the time is over, the window was closed, or one of the two broke off.
follow_programs() {
  local limit=$1 start=$SECONDS picture=$((SECONDS + 2)) status=0
  while [ -z "$limit" ] || [ $((SECONDS - start)) -lt "$limit" ]; do
    if ! kill -0 "$monitor_pid" 2>/dev/null; then
      wait "$monitor_pid" || status=$?
      fail "vgps ended with status $status"
    fi
    if ! kill -0 "$window_pid" 2>/dev/null; then
      wait "$window_pid" || status=$?
      [ "$status" = 0 ] || fail "VexaGPS.exe ended with status $status: $RUN_DIR/window.log"
      return 0
    fi
    if [ -n "$virtual" ] && [ "$SECONDS" -ge "$picture" ]; then
      take_picture
      picture=$((SECONDS + PICTURE_SECONDS))
    fi
    sleep 0.5
  done
  [ -z "$virtual" ] || take_picture
}

# Of what is not bare screen; a picture half written is never seen.
take_picture() {
  if timeout 10 import -silent -window root -trim +repage "png:$PICTURE.new" 2>/dev/null; then
    mv "$PICTURE.new" "$PICTURE"
  fi
}

# Asks the window to close, then ends whatever still lives.
end_run() {
  trap '' INT TERM HUP
  trap - EXIT
  [ -z "$monitor_pid" ] || kill "$monitor_pid" 2>/dev/null || true
  if [ -d "$RUN_DIR/prefix" ]; then
    if [ -n "$window_pid" ] && kill -0 "$window_pid" 2>/dev/null; then
      in_run_wine timeout -k 1 5 wine taskkill /im VexaGPS.exe >/dev/null 2>&1 </dev/null || true
      local tries=0
      while kill -0 "$window_pid" 2>/dev/null && [ $((++tries)) -lt 30 ]; do sleep 0.1; done
    fi
    in_run_wine wineserver -k >/dev/null 2>&1 || true
    in_run_wine timeout -k 1 20 wineserver -w >/dev/null 2>&1 || true
  fi
  [ -z "$display_pid" ] || kill "$display_pid" 2>/dev/null || true
  wait 2>/dev/null || true
}
