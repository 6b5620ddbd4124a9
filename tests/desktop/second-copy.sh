#!/usr/bin/env bash
# Starting the program again hands over to the new copy: the old one ends
# cleanly and the new one carries on.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"nothing"' delay=0
tarnwick_start
first=$TARNWICK_PID
tarnwick_start
second=$TARNWICK_PID
[ "$first" != "$second" ] || fail "no second copy"

deadline=$(($(now_ms) + 5000))
while kill -0 "$first" 2>/dev/null; do
    [ "$(now_ms)" -lt "$deadline" ] || fail "the first copy is still running 5 s after the second started"
    sleep 0.05
done
rc=0
wait "$first" || rc=$?
[ "$rc" -eq 0 ] || fail "the first copy ended with status $rc"

expect_running "$second"
log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "DUMMY1 connected" 3
[ "$(log_since_mark | grep -c 'status: DUMMY1 connected')" -eq 1 ] ||
    fail "more than one copy reported the monitor"
tarnwick_stop "$second"
echo ok
