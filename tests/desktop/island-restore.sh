#!/usr/bin/env bash
# Under "Let me choose" a monitor setup that comes back with a saved layout
# puts the windows the user moves back where they were: "Move all" on the
# island restores them and its done line counts them, as the automatic move
# does.
source "$(dirname "$0")/lib.sh"

control() { "$desktop_tool" control "$tarnwick_log" "$@"; }
press() { "$desktop_tool" press "$TD" "$tarnwick_log" "$@" || fail "cannot press $2 on the $1"; }

desktop_start
write_defaults delay=0 rememberLayouts=true playSounds=false
plug DUMMY1 1920x1080 --right-of DUMMY0
notes=$(window --title Notes --class notes,Notes --geometry 600x400+1500+100)
two_docs 700x500+1700+250 2400 450

declare -A saved
for id in $notes $doc1 $doc2; do saved[$id]=$(frame_of "$id"); done

export TARNWICK_LOG_CONTROLS=1
tarnwick_start
save_layout 2

# Undocked: the windows are gathered on the panel, each somewhere else.
log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
wmctrl -i -r "$notes" -e 0,100,100,-1,-1
wmctrl -i -r "$doc1" -e 0,300,150,-1,-1
wmctrl -i -r "$doc2" -e 0,500,200,-1,-1
wait_until 2 eval '[ "$(position_of "$doc2")" = "500 200" ]' ||
    fail "Doc did not move onto the panel: $(frame_of "$doc2")"
wait_for_log "island closed" 10

log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_log "island phase choosing" 10
wait_until 3 control island moveAll || fail "the chooser shows no \"Move all\""
# The chooser is still growing into place when its buttons are first reported.
sleep 0.5
press island moveAll
wait_for_log "island phase done(ok)" 10
grep -F "island phase done(ok)" "$tarnwick_log" | tail -n 1 | grep -qF ' · restored 3"' ||
    fail "done line: $(grep -F "island phase done" "$tarnwick_log" | tail -n 1)"
last_status | grep -q ' · restored 3$' || fail "status: $(last_status)"
for id in $notes $doc1 $doc2; do
    # shellcheck disable=SC2086
    expect_frame "$id" ${saved[$id]} 1
done

expect_running
tarnwick_stop
echo ok
