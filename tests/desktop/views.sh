#!/usr/bin/env bash
# The program as a user meets it, drawn: a monitor plugged in under the
# default "ask" drops the island from the laptop panel's top edge; its chooser
# lists the real windows and "Move all" moves them with progress and a done
# line; the tray's menu opens the settings window. The screenshots are kept
# in the build folder's shots/views, or in $TARNWICK_VIEWS_SHOTS.
source "$(dirname "$0")/lib.sh"

shots=${TARNWICK_VIEWS_SHOTS:-$TARNWICK_BIN_DIR/shots/views}
picture() { mkdir -p "$shots" && shot "$shots/$1.png"; }

control() { "$desktop_tool" control "$tarnwick_log" "$@"; }
press() { "$desktop_tool" press "$TD" "$tarnwick_log" "$@" || fail "cannot press $2 on the $1"; }

desktop_start
write_defaults delay=0 rememberLayouts=false playSounds=false
notes=$(window --title "Shopping list" --class notes,Notes --geometry 600x400+80+120)
mail=$(window --title "Inbox" --class mail,Mail --geometry 700x450+300+200)
term=$(window --title "build" --class term,Terminal --geometry 500x300+600+400)

"$desktop_tool" tray "$TD"

export TARNWICK_LOG_CONTROLS=1
tarnwick_start
grep -q "No system tray" "$tarnwick_log" && fail "the program found no tray"

log_mark
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_log "island phase choosing" 10
# The island hangs from the top edge of the panel (eDP-1 at 0,0 1440x900),
# centred on it, and its list holds the three windows.
wait_until 3 control island moveAll || fail "the chooser shows no \"Move all\""
read -r x y w h < <(control island island)
[ "$y" -ge 0 ] && [ "$y" -le 40 ] || fail "the island's top is at $y, not just below the panel's top edge"
[ $((x + w / 2)) -ge 700 ] && [ $((x + w / 2)) -le 740 ] || fail "the island is not centred on the panel: $x,$y ${w}x$h"
rows=$(grep -F "island controls:" "$tarnwick_log" | tail -n 1 | tr ' ' '\n' | grep -c '^row-')
[ "$rows" -eq 3 ] || fail "the chooser lists $rows windows, not 3"
sleep 0.5
picture island-chooser

press island moveAll
wait_for_status "Moved " 10
[ "$(last_status)" = "Moved 3 windows to DUMMY1" ] || fail "status: $(last_status)"
wait_for_log "island phase done(ok)" 5
picture island-done
for id in $notes $mail $term; do expect_inside "$id" 1440 0 1920 1080; done
wait_for_log "island closed" 10

# A second monitor: the island asks again without taking the focus from the
# user's window; a click on it gives it the keyboard, and Escape means "Not now".
log_mark
xdotool windowactivate --sync "$term"
plug DUMMY2 1280x800 --right-of DUMMY1
wait_for_log "island phase choosing" 10
wait_until 3 control island chooserTitle || fail "no chooser for the second monitor"
[ "$(xdotool getwindowfocus)" = "$((term))" ] || fail "the island took the focus: $(xdotool getwindowfocus)"
press island chooserTitle
sleep 0.3
xdotool key Escape
wait_for_log "island closed" 5
log_since_mark | grep -q "status: Moved" && fail "Escape moved windows"

# The tray icon's menu: a right click opens it, the keyboard chooses "Open Tarnwick…".
# trayer's panel, where the icon is embedded: "+X+Y" ends its line in the tree.
read -r tx ty < <(xwininfo -root -tree | awk '/"panel": \("panel" "trayer"\)/ && !n++ { split($NF, p, "+"); print p[2], p[3] }')
[ -n "$tx" ] || fail "no tray panel in the window tree"
log_mark
xdotool mousemove $((tx + 12)) $((ty + 14)) click 3
sleep 0.6
picture tray-menu
xdotool key Down Return
wait_for_log "window settings shown" 5
sleep 0.5
picture settings

expect_running
tarnwick_stop
echo ok
