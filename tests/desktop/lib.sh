# Helpers for the tests that run the real program on the test desktop.
# Sourced by each test script; needs TARNWICK_BIN_DIR (the build directory)
# and TARNWICK_SOURCE_DIR (the checkout), which ctest sets.
#
# A test starts a desktop with desktop_start (stopped by a trap whatever
# happens), opens windows with window, writes the user's choices with
# write_defaults, runs the program with tarnwick_start and checks frames and
# status lines. On failure (or with TARNWICK_KEEP_DESKTOP set) the desktop's
# folder is kept, with a screenshot, the window list and the program's log,
# and its path is printed.
set -euo pipefail

: "${TARNWICK_BIN_DIR:?set TARNWICK_BIN_DIR to the build directory}"
: "${TARNWICK_SOURCE_DIR:=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)}"
export TARNWICK_BIN_DIR
desktop_tool=$TARNWICK_SOURCE_DIR/scripts/test-desktop
probe=$TARNWICK_BIN_DIR/tarnwick-xprobe

TD=""
TARNWICK_PID=""
tarnwick_log=""
log_mark_line=0

fail() {
    echo "FAIL: $*" >&2
    exit 1
}
note() { echo "# $*"; }

# A fault already reported and awaiting a decision: ctest shows the test as
# skipped (SKIP_RETURN_CODE), so it stays visible without failing the run, and
# passes again by itself once the fault is gone.
known_failure_rc=77
known_failure() {
    echo "KNOWN FAILURE: $*" >&2
    exit "$known_failure_rc"
}

now_ms() { echo $(($(date +%s%N) / 1000000)); }

# wait_until SECONDS COMMAND...: true once COMMAND succeeds, false at the deadline.
# COMMAND's arguments are expanded once, before the first try: a reading that
# must be taken afresh each time goes inside eval '...'.
wait_until() {
    local deadline=$(($(now_ms) + $1 * 1000))
    shift
    until "$@" >/dev/null 2>&1; do
        [ "$(now_ms)" -lt "$deadline" ] || return 1
        sleep 0.05
    done
}

# ---- the desktop ------------------------------------------------------------

# desktop_start [--panel WxH]: the laptop panel's size, 1440x900 unless given.
desktop_start() {
    TD=$(mktemp -d "${TMPDIR:-/tmp}/tarnwick-desktop.XXXXXX")
    trap desktop_finish EXIT
    trap 'exit 130' INT TERM
    "$desktop_tool" start "$TD" "$@" >/dev/null
    # shellcheck disable=SC1091
    source "$TD/env"
    tarnwick_log=$TD/tarnwick.log
    : >"$tarnwick_log"
}

desktop_finish() {
    local rc=$?
    trap - EXIT
    if [ -n "$TD" ] && [ -f "$TD/env" ]; then
        if [ "$rc" -ne 0 ] && [ "$rc" -ne "$known_failure_rc" ]; then
            "$desktop_tool" shot "$TD" "$TD/failure.png" 2>/dev/null || true
            {
                echo "--- windows"
                "$probe" list
                echo "--- monitors"
                "$probe" monitors
            } >"$TD/failure.txt" 2>&1 || true
            echo "--- windows and monitors at the failure:" >&2
            cat "$TD/failure.txt" >&2
            if [ -s "$tarnwick_log" ]; then
                echo "--- last lines of the program's log:" >&2
                tail -n 30 "$tarnwick_log" >&2
            fi
        fi
        "$desktop_tool" stop "$TD"
    fi
    if { [ "$rc" -eq 0 ] || [ "$rc" -eq "$known_failure_rc" ]; } && [ -z "${TARNWICK_KEEP_DESKTOP:-}" ]; then
        rm -rf "$TD"
    elif [ -n "$TD" ]; then
        echo "kept: $TD" >&2
    fi
    exit "$rc"
}

# Opens windows in one client process; prints their ids.
#   window --title T --class INSTANCE,CLASS --geometry WxH+X+Y [more client options]
window() { "$desktop_tool" client "$TD" "$@"; }

