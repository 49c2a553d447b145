#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds and runs every test without a display. Ends in the times of its steps and ctest's
# summary.
#
#   ./test.sh                 the tests
#   ./test.sh --all           and what changed is checked for style; the tests under AddressSanitizer and
#                             UndefinedBehaviorSanitizer; the fuzz targets and the benchmarks briefly; the Debian package
#                             in a clean root; SocketCAN under a kernel of its own
#   ./test.sh --fuzz SECONDS  the fuzz targets, each for as long
#   ./test.sh -R reader       further arguments go to ctest
set -eu
cd "$(dirname "$0")"

what=tests
case ${1-} in
    --all)
        what=all
        shift
        ;;
    --fuzz)
        what=fuzz
        seconds=${2-}
        [[ $seconds =~ ^[1-9][0-9]*$ ]] || { echo "usage: ./test.sh --fuzz SECONDS" >&2; exit 1; }
        shift 2
        ;;
esac

# Steps, and how long they took.
times=()
step() { # WHAT COMMAND...
    local begin=$SECONDS
    echo "== $1" >&2
    "${@:2}"
    times+=("$(printf '%5d s  %s' $((SECONDS - begin)) "$1")")
}
show_times() {
    echo "== Times" >&2
    printf '%s\n' "${times[@]}" "$(printf '%5d s  in all' "$SECONDS")" >&2
}

# A linker that finds no room on the disk only says that it was killed.
say_that_disk_is_full() {
    local free
    free=$(df --output=avail -BM . | tail -n 1 | tr -dc '0-9')
    [ "$free" -ge 500 ] || echo "FAILED: the disk is full: $free MB are free in $PWD" >&2
}
trap '[ $? -eq 0 ] || say_that_disk_is_full' EXIT

run_ctest() { # FOLDER [CTEST ARGUMENTS]
    local folder=$1
    shift
    ctest --test-dir "$folder" --output-on-failure --no-tests=error -j "$(nproc)" "$@"
}
# For ctest a test that leaves itself out has passed.
show_skips() { # FOLDER; fails when there are none
    grep -aE '^SKIP ' "$1/Testing/Temporary/LastTest.log" >&2
}
run_tests() { # FOLDER [CTEST ARGUMENTS]
    run_ctest "$@"
    ! show_skips "$1" || echo "The tests above have left themselves out, each for the reason behind its name" >&2
}
# Where all is run, all is installed: a test that leaves itself out there guards nothing.
run_all_tests() { # FOLDER [CTEST ARGUMENTS]
    CI=true run_ctest "$@"
    if show_skips "$1"; then
        echo "FAILED: these tests have left themselves out" >&2
        return 1
    fi
}
# The sanitizers name the line with the lines' numbers alone; all that a debugger wants would take gigabytes.
build_sanitized() {
    OVERVIEW_BUILD_DIR=build-sanitized OVERVIEW_BUILD_TYPE=Debug \
        OVERVIEW_CMAKE_OPTIONS="-DOVERVIEW_SANITIZE=address,undefined -DCMAKE_CXX_FLAGS_DEBUG=-g1" scripts/build all
}
test_sanitized() {
    ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 run_all_tests build-sanitized "$@"
}
build_release() {
    OVERVIEW_CMAKE_OPTIONS="-DOVERVIEW_BUILD_BENCH=ON" scripts/build all
}
fuzz() { # SECONDS or --short
    tests/fuzz/run-fuzz "$1"
}

case $what in
    fuzz)
        step "Packages" scripts/install-packages all
        step "Fuzz targets, $seconds s each" fuzz "$seconds"
        show_times
        ;;
    tests)
        step "Packages" scripts/install-packages test
        step "Build" scripts/build --configure all
        step "Tests" run_tests build "$@"
        show_times
        ;;
    all)
        step "Packages" scripts/install-packages all
        step "Build" build_release
        step "Style of what changed" scripts/check-style
        step "Build with AddressSanitizer and UndefinedBehaviorSanitizer" build_sanitized
        step "Tests with the sanitizers" test_sanitized "$@"
        [ ! -x tests/fuzz/run-fuzz ] || step "Fuzz targets, the same inputs each time" fuzz --short
        step "Benchmarks, once each, to see that they run" bench/run --smoke
        step "The Debian package in a clean root" tests/packaging/test-clean-root build
        step "SocketCAN under a kernel of its own" tests/socketcan/test-socketcan build
        step "Tests" run_all_tests build "$@"
        show_times
        ;;
esac
