#!/usr/bin/env bash
# A film plays full screen on the laptop's panel when a monitor comes, under
# the default "ask": the island drops over the film (openbox keeps a focused
# full-screen window above every window it manages that asks to stay on top),
# the film keeps the keyboard, and without a compositor the island's window is
# cut to the card's own rounded outline, so the film shows right up to the
# card's corners and edges, with no black around them. With "window" the film
# is an ordinary window filling the panel instead, under the island anyway.
# The pictures go to the build folder's shots/own-windows, or to
# $TARNWICK_OWN_SHOTS.
source "$(dirname "$0")/lib.sh"
how=${1:-fullscreen}

shots=${TARNWICK_OWN_SHOTS:-$TARNWICK_BIN_DIR/shots/own-windows}
control() { "$desktop_tool" control "$tarnwick_log" "$@"; }

# The colour at X,Y of a screenshot, as RRGGBB.
pixel() { convert "$1" -format "%[hex:p{$2,$3}]" info: | cut -c1-6; }

desktop_start
write_defaults delay=0 rememberLayouts=false
if [ "$how" = fullscreen ]; then
    film=$(window --title "Film" --class video,Video --geometry 1440x900+0+0 --fullscreen)
    wait_until 3 eval '[ "$(states_of "$film")" = fullscreen ]' || fail "the film is not full screen"
    expect_frame "$film" 0 0 1440 900
else
    film=$(window --title "Film" --class video,Video --geometry 1400x860+0+0)
fi
xdotool windowactivate --sync "$film"

export TARNWICK_LOG_CONTROLS=1
tarnwick_start
shot "$TD/before.png"
log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_log "island phase choosing" 10
wait_until 3 control island moveAll || fail "the chooser shows no \"Move all\""
sleep 0.6 # the card has finished growing
read -r x y w h < <(control island island)
note "island card at $x,$y ${w}x$h"

# What the user sees in the middle of the card is our window, not the film.
read -r top pid < <("$probe" top-at $((x + w / 2)) $((y + h / 2))) || fail "nothing shown at the card"
[ "$pid" = "$TARNWICK_PID" ] || fail "the film ($film) is over the island: on top there is $top of pid $pid"
[ "$(xdotool getwindowfocus)" = "$((film))" ] || fail "the island took the focus from the film: $(xdotool getwindowfocus)"
if [ "$how" = fullscreen ]; then
    [ "$(states_of "$film")" = fullscreen ] || fail "the film left full screen: $(states_of "$film")"
    mkdir -p "$shots"
    shot "$shots/island-over-fullscreen.png"
    convert "$shots/island-over-fullscreen.png" -crop $((w + 80))x$((h + 60))+$((x - 40))+$((y > 20 ? y - 20 : 0)) \
        +repage "$shots/island-corners.png"
fi

# Just outside the card (its rounded corners, its sides, the strip below
# where the shadow would fall) the film shows as it did before the island came.
shot "$TD/island.png"
[ "$(pixel "$TD/island.png" $((x + w / 2)) $((y + h / 2)))" != \
    "$(pixel "$TD/before.png" $((x + w / 2)) $((y + h / 2)))" ] || fail "the card's middle shows the film"
# The corners' points lie 4 pixels in along the diagonal: outside any corner
# rounded by more than 14.
for at in "$((x + 4)) $((y + 4))" "$((x + w - 5)) $((y + 4))" "$((x + 4)) $((y + h - 5))" \
    "$((x + w - 5)) $((y + h - 5))" "$((x + 1)) $((y + h - 2))" "$((x - 2)) $((y + h / 2))" \
    "$((x + w + 1)) $((y + h / 2))" "$((x + w / 2)) $((y + h + 1))" "$((x + w / 2)) $((y + h + 6))" \
    "$((x + 30)) $((y + h + 4))"; do
    # shellcheck disable=SC2086
    got=$(pixel "$TD/island.png" $at)
    # shellcheck disable=SC2086
    was=$(pixel "$TD/before.png" $at)
    [ "$got" = "$was" ] || fail "at $at just outside the card: $got, where the film shows $was"
done

expect_running
tarnwick_stop
echo ok
