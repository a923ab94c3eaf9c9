#!/usr/bin/env bash
# The test command: builds the library and every test twice, a normal build and one
# with AddressSanitizer + UndefinedBehaviorSanitizer, and runs the whole suite in
# each. Compiler warnings are errors; a failed test, a sanitizer report or an
# unexpected Qt warning fails the run. The normal build also installs the library
# into a temporary prefix and builds tests/consumer against it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
keltab_install_deps

jobs=$(nproc)
root=$(pwd)

configure_and_build() {
    local dir=$1; shift
    cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKELTAB_WERROR=ON \
        -DKELTAB_BUILD_TESTS=ON -DKELTAB_BUILD_EXAMPLES=ON -DKELTAB_BUILD_BENCHMARKS=ON "$@"
    cmake --build "$dir" -j "$jobs"
}

run_suite() {
    local dir=$1
    # One X server for the tests that need real window-system input; the others
    # run offscreen (each test sets QT_QPA_PLATFORM itself).
    (cd "$dir" && xvfb-run -a -s "-screen 0 1600x1000x24" \
        ctest --output-on-failure -j "$jobs" --timeout 900)
}

echo "== Normal build"
configure_and_build build/normal
run_suite build/normal

echo "== AddressSanitizer + UndefinedBehaviorSanitizer build"
configure_and_build build/asan -DKELTAB_SANITIZE=ON -DKELTAB_TEST_CONSUMER=OFF -DCMAKE_BUILD_TYPE=Debug
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1:detect_stack_use_after_return=1:fast_unwind_on_malloc=0"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
run_suite build/asan
