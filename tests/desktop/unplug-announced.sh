#!/usr/bin/env bash
# Monitors that go away are announced by name, or counted when several go at
# once; monitors already there at launch are not announced as new.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"nothing"' delay=0
window --title Notes --class notes,Notes --geometry 600x400+1600+100 >/dev/null
plug DUMMY1 1920x1080 --right-of DUMMY0

tarnwick_start
sleep 1.5
! log_since_mark | grep -q 'status: .*connected' ||
    fail "a monitor present at launch was announced: $(last_status)"

log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3

log_mark
plug DUMMY1 2560x1440 --right-of DUMMY0
wait_for_status "DUMMY1 connected" 3
plug DUMMY2 1280x800 --right-of DUMMY1
wait_for_status "2 displays connected" 3
sleep 1
log_mark
xrandr --output DUMMY1 --off --output DUMMY2 --off
wait_for_status "2 displays disconnected" 3

expect_running
tarnwick_stop
echo ok
