#!/usr/bin/env bash
# Under a Wayland session an X client cannot move other windows, even with
# DISPLAY set: the program says why, asks for the permission step, and a
# command answers that the permission is missing instead of moving anything.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' delay=0
notes=$(window --title Notes --class notes,Notes --geometry 600x400+100+100)
read -r before < <(frame_of "$notes")
XDG_SESSION_TYPE=wayland tarnwick_start
wait_for_log "this is a Wayland session" 3
wait_for_log "window setup shown" 3

log_mark
tarnwick_action save-layout
wait_for_status "Accessibility permission missing" 3
grep -q '"layouts.v2"' "$(defaults_file)" && fail "a layout was saved without the permission"
[ "$(frame_of "$notes")" = "$before" ] || fail "Notes moved"
expect_running
tarnwick_stop
echo ok
