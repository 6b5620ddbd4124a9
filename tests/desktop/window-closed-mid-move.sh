#!/usr/bin/env bash
# Windows that vanish while a move is under way: the move carries on with the
# rest, and the program stays up and keeps working.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0
bulk=$(window --title Bulk --class bulk,Bulk --geometry 300x200+50+50 --count 120)
victims=()
for i in 1 2 3 4 5 6; do
    window --title "Gone $i" --class "gone$i,Gone$i" --geometry 300x200+$((i * 60))+300 >/dev/null
    victims+=("$(cat "$TD/clients/$i.pid")")
done

tarnwick_start
plug DUMMY1 1920x1080 --right-of DUMMY0
# The windows die while their move is queued or running: one as soon as the
# move is announced, the others spread over the next few tens of milliseconds.
wait_for_log "moving windows" 5
for pid in "${victims[@]}"; do
    kill -KILL "$pid"
    sleep 0.01
done

wait_for_status "Moved " 10
n=$(last_status | sed -n 's/^Moved \([0-9]*\) windows to DUMMY1$/\1/p')
[ -n "$n" ] && [ "$n" -ge 120 ] && [ "$n" -le 126 ] || fail "status: $(last_status)"
for id in $bulk; do expect_inside "$id" 1440 0 1920 1080; done

expect_running
log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
tarnwick_stop
echo ok
