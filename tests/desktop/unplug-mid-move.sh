#!/usr/bin/env bash
# The monitor windows are moving to is unplugged while the move runs: the move
# stops at once and says why, and no window is left where the lost
# monitor was.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0 moveFullscreen=true \
    rememberLayouts=false
# Each full-screen window leaves full screen, settles, moves and goes back: a
# second or two apiece, long enough to pull the plug in the middle.
films=$(window --title Film --class film,Film --geometry 600x400+100+100 --count 2 --fullscreen)
for id in $films; do
    expect_frame "$id" 0 0 1440 900 0 3
    [ "$(states_of "$id")" = fullscreen ] || fail "window $id is not full screen: $(states_of "$id")"
done

tarnwick_start
log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "DUMMY1 connected · moving windows…" 5
sleep 0.4
unplug DUMMY1
wait_for_status "Moved " 10
# The first window was leaving full screen when the plug was pulled: it gets
# no frame and is not counted; the second never starts.
[ "$(last_status)" = "Moved 0 windows to DUMMY1 · stopped because the display was disconnected" ] ||
    fail "status: $(last_status)"
log_since_mark | grep -qF "status: DUMMY1 disconnected" || fail "the unplug was not announced"

# Whatever the first window went through, it ends on the panel with the
# other; give the window manager a moment to settle it.
sleep 1
for id in $films; do
    expect_inside "$id" 0 0 1440 900
done
stranded=$(for id in $films; do [ "$(states_of "$id")" = fullscreen ] || echo "$id"; done)
[ -z "$stranded" ] || fail "windows no longer full screen: $stranded"

# Nothing is left half done: the next plug moves both.
log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "Moved " 15
[ "$(last_status)" = "Moved 2 windows to DUMMY1" ] || fail "status: $(last_status)"
for id in $films; do
    expect_frame "$id" 1440 0 1920 1080 0 3
done

expect_running
tarnwick_stop
echo ok
