#!/usr/bin/env bash
# Monitors that come and go while the machine sleeps (logind) or while its
# screens are off (the screen saver) are not acted on until the wake, and
# then only once the monitors have had time to settle: one announcement for
# everything that arrived, a few seconds after the wake.
source "$(dirname "$0")/lib.sh"
how=${1:?logind or screensaver}

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0 rememberLayouts=false
notes=$(window --title Notes --class notes,Notes --geometry 600x400+100+100)

case $how in
    logind)
        logind_start
        go_to_sleep() { logind_sleep; }
        wake_up() { logind_wake; }
        ;;
    screensaver)
        go_to_sleep() { xset s activate; }
        wake_up() { xset s reset; }
        ;;
    *) fail "unknown way to sleep: $how" ;;
esac

tarnwick_start
if [ "$how" = logind ]; then
    ! grep -E 'No system bus|Cannot follow logind' "$tarnwick_log" ||
        fail "the program does not follow the stand-in for logind"
fi

log_mark
go_to_sleep
sleep 0.3 # the notice travels on its own path; the plug must not overtake it
plug DUMMY1 1920x1080 --right-of DUMMY0
sleep 1.5
! log_since_mark | grep -q 'status: ' || fail "acted on a monitor while asleep: $(last_status)"

log_mark
wake_up
woke=$(now_ms)
# A monitor that reports late, after the wake: the same settling covers it.
sleep 1
plug DUMMY2 1280x800 --right-of DUMMY1
wait_for_status "2 displays connected" 9
after=$(($(now_ms) - woke))
[ "$after" -ge 5000 ] || fail "acted ${after} ms after the wake; the monitors had no time to settle"
first=$(log_since_mark | grep -F 'status: ' | head -n 1 | sed 's/.*status: //')
[ "$first" = "2 displays connected" ] || fail "announced piecemeal: first status \"$first\""
wait_for_status "Moved " 5
[ "$(last_status)" = "Moved 1 window to DUMMY1" ] || fail "status: $(last_status)"
expect_inside "$notes" 1440 0 1920 1080

expect_running
tarnwick_stop
echo ok