plug() { "$desktop_tool" plug "$TD" "$@"; }
unplug() { "$desktop_tool" unplug "$TD" "$@"; }
primary() { "$desktop_tool" primary "$TD" "$@"; }
shot() { "$desktop_tool" shot "$TD" "$@"; }

# The pid of the client that showed window ID.
client_pid() { "$probe" frame "$1" | awk '{ print $2 }'; }

# ---- frames -----------------------------------------------------------------

frames() { "$probe" list; }

# "X Y W H" of window ID's frame, or nothing when it is gone.
frame_of() { "$probe" frame "$1" | awk '{ print $(NF-4), $(NF-3), $(NF-2), $(NF-1) }'; }

# "X Y" of window ID's frame.
position_of() { frame_of "$1" | cut -d' ' -f1,2; }

states_of() { "$probe" frame "$1" | awk '{ print $NF }'; }

# expect_frame ID X Y W H [SLACK] [TIMEOUT]: the frame gets there in time.
expect_frame() {
    local id=$1 x=$2 y=$3 w=$4 h=$5 slack=${6:-0} timeout=${7:-3} last
    if ! last=$("$probe" wait-frame "$id" "$x" "$y" "$w" "$h" "$timeout" "$slack"); then
        fail "window $id: expected frame $x $y $w $h, got: $last"
    fi
}

# expect_frame_stays ID X Y W H SECONDS: nothing moves the window meanwhile.
expect_frame_stays() {
    local id=$1 want="$2 $3 $4 $5" until=$(($(now_ms) + ${6:-1} * 1000)) got
    while [ "$(now_ms)" -lt "$until" ]; do
        got=$(frame_of "$id")
        [ "$got" = "$want" ] || fail "window $id moved: expected $want, got ${got:-nothing}"
        sleep 0.1
    done
}

# expect_inside ID X Y W H [TIMEOUT]: the frame comes to lie wholly within the
# rectangle. The program reports a move once its requests are sent; the window
# manager carries them out a moment later.
expect_inside() {
    local id=$1 rect="$2 $3 $4 $5" timeout=${6:-3} f
    if ! wait_until "$timeout" inside "$id" $rect; then
        f=$(frame_of "$id")
        [ -n "$f" ] || fail "window $id is gone"
        fail "window $id at $f is not inside $rect"
    fi
}

# inside ID X Y W H: whether the frame lies wholly within the rectangle now.
inside() {
    local f
    f=$(frame_of "$1")
    [ -n "$f" ] || return 1
    # shellcheck disable=SC2086
    set -- $f "$2" "$3" "$4" "$5"
    [ "$1" -ge "$5" ] && [ "$2" -ge "$6" ] && [ $(($1 + $3)) -le $(($5 + $7)) ] &&
        [ $(($2 + $4)) -le $(($6 + $8)) ]
}

# placed RULE "SRC" "DST" "FRAME": where RULE puts FRAME moving from the
# usable area SRC to DST, each "X Y W H", each value rounded to the nearest
# whole pixel.
placed() {
    awk -v rule="$1" -v s="$2" -v t="$3" -v f="$4" '
        function floor(v) { return v == int(v) ? v : (v < 0 ? int(v) - 1 : int(v)) }
        function nearest(v) { return v < 0 ? -floor(-v + 0.5) : floor(v + 0.5) }
        function clamp(v) { return v < 0 ? 0 : (v > 1 ? 1 : v) }
        BEGIN {
            split(s, S, " "); split(t, T, " "); split(f, W, " ")
            if (rule == "keepSize") {
                w = W[3] < T[3] ? W[3] : T[3]; h = W[4] < T[4] ? W[4] : T[4]
                dx = S[3] - W[3]; dy = S[4] - W[4]
                if (dx <= 1) dx = 1; if (dy <= 1) dy = 1
                x = T[1] + clamp((W[1] - S[1]) / dx) * (T[3] - w)
                y = T[2] + clamp((W[2] - S[2]) / dy) * (T[4] - h)
            } else if (rule == "scale") {
                sx = T[3] / S[3]; sy = T[4] / S[4]
                x = T[1] + sx * (W[1] - S[1]); y = T[2] + sy * (W[2] - S[2])
                w = sx * W[3]; h = sy * W[4]
            } else {
                x = T[1]; y = T[2]; w = T[3]; h = T[4]
            }
            print nearest(x), nearest(y), nearest(w), nearest(h)
        }'
}

