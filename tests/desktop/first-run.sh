#!/usr/bin/env bash
# A new user's first start, walked to its end with real clicks: no
# preferences file, so the first-run window opens; "Keep it here" (a build
# is not installed), the permission step passes by itself under an EWMH
# window manager, "Not now" at the login question, and on the last card
# "Done" closes the window, or "Open settings" (argument "settings") swaps it
# for the settings window. The program must live on after either: the button
# that closes the window is pressed inside that window's own click handler.
# A picture of the last card and of what follows is kept in the build
# folder's shots/views, or in $TARNWICK_VIEWS_SHOTS.
source "$(dirname "$0")/lib.sh"

shots=${TARNWICK_VIEWS_SHOTS:-$TARNWICK_BIN_DIR/shots/views}
picture() { mkdir -p "$shots" && shot "$shots/$1.png"; }

finish=${1:-done}
case $finish in
done) last=cardButton0 ;;
settings) last=cardButton1 ;;
*) fail "usage: first-run.sh [done|settings]" ;;
esac

control() { "$desktop_tool" control "$tarnwick_log" "$@"; }
press() { "$desktop_tool" press "$TD" "$tarnwick_log" "$@" || fail "cannot press $2 on the $1"; }
has_key() { grep -q "\"$1\"" "$(defaults_file)" 2>/dev/null; }

# The newest report of the setup window's controls, whole.
setup_controls() { grep -F "setup controls:" "$tarnwick_log" | tail -n 1; }

# press_card BUTTON: clicks a button of the card on screen once the card
# has stopped moving (two reports 300 ms apart that agree).
press_card() {
    local before now
    wait_until 5 control setup "$1" || fail "the setup window shows no $1"
    before=$(setup_controls)
    while sleep 0.3; now=$(setup_controls); [ "$now" != "$before" ]; do before=$now; done
    press setup "$1"
}

desktop_start
export TARNWICK_LOG_CONTROLS=1
[ ! -e "$(defaults_file)" ] || fail "the desktop starts with a preferences file"
tarnwick_start
wait_for_log "window setup shown" 5

# The move card: a program in a build folder keeps its place.
press_card cardButton1
wait_until 5 has_key setup.skipMove || fail "\"Keep it here\" was not recorded"
# The permission card passes once the probe answers; then the login card.
log_mark
wait_for_log "setup controls:" 5
press_card cardButton1
wait_until 8 has_key setup.askedLogin || fail "\"Not now\" was not recorded"

# "All set": its buttons close the window that holds them.
log_mark
wait_for_log "setup controls:" 5
[ "$finish" = done ] && sleep 0.5 && picture first-run-last-card
press_card "$last"
sleep 1
expect_running
if [ "$finish" = settings ]; then
    wait_for_log "window settings shown" 5
    wait_until 3 control settings settingsRoot || fail "the settings window reports no controls"
fi
picture "first-run-after-$finish"
log_since_mark | grep -q "window setup hidden" || fail "the setup window did not close"
expect_running
tarnwick_stop
echo ok
