#!/usr/bin/env bash
# When a monitor goes, openbox pushes its windows to the edge of the panel,
# mostly off it; the program brings such a window fully onto the panel,
# keeping its size, and the announcement that the windows are back holds.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"nothing"' delay=0
plug DUMMY1 1920x1080 --right-of DUMMY0
notes=$(window --title Notes --class notes,Notes --geometry 702x400+1600+150)
expect_inside "$notes" 1440 0 1920 1080
size=$(frame_of "$notes" | cut -d' ' -f3,4)

tarnwick_start
sleep 1.5

log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
expect_inside "$notes" 0 0 1440 900 3
# shellcheck disable=SC2046
set -- $(frame_of "$notes")
[ "$3 $4" = "$size" ] || fail "Notes changed size from $size: $*"
note "Notes after the unplug: $*"

expect_running
tarnwick_stop
echo ok
