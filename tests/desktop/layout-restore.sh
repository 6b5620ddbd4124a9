#!/usr/bin/env bash
# A layout saved while two monitors are connected comes back when the same
# setup returns, for the windows on either monitor, and after the window
# manager has pushed the windows of the lost monitor aside. A window that was
# maximized on the monitor is maximized there again.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0 rememberLayouts=true
plug DUMMY1 1920x1080 --right-of DUMMY0
notes=$(window --title Notes --class notes,Notes --geometry 600x400+100+100)
two_docs 700x500+1600+150 2500 450

big=$(window --title Big --class big,Big --geometry 600x400+1800+300 --maximized)
wait_until 3 eval '[ "$(states_of "$big")" = maximized ]' || fail "Big: $(states_of "$big")"
declare -A saved
for id in $notes $doc1 $doc2 $big; do saved[$id]=$(frame_of "$id"); done

# The snapshot runs every 30 s; the program's save-layout action takes the
# same snapshot at once.
tarnwick_start
save_layout 2
grep -q '"layouts.v2"' "$(defaults_file)" || fail "no layout in $(cat "$(defaults_file)")"

log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
# Out of place on the panel too, so that the restore has to move it back.
wmctrl -i -r "$notes" -e 0,700,400,-1,-1
wait_until 2 eval '[ "$(position_of "$notes")" = "700 400" ]' ||
    fail "Notes did not move out of place: $(frame_of "$notes")"
sleep 1.5 # a snapshot now would take the one-monitor arrangement; it must not

log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "Moved " 10
last_status | grep -q ' · restored 4$' || fail "status: $(last_status)"
wait_until 3 eval '[ "$(states_of "$big")" = maximized ]' ||
    fail "Big came back as: $(states_of "$big") at $(frame_of "$big")"
for id in $notes $doc1 $doc2 $big; do
    # shellcheck disable=SC2086
    expect_frame "$id" ${saved[$id]} 1
done

expect_running
tarnwick_stop
echo ok
