#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The test command: builds the library and every test three times, a normal build
# with Qt 5, one with Qt 6 and one with Qt 5 under AddressSanitizer +
# UndefinedBehaviorSanitizer, and runs the whole suite in each. Compiler warnings
# (Qt's deprecation warnings included) are errors; a failed test, a sanitizer report
# or an unexpected Qt warning fails the run. Each normal build also installs the
# library into a temporary prefix and builds tests/consumer against it; then both
# packages are installed into one prefix, side by side, and a consumer is built
# against each.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
keltab_install_deps

jobs=$(nproc)
root=$(pwd)
started=$SECONDS

# The suite counts pixels at a device pixel ratio of 1 and scales them itself
# (DpiTool): a scale factor from the environment would change every number, and
# Qt 6 always applies one.
unset QT_SCALE_FACTOR QT_SCREEN_SCALE_FACTORS QT_AUTO_SCREEN_SCALE_FACTOR \
    QT_ENABLE_HIGHDPI_SCALING QT_SCALE_FACTOR_ROUNDING_POLICY QT_USE_PHYSICAL_DPI QT_FONT_DPI

stage() {
    echo "== $1 (at $(( (SECONDS - started) / 60 ))m$(( (SECONDS - started) % 60 ))s)"
}

configure_and_build() {
    local dir=$1; shift
    cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELTAB_WERROR=ON \
        -DKELTAB_BUILD_TESTS=ON -DKELTAB_BUILD_EXAMPLES=ON -DKELTAB_BUILD_BENCHMARKS=ON "$@"
    cmake --build "$dir" -j "$jobs"
}

run_suite() {
    local dir=$1
    # The tests that need real window-system input start an X server each
    # (xvfb-run); the others run offscreen (each test sets QT_QPA_PLATFORM itself).
    (cd "$dir" && ctest --output-on-failure -j "$jobs" --timeout 900)
}

stage "Normal build, Qt 5"
configure_and_build build/normal
cmake --build build/normal --target docs
run_suite build/normal

stage "Normal build, Qt 6"
configure_and_build build/qt6 -DKELTAB_QT_MAJOR_VERSION=6
run_suite build/qt6

stage "Qt 5 and Qt 6 packages installed side by side"
QT_QPA_PLATFORM=offscreen cmake "-DBUILD_DIRS=$root/build/normal;$root/build/qt6" "-DQT_MAJOR_VERSIONS=5;6" \
    "-DSOURCE_DIR=$root/tests/consumer" "-DWORK_DIR=$root/build/side-by-side" \
    -P tests/consumer/run_consumer.cmake

stage "AddressSanitizer + UndefinedBehaviorSanitizer build, Qt 5"
configure_and_build build/asan -DKELTAB_SANITIZE=ON -DKELTAB_TEST_CONSUMER=OFF -DCMAKE_BUILD_TYPE=Debug
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1:detect_stack_use_after_return=1:fast_unwind_on_malloc=0"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
run_suite build/asan

stage "Done"
