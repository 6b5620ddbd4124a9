#!/usr/bin/env bash
# A monitor plugged in and out many times costs no memory that stays: the
# program's private resident memory levels off once the first changes have
# filled Qt's caches, and the x11 platform's side of a change leaves nothing
# unreachable (run from an AddressSanitizer build, LeakSanitizer checks both
# programs at exit). Usage: display-memory.sh [CYCLES]
source "$(dirname "$0")/lib.sh"
cycles=${1:-40}
# A sanitizer's allocator holds freed memory back for a while: there the
# cycles run for LeakSanitizer alone, fewer of them, without the bound.
sanitized=""
# clang links its sanitizer runtimes in statically, so the build says it, not ldd.
if grep -qE '^TARNWICK_SANITIZE:[A-Z]*=(address|thread)$' "$TARNWICK_BIN_DIR/CMakeCache.txt"; then
    sanitized=1
    cycles=10
fi
# A plug and unplug that keeps ~50 KB grows 40 cycles by ~2 MB; once warm,
# the program's private memory moves by a few hundred KB at most.
limit_kb=1024
: "${LSAN_OPTIONS:=suppressions=$TARNWICK_SOURCE_DIR/tests/lsan.supp:print_suppressions=0}"
export LSAN_OPTIONS

desktop_start
"$desktop_tool" tray "$TD"
write_defaults onConnect='"nothing"' delay=0
# The mode is added once, outside the cycles.
plug DUMMY1 1280x800
unplug DUMMY1
# One malloc arena: with one per thread, memory freed on the main thread that
# another thread allocated (X events, the listings) lets those arenas creep by
# hundreds of KB in steps, which says nothing about what the program keeps.
MALLOC_ARENA_MAX=1 tarnwick_start

# Anonymous memory only: the island's window buffer is shared with the X
# server and comes and goes with the island.
private_kb() { awk '/^RssAnon:/ { print $2 }' "/proc/$TARNWICK_PID/status"; }

wait_for_status_like() { # REGEX
    local deadline=$(($(now_ms) + 5000))
    until log_since_mark | grep -qE "status: $1\$"; do
        [ "$(now_ms)" -lt "$deadline" ] || fail "no status like \"$1\" within 5 s"
        sleep 0.05
    done
}

cycle() {
    log_mark
    plug DUMMY1 1280x800
    wait_for_status_like '(DUMMY1|[0-9]+ displays) connected'
    log_mark
    unplug DUMMY1
    wait_for_status_like 'DUMMY1 disconnected'
}

for _ in 1 2 3 4 5; do cycle; done
before=$(private_kb)
readings="$before"
for i in $(seq "$cycles"); do
    cycle
    [ $((i % 10)) -ne 0 ] || readings+=" $(private_kb)"
done
after=$(private_kb)
note "private memory over $cycles cycles (kB, every 10): $readings"
[ -n "$sanitized" ] || [ $((after - before)) -le "$limit_kb" ] ||
    fail "private memory grew by $((after - before)) kB over $cycles plugs and unplugs: $readings"
expect_running
tarnwick_stop

# The platform's side alone, without the views, over a monitor of its own.
out=$("$TARNWICK_BIN_DIR/tarnwick-displaycycles" DUMMY1 1280x800 20 2>"$TD/displaycycles.err") ||
    fail "the display cycles failed: $(tail -n 40 "$TD/displaycycles.err")"
[ "$out" = "20 cycles" ] || fail "the display cycles said: $out"
echo ok
