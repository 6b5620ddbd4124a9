#!/usr/bin/env bash
# The x11 ports' own tests that need a real X server (tests/x11/X11LiveTest.cpp),
# run on a fresh test desktop. Arguments go to the test program (--gtest_filter=...).
source "$(dirname "$0")/lib.sh"

live=$TARNWICK_BIN_DIR/tarnwick-x11-live
[ -x "$live" ] || fail "no $live: build it first"
desktop_start
"$live" "$@" || fail "the live tests failed"
echo ok
