#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds and runs every test without a display. Ends in ctest's summary.
#
#   ./test.sh                the tests
#   ./test.sh --all          and the same under AddressSanitizer and UndefinedBehaviorSanitizer, the benchmarks once, the
#                            Debian package in a clean root, and SocketCAN under a kernel of its own
#   ./test.sh -R reader      further arguments go to ctest
set -eu
cd "$(dirname "$0")"

all=
if [ "${1-}" = --all ]; then
    all=yes
    shift
fi

# Buses have real time-outs, which a machine that is busy with something else can miss: a test that fails is run once
# more, and ctest says that it was.
run_tests() { # FOLDER [CTEST ARGUMENTS]
    local folder=$1
    shift
    ctest --test-dir "$folder" --output-on-failure --no-tests=error --repeat until-pass:2 -j "$(nproc)" "$@"
}

if [ -z "$all" ]; then
    scripts/install-packages test
    scripts/build all
    run_tests build "$@"
    exit
fi

scripts/install-packages all

echo "== With AddressSanitizer and UndefinedBehaviorSanitizer =="
OVERVIEW_BUILD_DIR=build-sanitized OVERVIEW_BUILD_TYPE=Debug \
    OVERVIEW_CMAKE_OPTIONS="-DOVERVIEW_SANITIZE=address,undefined" scripts/build all
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 run_tests build-sanitized "$@"

echo "== Benchmarks, once each, to see that they run =="
OVERVIEW_CMAKE_OPTIONS="-DOVERVIEW_BUILD_BENCH=ON" scripts/build all
bench/run --smoke

echo "== The Debian package in a clean root =="
tests/packaging/test-clean-root build

echo "== SocketCAN under a kernel of its own =="
tests/socketcan/test-socketcan build

echo "== Release =="
run_tests build "$@"
