#!/usr/bin/env bash
# The test desktop itself: windows of every kind are managed and framed, a
# monitor plugs in and out, and stopping leaves nothing behind.
source "$(dirname "$0")/lib.sh"

desktop_start
[ "$("$probe" monitors)" = "eDP-1 0 0 1440 900 primary" ] ||
    fail "the panel alone should be there: $("$probe" monitors)"

plain=$(window --title Notes --class notes,Notes --geometry 600x400+100+120)
other=$(window --title "Mail — Inbox" --class mail,Mail --geometry 500x300+700+400 --utf8-title)
maxed=$(window --title Big --class big,Big --geometry 600x400+200+100 --maximized)
full=$(window --title Film --class film,Film --geometry 600x400+50+50 --fullscreen)
mini=$(window --title Tiny --class tiny,Tiny --geometry 500x300+300+300 --minimized)
read -r main dialog < <(window --title Editor --class editor,Editor --geometry 700x500+400+200 --dialog | xargs)

list=$(frames)
for id in $plain $other $maxed $full $mini $main $dialog; do
    grep -q "^$id " <<<"$list" || fail "window $id is not in the client list: $list"
done

# Managed means framed: a plain window's frame holds its client, with the
# frame's corner where the client asked to be.
read -r x y w h < <(frame_of "$plain")
[ "$x $y" = "100 120" ] && [ "$w" -gt 600 ] && [ "$h" -gt 400 ] ||
    fail "Notes should be framed at 100,120 around 600x400: $x $y $w $h"
expect_frame "$maxed" 0 0 1440 900
expect_frame "$full" 0 0 1440 900
[ "$(states_of "$maxed")" = maximized ] || fail "Big is not maximized: $(states_of "$maxed")"
[ "$(states_of "$full")" = fullscreen ] || fail "Film is not full screen: $(states_of "$full")"
[ "$(states_of "$mini")" = hidden ] || fail "Tiny is not minimized: $(states_of "$mini")"

# What a window list reads: distinct pids and classes, UTF-8 titles intact,
# and a dialog that belongs to its main window's process.
grep -q "^$other [0-9]* \"Mail\" \"Mail — Inbox — Grüße, Привет ✓\" " <<<"$list" ||
    fail "Mail's class or UTF-8 title is wrong: $(grep "^$other" <<<"$list")"
[ "$(client_pid "$plain")" != "$(client_pid "$other")" ] || fail "two clients share a pid"
[ "$(client_pid "$main")" = "$(client_pid "$dialog")" ] || fail "the dialog has another pid"
grep -q "^$dialog [0-9]* \"Editor\" \"Editor Dialog\" " <<<"$list" || fail "dialog line: $list"

# Plugging in and out, with the monitor list following, and the panel kept.
plug DUMMY1 1920x1080 --right-of DUMMY0
"$probe" wait-monitor DUMMY1 present 2 >/dev/null || fail "DUMMY1 did not appear"
grep -qx "DUMMY1 1440 0 1920 1080 -" <<<"$("$probe" monitors)" ||
    fail "DUMMY1 should be right of the panel: $("$probe" monitors)"
primary DUMMY1
[ "$("$probe" monitors | awk '$NF == "primary" { print $1 }')" = DUMMY1 ] ||
    fail "DUMMY1 should be the only primary: $("$probe" monitors)"
primary eDP-1
unplug DUMMY1
"$probe" wait-monitor DUMMY1 absent 2 >/dev/null || fail "DUMMY1 did not go"
[ "$("$probe" monitors)" = "eDP-1 0 0 1440 900 primary" ] ||
    fail "the panel alone should be left: $("$probe" monitors)"

shot "$TD/desktop.png"
[ -s "$TD/desktop.png" ] || fail "no screenshot"

# Stopping: every process it started ends, and the display number is free.
cp "$TD/pids" "$TD/pids.before-stop"
display=$(cat "$TD/display")
"$desktop_tool" stop "$TD"
"$desktop_tool" stop "$TD" # a second stop is harmless
while read -r name pid started; do
    stat=$(cat "/proc/$pid/stat" 2>/dev/null) || continue
    state=${stat##*) }
    [ "${state%% *}" = Z ] && continue
    [ "$(awk '{ sub(/^.*\) /, ""); print $20 }' <<<"$stat")" = "$started" ] &&
        fail "$name ($pid) still runs after stop"
done <"$TD/pids.before-stop"
[ ! -e "/tmp/.X$display-lock" ] && [ ! -e "/tmp/.X11-unix/X$display" ] ||
    fail "display :$display is still taken after stop"
echo "ok"
