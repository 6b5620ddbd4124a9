#!/usr/bin/env bash
# The settings window on a laptop whose only screen is 1280x800, shorter than
# the form: the window opens no larger than the screen, its title bar on it
# (the frame counted), and the form scrolls inside. Its width is fixed, as a
# form laid out for one width has: the window manager offers no maximize.
# The picture goes to the build folder's shots/own-windows, or to
# $TARNWICK_OWN_SHOTS.
source "$(dirname "$0")/lib.sh"

shots=${TARNWICK_OWN_SHOTS:-$TARNWICK_BIN_DIR/shots/own-windows}
control() { "$desktop_tool" control "$tarnwick_log" "$@"; }

desktop_start --panel 1280x800
write_defaults
export TARNWICK_LOG_CONTROLS=1
tarnwick_start --settings
wait_for_log "window settings shown" 5
wait_until 3 control settings settingsRoot || fail "the settings window reports no controls"
settings=$(frames | awk -v pid="$TARNWICK_PID" '$2 == pid && $4 == "\"Tarnwick\"" { print $1; exit }')
[ -n "$settings" ] || fail "no settings window in the window list: $(frames)"
sleep 0.5 # the window manager has placed it
note "settings frame: $(frame_of "$settings")"
inside "$settings" 0 0 1280 800 || fail "the settings window's frame $(frame_of "$settings") is not on the 1280x800 screen"
read -r _ _ w h < <(control settings settingsRoot)
[ "$w" -eq 560 ] || fail "the form is $w wide, not 560"
[ "$h" -lt 780 ] || fail "the form is ${h} tall, its full height, on a screen too short for it"
scroll=$(control settings settingsScroll) || fail "the form has no scrolling area"
note "scrolling area: $scroll"

mkdir -p "$shots"
shot "$shots/settings-1280x800.png"

read -r _ min max actions < <("$probe" hints "$settings" | awk '{ print "-", $2, $4, $6 }')
[ "${min%x*}" = "${max%x*}" ] && [ "${min%x*}" != 0 ] ||
    fail "the width is not fixed: minimum $min, maximum $max"
case ",$actions," in
    *,maximize_horz,* | *,maximize_vert,*) fail "the window manager offers maximize: $actions" ;;
esac
case ",$actions," in
    *,close,*) ;;
    *) fail "the window cannot be closed: $actions" ;;
esac

expect_running
tarnwick_stop
echo ok
