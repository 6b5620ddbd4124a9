#!/usr/bin/env bash
# A monitor plugged in under "move all": every other window goes to it, placed
# by the rule given as the argument (keepSize, scale or fill).
source "$(dirname "$0")/lib.sh"
rule=${1:?placement rule}

desktop_start
write_defaults onConnect='"moveAll"' placement="\"$rule\"" delay=0 moveFullscreen=false \
    rememberLayouts=false
# Flush with the top-left corner, flush with the bottom-right one, centred,
# and larger than the panel: the cases where the rules part ways.
corner=$(window --title Corner --class corner,Corner --geometry 600x400+0+0)
far=$(window --title Far --class far,Far --geometry 700x500+0+0)
centred=$(window --title Centred --class centred,Centred --geometry 500x300+0+0)
huge=$(window --title Huge --class huge,Huge --geometry 1500x1000+0+0)
# The frame sizes are the window manager's; place the others by them.
read -r _ _ fw fh < <(frame_of "$far")
wmctrl -i -r "$far" -e "0,$((1440 - fw)),$((900 - fh)),-1,-1"
expect_frame "$far" $((1440 - fw)) $((900 - fh)) "$fw" "$fh"
read -r _ _ cw ch < <(frame_of "$centred")
wmctrl -i -r "$centred" -e "0,$(((1440 - cw) / 2)),$(((900 - ch) / 2)),-1,-1"
expect_frame "$centred" $(((1440 - cw) / 2)) $(((900 - ch) / 2)) "$cw" "$ch"
maxed=$(window --title Big --class big,Big --geometry 600x400+300+200 --maximized)
full=$(window --title Film --class film,Film --geometry 600x400+50+50 --fullscreen)
mini=$(window --title Tiny --class tiny,Tiny --geometry 500x300+300+300 --minimized)

declare -A before
for id in $corner $far $centred $huge $full $mini; do before[$id]=$(frame_of "$id"); done

tarnwick_start
plug DUMMY1 1920x1080 --right-of DUMMY0
# Four plain windows and the maximized one; not the full-screen window (its
# moving is off), not the minimized one.
wait_for_status "Moved " 10
[ "$(last_status)" = "Moved 5 windows to DUMMY1" ] || fail "status: $(last_status)"

is_maximized() { [ "$(states_of "$1")" = maximized ]; }

panel="0 0 1440 900"
external="1440 0 1920 1080"
for id in $corner $far $centred $huge; do
    # shellcheck disable=SC2046
    expect_frame "$id" $(placed "$rule" "$panel" "$external" "${before[$id]}") 1
done
# A maximized window arrives maximized, not as a plain window the monitor's size.
expect_inside "$maxed" $external
wait_until 3 is_maximized "$maxed" ||
    fail "the maximized window arrived as: $(states_of "$maxed") at $(frame_of "$maxed")"
expect_inside "$maxed" $external
expect_frame_stays "$full" ${before[$full]} 1
expect_frame "$mini" ${before[$mini]}
[ "$(states_of "$mini")" = hidden ] || fail "the minimized window was shown: $(states_of "$mini")"

expect_running
tarnwick_stop
echo ok
