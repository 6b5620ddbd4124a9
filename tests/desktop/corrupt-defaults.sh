#!/usr/bin/env bash
# A preferences file that cannot be read is put aside, byte for byte, and the
# program starts afresh and works.
source "$(dirname "$0")/lib.sh"

desktop_start
cfg=$(defaults_file)
mkdir -p "$(dirname "$cfg")"
for broken in '{"onConnect": "moveAll", "delay": ' '["not", "an", "object"]'; do
    rm -f "$cfg".corrupt-*
    printf '%s' "$broken" >"$cfg"
    tarnwick_start
    wait_until 3 compgen -G "$cfg.corrupt-*" || fail "the unreadable file was not put aside: $(ls "$(dirname "$cfg")")"
    aside=$(compgen -G "$cfg.corrupt-*" | head -n 1)
    [ "$(cat "$aside")" = "$broken" ] || fail "the file put aside differs: $(cat "$aside")"
    ! grep -qF "$broken" "$cfg" 2>/dev/null || fail "the unreadable file is still in use"

    log_mark
    plug DUMMY1 1920x1080 --right-of DUMMY0
    wait_for_status "DUMMY1 connected" 3
    unplug DUMMY1
    wait_for_status "DUMMY1 disconnected" 3
    expect_running
    tarnwick_stop
done
echo ok
