#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the benchmarks in Release and runs them: both tab strips against QTabBar
# (bench_tabstrips, with its chart) and the gesture toast. Writes the tab-strip table
# and chart into docs/bench/ and prints everything.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
keltab_install_deps

dir=build/bench
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=Release -DKELTAB_BUILD_TESTS=OFF -DKELTAB_BUILD_EXAMPLES=OFF \
    -DKELTAB_BUILD_BENCHMARKS=ON
cmake --build "$dir" -j "$(nproc)" --target bench_tabstrips bench_gesture
mkdir -p docs/bench
"./$dir/bench/bench_tabstrips" --chart docs/bench/tabstrips.png "$@" | tee docs/bench/tabstrips.md
"./$dir/bench/bench_gesture"
