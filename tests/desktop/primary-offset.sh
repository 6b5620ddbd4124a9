#!/usr/bin/env bash
# The primary monitor away from the root's origin, as with a monitor to the
# left of the laptop: windows are read and written in the right place, and a
# saved layout brings windows back to where they were after the primary has
# moved to another monitor.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0 moveFullscreen=false \
    rememberLayouts=true
# A monitor to the left and the panel lower than it: the panel stays primary
# with its top-left at 1280,300 of the root, so both axes are offset.
plug DUMMY2 1280x800 --pos 0x0
xrandr --output DUMMY0 --pos 1280x300
panel="1280 300 1440 900"
left="0 0 1280 800"
wait_until 3 eval '"$probe" monitors | grep -qx "eDP-1 1280 300 1440 900 primary"' ||
    fail "the panel is not primary at 1280,300: $("$probe" monitors)"

# On the panel, flush with its bottom-right corner, and on the left monitor.
near=$(window --title Near --class near,Near --geometry 600x400+1380+350)
far=$(window --title Far --class far,Far --geometry 500x300+1280+300)
read -r _ _ fw fh < <(frame_of "$far")
wmctrl -i -r "$far" -e "0,$((2720 - fw)),$((1200 - fh)),-1,-1"
expect_frame "$far" $((2720 - fw)) $((1200 - fh)) "$fw" "$fh"
lefty=$(window --title Lefty --class lefty,Lefty --geometry 400x300+200+250)
declare -A before
for id in $near $far $lefty; do before[$id]=$(frame_of "$id"); done

tarnwick_start
log_mark
plug DUMMY1 1920x1080 --pos 2720x0
external="2720 0 1920 1080"
wait_for_status "Moved " 10
[ "$(last_status)" = "Moved 3 windows to DUMMY1" ] || fail "status: $(last_status)"
# shellcheck disable=SC2046
{
    expect_frame "$near" $(placed keepSize "$panel" "$external" "${before[$near]}") 1
    expect_frame "$far" $(placed keepSize "$panel" "$external" "${before[$far]}") 1
    expect_frame "$lefty" $(placed keepSize "$left" "$external" "${before[$lefty]}") 1
}

# The layout to come back to: one window on each monitor.
wmctrl -i -r "$near" -e 0,1500,500,-1,-1
wmctrl -i -r "$lefty" -e 0,100,120,-1,-1
for id in $near $lefty; do
    wait_until 2 eval '[ "$(position_of "$id")" != "$(echo "${before[$id]}" | cut -d" " -f1,2)" ]' ||
        fail "window $id did not move back for the layout: $(frame_of "$id")"
done
declare -A saved
for id in $near $far $lefty; do saved[$id]=$(frame_of "$id"); done
save_layout 3

# The big monitor becomes primary; the monitors themselves stay as they are,
# and the output keeps the primary role when it comes back.
primary DUMMY1
wait_until 3 eval '"$probe" monitors | grep -qx "DUMMY1 2720 0 1920 1080 primary"' ||
    fail "DUMMY1 did not become primary: $("$probe" monitors)"
sleep 1
log_mark
unplug DUMMY1
wait_for_status "DUMMY1 disconnected" 3
wmctrl -i -r "$near" -e 0,1700,700,-1,-1
wmctrl -i -r "$lefty" -e 0,500,400,-1,-1
wait_until 2 eval '[ "$(position_of "$lefty")" = "500 400" ]' ||
    fail "Lefty did not move out of place: $(frame_of "$lefty")"
log_mark
plug DUMMY1 1920x1080 --pos 2720x0
wait_for_status "Moved " 10
wait_until 3 eval '"$probe" monitors | grep -qx "DUMMY1 2720 0 1920 1080 primary"' ||
    fail "DUMMY1 came back without the primary role: $("$probe" monitors)"
status=$(last_status)
# Each window comes back on the monitor it was saved on, wherever the change
# of primary has put that monitor in the desktop.
wrong="" wait=2
for id in $near $far $lefty; do
    # shellcheck disable=SC2086
    "$probe" wait-frame "$id" ${saved[$id]} "$wait" 0 >/dev/null || wrong+=" $id"
    wait=0.5 # the window manager has had its time with the first one
done
[ -z "$wrong" ] ||
    fail "after the change of primary:$(for id in $wrong; do printf ' %s saved at %s, now at %s;' "$id" "${saved[$id]}" "$(frame_of "$id")"; done)"
[ "$status" = "Moved 0 windows to DUMMY1 · restored 3" ] || fail "status: $status"

expect_running
tarnwick_stop
echo ok