# ---- the machine's sleep ----------------------------------------------------

LOGIND_PID=""

# logind_start: a private system bus, exported in DBUS_SYSTEM_BUS_ADDRESS for
# the program started afterwards, with a stand-in for logind that owns its name.
logind_start() {
    cat >"$TD/system-bus.conf" <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=$TD/run/system-bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
EOF
    dbus-daemon --config-file="$TD/system-bus.conf" --nofork --print-address=1 \
        </dev/null >"$TD/system-bus.address" 2>"$TD/system-bus.log" &
    "$desktop_tool" track "$TD" $! system-bus
    wait_until 5 test -s "$TD/system-bus.address" ||
        fail "the system bus did not start: $(cat "$TD/system-bus.log")"
    DBUS_SYSTEM_BUS_ADDRESS=$(head -n 1 "$TD/system-bus.address")
    export DBUS_SYSTEM_BUS_ADDRESS
    "$TARNWICK_BIN_DIR/tarnwick-fakelogind" </dev/null >"$TD/logind.out" 2>"$TD/logind.err" &
    LOGIND_PID=$!
    "$desktop_tool" track "$TD" "$LOGIND_PID" logind
    wait_until 5 grep -qx ready "$TD/logind.out" ||
        fail "the stand-in for logind did not start: $(cat "$TD/logind.err")"
}

# logind_sleep, logind_wake: PrepareForSleep(true) or (false), returning once
# the signal is on the bus.
logind_sleep() { logind_signal USR1 sleep; }
logind_wake() { logind_signal USR2 wake; }
logind_signal() {
    local what=$2 sent
    sent=$(grep -cx "$what" "$TD/logind.out" || true)
    kill "-$1" "$LOGIND_PID" || fail "the stand-in for logind is gone"
    wait_until 2 eval '[ "$(grep -cx "$what" "$TD/logind.out")" -gt "$sent" ]' ||
        fail "logind's $what signal was not sent: $(cat "$TD/logind.err")"
}

# ---- the program ------------------------------------------------------------

