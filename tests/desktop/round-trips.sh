#!/usr/bin/env bash
# Windows sent to a monitor larger than the panel under "keep size", ten times:
# each plug under "move all" sends them out, each unplug and a word to the
# window manager bring them back to where they began. Their places on the
# monitor fall between whole pixels, and they keep their size all the same.
source "$(dirname "$0")/lib.sh"

desktop_start
write_defaults onConnect='"moveAll"' placement='"keepSize"' delay=0 moveFullscreen=false \
    rememberLayouts=false
one=$(window --title One --class one,One --geometry 602x425+123+77)
two=$(window --title Two --class two,Two --geometry 500x333+700+400)
sleep 1 # the window manager's frames
declare -A before
for id in $one $two; do before[$id]=$(frame_of "$id"); done

tarnwick_start
for trip in $(seq 1 10); do
    log_mark
    plug DUMMY1 1920x1080 --right-of DUMMY0
    wait_for_status "Moved " 10
    [ "$(last_status)" = "Moved 2 windows to DUMMY1" ] || fail "trip $trip: $(last_status)"
    for id in $one $two; do
        read -r _ _ w h <<<"${before[$id]}"
        wait_until 3 inside "$id" 1440 0 1920 1080 || fail "trip $trip: $id at $(frame_of "$id")"
        got=$(frame_of "$id" | cut -d' ' -f3,4)
        [ "$got" = "$w $h" ] || fail "trip $trip: window $id was $w $h, now $got"
    done
    log_mark
    unplug DUMMY1
    wait_for_status "DUMMY1 disconnected" 5
    for id in $one $two; do
        read -r x y w h <<<"${before[$id]}"
        wmctrl -i -r "$id" -e "0,$x,$y,-1,-1"
        expect_frame "$id" "$x" "$y" "$w" "$h"
    done
done

expect_running
tarnwick_stop
echo ok
