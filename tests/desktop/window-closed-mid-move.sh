#!/usr/bin/env bash
# Windows that vanish while a move is under way: the move carries on with the
# rest, and the program stays up and keeps working.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0
# Listed first, so moved first: the first of these windows to move takes the
# other nineteen with it, while the rest of the move is still to come.
victims=$(window --title Gone --class gone,Gone --geometry 300x200+200+300 --count 20 --exit-when-moved)
victim_pid=$(cat "$TD/clients/0.pid")
bulk=$(window --title Bulk --class bulk,Bulk --geometry 300x200+50+50 --count 80)

tarnwick_start
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "Moved " 10
n=$(last_status | sed -n 's/^Moved \([0-9]*\) windows to DUMMY1$/\1/p')
[ -n "$n" ] && [ "$n" -ge 80 ] && [ "$n" -le 100 ] || fail "status: $(last_status)"
wait_until 2 eval '! is_running "$victim_pid"' || fail "no window vanished: the move never touched them"
first_victim=$(echo "$victims" | head -n 1)
wait_until 2 eval '[ -z "$(frames | grep -F "$first_victim")" ]' || fail "the vanished windows are still listed"
# The status comes once every request is sent; the window manager carries out
# the last of them a moment later, more so on a loaded machine. So the whole
# list is read until it settles, and a window left behind stays in it.
outside_dummy1() {
    frames | awk -v ids=" $(echo $bulk) " 'index(ids, " " $1 " ") && !($(NF-4) >= 1440 && $(NF-4) + $(NF-2) <= 3360 && $(NF-3) >= 0 && $(NF-3) + $(NF-1) <= 1080)'
}
wait_until 5 eval '[ -z "$(outside_dummy1)" ]' || fail "windows left outside DUMMY1: $(outside_dummy1)"

expect_running
log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
tarnwick_stop
echo ok