# write_defaults KEY=JSON...: the preferences file, with the first-run setup
# already done and sounds off unless a test says otherwise.
#   write_defaults onConnect='"moveAll"' placement='"scale"' delay=0
write_defaults() {
    local -A values=([setup.skipMove]=true [setup.askedLogin]=true [playSounds]=false)
    local kv body="" key
    for kv in "$@"; do values[${kv%%=*}]=${kv#*=}; done
    for key in "${!values[@]}"; do
        body+="${body:+,}\"$key\": ${values[$key]}"
    done
    mkdir -p "$XDG_CONFIG_HOME/tarnwick"
    echo "{$body}" >"$XDG_CONFIG_HOME/tarnwick/defaults.json"
}

defaults_file() { echo "$XDG_CONFIG_HOME/tarnwick/defaults.json"; }

# The name the program holds on the session bus while it runs.
: "${TARNWICK_BUS_NAME:=org.tarnwick.Tarnwick}"

# tarnwick_start [ARGS...]: runs the program (the build's, or $TARNWICK_PROGRAM)
# in the background, its standard error appended to $tarnwick_log; sets TARNWICK_PID. Returns once this copy
# holds its name on the session bus (or, failing that, after 5 s), and has
# had a moment more to read the displays.
tarnwick_start() {
    local bin=${TARNWICK_PROGRAM:-$TARNWICK_BIN_DIR/tarnwick}
    [ -x "$bin" ] || fail "no program at $bin"
    "$bin" --platform x11 "$@" </dev/null >>"$TD/tarnwick.out" 2>>"$tarnwick_log" &
    TARNWICK_PID=$!
    "$desktop_tool" track "$TD" "$TARNWICK_PID" tarnwick
    local deadline=$(($(now_ms) + 5000))
    until [ "$(bus_owner_pid)" = "$TARNWICK_PID" ]; do
        kill -0 "$TARNWICK_PID" 2>/dev/null || fail "the program exited at start: $(tail -n 5 "$tarnwick_log")"
        if [ "$(now_ms)" -ge "$deadline" ]; then
            note "the program does not hold $TARNWICK_BUS_NAME after 5 s; going on"
            break
        fi
        sleep 0.05
    done
    sleep 0.5
    kill -0 "$TARNWICK_PID" 2>/dev/null || fail "the program exited at start: $(tail -n 5 "$tarnwick_log")"
}

# The pid of the process that holds the program's bus name, or nothing.
bus_owner_pid() {
    dbus-send --session --dest=org.freedesktop.DBus --type=method_call --print-reply \
        /org/freedesktop/DBus org.freedesktop.DBus.GetConnectionUnixProcessID \
        "string:$TARNWICK_BUS_NAME" 2>/dev/null | awk '$1 == "uint32" { print $2 }' || true
}

# Running, not merely waiting to be reaped.
is_running() {
    kill -0 "$1" 2>/dev/null && ! grep -q '^State:.*zombie' "/proc/$1/status" 2>/dev/null
}

expect_running() {
    is_running "${1:-$TARNWICK_PID}" || fail "the program is not running: $(tail -n 5 "$tarnwick_log")"
}

# tarnwick_stop: SIGTERM, and the program must end by itself, cleanly, soon.
tarnwick_stop() {
    local pid=${1:-$TARNWICK_PID} rc=0 deadline=$(($(now_ms) + 3000))
    kill -TERM "$pid" 2>/dev/null || fail "the program was not running at the end"
    while ! grep -q '^State:.*zombie' "/proc/$pid/status" 2>/dev/null && [ -e "/proc/$pid" ]; do
        [ "$(now_ms)" -lt "$deadline" ] || fail "the program did not end within 3 s of SIGTERM"
        sleep 0.05
    done
    wait "$pid" || rc=$?
    [ "$rc" -eq 0 ] || fail "the program ended with status $rc after SIGTERM"
}

# tarnwick_action NAME: runs one of the program's actions over the session
# bus, as a desktop's launcher or a shortcut would.
tarnwick_action() {
    gdbus call --session --dest org.tarnwick.Tarnwick --object-path /org/tarnwick/Tarnwick \
        --method org.freedesktop.Application.ActivateAction "$1" '[]' '{}' >/dev/null
}

# save_layout DISPLAYS: the program's save-layout action, waited for.
save_layout() {
    log_mark
    tarnwick_action save-layout
    wait_for_status "Layout saved for $1 displays" 5
}

# two_docs GEOMETRY X Y: two windows of one application, told apart by their
# titles, the second moved to X,Y; sets doc1 and doc2.
two_docs() {
    local w h
    read -r doc1 doc2 < <(window --title Doc --class doc,Doc --geometry "$1" --count 2 | xargs)
    wmctrl -i -r "$doc2" -e "0,$2,$3,-1,-1"
    read -r _ _ w h < <(frame_of "$doc2")
    expect_frame "$doc2" "$2" "$3" "$w" "$h"
}

# Log lines are searched from the last mark on, so a test can wait for the
# next occurrence of a text it has already seen.
log_mark() { log_mark_line=$(wc -l <"$tarnwick_log"); }

log_since_mark() { tail -n +"$((log_mark_line + 1))" "$tarnwick_log"; }

# wait_for_log TEXT [TIMEOUT]: a line containing TEXT, since the last mark.
wait_for_log() {
    local text=$1 deadline=$(($(now_ms) + ${2:-5} * 1000))
    until log_since_mark | grep -qF -- "$text"; do
        [ "$(now_ms)" -lt "$deadline" ] || fail "no log line with \"$text\" within ${2:-5} s"
        kill -0 "$TARNWICK_PID" 2>/dev/null || fail "the program exited while waiting for \"$text\""
        sleep 0.05
    done
}

# wait_for_status TEXT [TIMEOUT]: a status line that begins with TEXT.
wait_for_status() { wait_for_log "status: $1" "${2:-5}"; }

# The last status text since the mark.
last_status() { log_since_mark | grep -F 'status: ' | tail -n 1 | sed 's/.*status: //'; }
