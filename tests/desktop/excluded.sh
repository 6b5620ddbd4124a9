#!/usr/bin/env bash
# Applications on the exclusion list stay where they are when the others
# move, whether named by their desktop entry or by their window class.
source "$(dirname "$0")/lib.sh"

desktop_start
# The entry runs a program no test window comes from, so only its window
# class ties it to a window: one naming the test client would claim them all.
mkdir -p "$XDG_DATA_HOME/applications"
cat >"$XDG_DATA_HOME/applications/org.example.Pinned.desktop" <<'ENTRY'
[Desktop Entry]
Type=Application
Name=Pinned
Exec=true
StartupWMClass=Pinned
ENTRY
write_defaults onConnect='"moveAll"' placement='"fill"' delay=0 \
    excluded='["Keep", "org.example.Pinned"]'

free=$(window --title Free --class free,Free --geometry 600x400+100+100)
keep=$(window --title Keep --class keep,Keep --geometry 600x400+200+200)
pinned=$(window --title Pinned --class pinned,Pinned --geometry 600x400+300+300)
keep_at=$(frame_of "$keep")
pinned_at=$(frame_of "$pinned")

tarnwick_start
plug DUMMY1 1920x1080 --right-of DUMMY0
wait_for_status "Moved " 10
[ "$(last_status)" = "Moved 1 window to DUMMY1" ] || fail "status: $(last_status)"
expect_frame "$free" 1440 0 1920 1080 1
# shellcheck disable=SC2086
expect_frame_stays "$keep" $keep_at 1
# shellcheck disable=SC2086
expect_frame_stays "$pinned" $pinned_at 0

expect_running
tarnwick_stop
echo ok
