#!/usr/bin/env bash
# Our own windows, drawn, as the start-up opens them: the first-run window on
# a first start, and the settings window for the --settings switch. Each
# takes the keyboard (unlike the island) and is left on screen for a picture
# in the build folder's shots/views, or in $TARNWICK_VIEWS_SHOTS.
source "$(dirname "$0")/lib.sh"

shots=${TARNWICK_VIEWS_SHOTS:-$TARNWICK_BIN_DIR/shots/views}
picture() { mkdir -p "$shots" && shot "$shots/$1.png"; }
control() { "$desktop_tool" control "$tarnwick_log" "$@"; }

# The window of ours that has the focus, by its title.
focused_title() { xdotool getwindowfocus getwindowname 2>/dev/null; }
is_focused() { [ "$(focused_title)" = "$1" ]; }

desktop_start
export TARNWICK_LOG_CONTROLS=1

# A first start: the questions were never answered.
write_defaults setup.askedLogin=false
tarnwick_start
wait_for_log "window setup shown" 5
wait_until 3 control setup setupRoot || fail "the setup window reports no controls"
read -r _ _ w h < <(control setup setupRoot)
[ "$w" -eq 460 ] || fail "the setup window is $w wide, not 460"
[ "$h" -gt 200 ] || fail "the setup window is only $h tall"
wait_until 3 is_focused "Welcome to Tarnwick" || fail "the setup window has no focus; it is on: $(focused_title)"
sleep 0.3
picture setup-first-run
tarnwick_stop

# The settings switch, on a later start.
write_defaults
log_mark
tarnwick_start --settings
wait_for_log "window settings shown" 5
wait_until 3 control settings settingsRoot || fail "the settings window reports no controls"
read -r _ _ w h < <(control settings settingsRoot)
[ "$w" -eq 560 ] && [ "$h" -eq 780 ] || fail "the settings window is ${w}x$h, not 560x780"
sleep 0.3
picture settings-switch
expect_running
tarnwick_stop
echo ok
