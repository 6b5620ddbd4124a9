#!/usr/bin/env bash
# Under "do nothing", a monitor unplugged and plugged back leaves its windows
# where the window manager pushed them; the periodic snapshot that follows
# must not take that arrangement for the setup's layout, so that "Restore
# layout" still brings the saved one back.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"nothing"' placement='"keepSize"' delay=0 rememberLayouts=true
plug DUMMY1 1920x1080 --right-of DUMMY0
notes=$(window --title Notes --class notes,Notes --geometry 600x400+100+100)
two_docs 700x500+1600+150 2500 450
declare -A saved
for id in $notes $doc1 $doc2; do saved[$id]=$(frame_of "$id"); done

tarnwick_start
started=$SECONDS
save_layout 2

log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
wmctrl -i -r "$notes" -e 0,700,400,-1,-1
wait_until 2 eval '[ "$(position_of "$notes")" = "700 400" ]' ||
    fail "Notes did not move out of place: $(frame_of "$notes")"
log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "DUMMY1 connected" 5
for id in $doc1 $doc2; do
    [ "$(frame_of "$id")" != "${saved[$id]}" ] || fail "window $id was never pushed off the monitor"
done

# The snapshot runs 30 s after the start and every 30 s after that.
sleep $((33 - (SECONDS - started)))
log_mark
tarnwick_action restore-layout
wait_for_status "Restored " 5
[ "$(last_status)" = "Restored 3 windows" ] || fail "status: $(last_status)"
for id in $notes $doc1 $doc2; do
    # shellcheck disable=SC2086
    expect_frame "$id" ${saved[$id]} 1
done

expect_running
tarnwick_stop
echo ok
