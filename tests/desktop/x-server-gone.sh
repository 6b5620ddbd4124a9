#!/usr/bin/env bash
# The X server goes away under the running program: it says so and ends with
# status 1, without a crash or a hang.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' delay=0
window --title Notes --class notes,Notes --geometry 600x400+100+100 >/dev/null
tarnwick_start
xorg=$(awk '$1 == "xorg" { print $2 }' "$TD/pids")
[ -n "$xorg" ] || fail "no X server recorded"
kill "$xorg"
rc=0
timeout 10 tail --pid="$TARNWICK_PID" -f /dev/null || fail "the program still runs 10 s after the X server went"
wait "$TARNWICK_PID" || rc=$?
[ "$rc" -eq 1 ] || fail "the program ended with status $rc, not 1"
grep -q 'Lost the connection to the X server' "$tarnwick_log" ||
    fail "no word of the lost connection: $(tail -n 3 "$tarnwick_log")"
echo ok
