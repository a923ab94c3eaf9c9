#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A longer chaos run than the suite's: tst_tabbarchaos (tests/chaos) for several seeds
# in parallel, each on its own X server, N steps per bar, both bars. Prints
# "N steps, R reports"; every failing seed's report (seed, step, last operations) is
# kept in the output folder and named on stderr.
#
#   scripts/chaos-soak.sh [steps per bar] [seeds] [parallel runs] [build dir]
#
# Defaults: 20000 steps, 8 random seeds, 2 at a time, build/normal (built with
# KELTAB_BUILD_TESTS=ON; the test is built here if it is missing). A seed of a report
# replays with KELTAB_CHAOS_SEED=<seed> KELTAB_CHAOS_STEPS=<steps>, and
# scripts/chaos-cutdown.py cuts a failing run down to the steps that matter.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

steps=${1:-20000}
seeds=${2:-8}
parallel=${3:-2}
build=${4:-build/normal}
test=$build/tests/chaos/tst_tabbarchaos

if [ ! -x "$test" ]; then
    cmake --build "$build" -j "$parallel" --target tst_tabbarchaos
fi
out=$(mktemp -d "${TMPDIR:-/tmp}/chaos-soak.XXXXXX")

# As ctest runs it (tests/CMakeLists.txt, keltab_add_test with XVFB).
export QT_QPA_PLATFORM=xcb QT_XCB_GL_INTEGRATION=none QT_LOGGING_RULES='qt.qpa.*=false'
export KELTAB_CHAOS_STEPS=$steps test out
# A long run of one bar takes longer than QtTest's five minutes per test function.
export QTEST_FUNCTION_TIMEOUT=86400000
# For a sanitizer build (KELTAB_SANITIZE=ON), as the test command runs it; a normal
# build ignores them.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:halt_on_error=1:detect_stack_use_after_return=1:fast_unwind_on_malloc=0}
export LSAN_OPTIONS=${LSAN_OPTIONS:-suppressions=$(pwd)/tests/sanitizers/lsan.supp:print_suppressions=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

run_seed() {
    local seed=$1
    if ! xvfb-run -a -s "-screen 0 1600x1000x24 -dpi 96" "$test" >"$out/$seed.log" 2>&1 \
        || grep -qE "QWARN|QCRITICAL|QFATAL|runtime error:|AddressSanitizer|LeakSanitizer" "$out/$seed.log"; then
        mv "$out/$seed.log" "$out/report-$seed.log"
        echo "seed $seed: report in $out/report-$seed.log" >&2
        # An invariant's report names the bar and the step: the cut-down command.
        local where
        where=$(grep -oE "(classic|scrolling) bar, seed [0-9]+ .*step [0-9]+" "$out/report-$seed.log" | head -1 \
            | sed -E 's/^(classic|scrolling) bar.* step ([0-9]+)$/\1 \2/') || true
        if [ -n "$where" ]; then
            set -- $where
            echo "  cut it down: scripts/chaos-cutdown.py $seed $1 $2 $build" >&2
        fi
    fi
}
export -f run_seed

started=$SECONDS
for _ in $(seq "$seeds"); do
    echo $(( (RANDOM << 15 | RANDOM) ))
done | xargs -P "$parallel" -I{} bash -c 'KELTAB_CHAOS_SEED={} run_seed {}'

reports=$(find "$out" -name 'report-*.log' | wc -l)
echo "$(( steps * seeds * 2 )) steps, $reports reports ($seeds seeds, $(( SECONDS - started ))s; logs in $out)"
[ "$reports" -eq 0 ]
