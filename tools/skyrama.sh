#!/usr/bin/env bash
# One entry point for setting up, building, running and testing skyrama.
#
#   bash tools/skyrama.sh run    install what is missing, build, build the data tree and
#                                play the default movie (headless: render it to frames)
#   bash tools/skyrama.sh test   install what is missing, build twice (plain and with
#                                AddressSanitizer + UndefinedBehaviorSanitizer), run every test
#
# Further commands: setup, build [plain|sanitize], data, unit [plain|sanitize].
set -euo pipefail

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

packages=(g++ cmake pkg-config freeglut3-dev libglu1-mesa-dev libgl1-mesa-dri zlib1g-dev
          libimgui-dev libgtest-dev libgmock-dev libbenchmark-dev xvfb xauth xdotool x11-apps
          netpbm mesa-utils libfreetype-dev gzip ca-certificates)

say() { printf '[skyrama] %s\n' "$*" >&2; }

setup() {
    local missing=()
    for p in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed" || missing+=("$p")
    done
    # The data tree fetches one source from the npm registry; use the machine's npm if it
    # has one, Debian's otherwise.
    command -v npm >/dev/null 2>&1 || missing+=(npm)
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi
    say "installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

builddir() { [ "$1" = sanitize ] && echo "$top/build-sanitize" || echo "$top/build"; }

build() {
    local kind=${1:-plain} dir
    dir=$(builddir "$kind")
    local flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
    [ "$kind" = sanitize ] && flags=(-DCMAKE_BUILD_TYPE=Debug -DSKYRAMA_SANITIZE=ON -DSKYRAMA_BENCH=OFF)
    say "building ($kind) in $dir"
    cmake -S "$top" -B "$dir" "${flags[@]}" >/dev/null
    cmake --build "$dir" -j "$jobs"
}

data() {
    local dir
    dir=$(builddir plain)
    local targets
    targets=$(cmake --build "$dir" --target help 2>/dev/null || true)
    if grep -qw data <<<"$targets"; then
        say "building the data tree (the first time fetches the source packages)"
        cmake --build "$dir" --target data
    fi
}

# Starts one private X server; sets xdisplay to its name (":N") and xserver_pid to its pid.
# (Not run in a command substitution: its subshell would keep the pid to itself.)
xserver_pid=""
xdisplay=""
start_xvfb() {
    local fifo n
    fifo=$(mktemp -u)
    mkfifo "$fifo"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$fifo" >/dev/null 2>&1 &
    xserver_pid=$!
    read -r n <"$fifo"
    rm -f "$fifo"
    xdisplay=":$n"
}
stop_xvfb() { [ -n "$xserver_pid" ] && kill "$xserver_pid" 2>/dev/null || true; }
trap stop_xvfb EXIT

unit() {
    local kind=${1:-plain} dir display
    dir=$(builddir "$kind")
    export LSAN_OPTIONS="suppressions=$top/tests/lsan.supp:print_suppressions=0"
    export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
    say "tests without a display ($kind)"
    (cd "$dir" && env -u DISPLAY ctest -L nodisplay --output-on-failure -j "$jobs")
    start_xvfb
    display=$xdisplay
    say "tests with a window, on Xvfb $display ($kind)"
    # Mesa's driver is loaded and unloaded at run time, so its own allocations leave
    # unsymbolised leak reports; leaks of our code are checked by the tests above.
    (cd "$dir" && DISPLAY=$display ASAN_OPTIONS="detect_leaks=0:abort_on_error=0" \
        ctest -L '^display$' --output-on-failure)
    stop_xvfb
    xserver_pid=""
}

run() {
    local script="$top/data/movies/tour.scp" stars="$top/data/stardata/nearby.star"
    [ -f "$script" ] || script="$top/data/movies/demo.scp"
    local args=("$script")
    [ -f "$stars" ] && args+=("$stars")
    export TOPDIR="$top"
    if [ -z "${DISPLAY:-}" ]; then
        local out="$top/frames"
        mkdir -p "$out"
        local display
        start_xvfb
        display=$xdisplay
        say "no DISPLAY: rendering the movie headless on Xvfb $display"
        local status=0
        (cd "$top" && DISPLAY=$display "$(builddir plain)/skyrama" -dump "$out/frame" 0 "${args[@]}") || status=$?
        # A finished movie dump ends the program with exit code 1.
        if [ "$status" -ne 1 ]; then
            say "the movie dump failed (exit code $status)"
            exit 1
        fi
        say "frames written to $out/frame.NNNN.pnm ($(ls "$out" | wc -l) files)"
    else
        (cd "$top" && "$(builddir plain)/skyrama" "${args[@]}")
    fi
}

cmd=${1:-run}
shift || true
case "$cmd" in
    setup) setup ;;
    build) setup; build "${1:-plain}" ;;
    data) setup; build plain; data ;;
    unit) unit "${1:-plain}" ;;
    run) setup; build plain; data; run ;;
    test) setup; build plain; data; unit plain; build sanitize; unit sanitize ;;
    *) echo "usage: bash tools/skyrama.sh run|test|setup|build [plain|sanitize]|data|unit [plain|sanitize]" >&2; exit 2 ;;
esac
