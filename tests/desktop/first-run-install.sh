#!/usr/bin/env bash
# A new user's first run from a copy that is not installed (a download, a
# build folder): "Move to Applications" copies, moves and trashes nothing,
# says how to install instead, and the program keeps running. The same
# program installed with CMake into a prefix of its own has no such step.
source "$(dirname "$0")/lib.sh"

control() { "$desktop_tool" control "$tarnwick_log" "$@"; }
press() { "$desktop_tool" press "$TD" "$tarnwick_log" "$@" || fail "cannot press $2 on the $1"; }

desktop_start
# The first run works in the home folder: never the real one.
export HOME=$TD/home
mkdir -p "$HOME"
download=$TD/download
mkdir -p "$download"
cp "$TARNWICK_BIN_DIR/tarnwick" "$download/tarnwick"
write_defaults setup.skipMove=false
export TARNWICK_LOG_CONTROLS=1

TARNWICK_PROGRAM=$download/tarnwick tarnwick_start
wait_for_log "window setup shown" 5
wait_until 3 control setup cardButton0 || fail "the setup shows no \"Move to Applications\""
press setup cardButton0
wait_until 3 control setup cardError || fail "the setup says nothing after the press"
# A relaunch would come a second after the press.
sleep 1.5
expect_running
[ -x "$download/tarnwick" ] || fail "the program the user launched is gone"
[ ! -e "$HOME/Applications" ] || fail "the first run made $(find "$HOME/Applications")"
trashed=$(find "$XDG_DATA_HOME" -path '*Trash/files/*' 2>/dev/null)
[ -z "$trashed" ] || fail "the first run trashed $trashed"
tarnwick_stop

# Installed: the step is done, so with nothing else pending no setup opens.
cmake --install "$TARNWICK_BIN_DIR" --prefix "$TD/prefix" >/dev/null
log_mark
TARNWICK_PROGRAM=$TD/prefix/bin/tarnwick tarnwick_start
sleep 1
! log_since_mark | grep -q "window setup shown" || fail "the installed program asks to be installed"
expect_running
tarnwick_stop
