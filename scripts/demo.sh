#!/usr/bin/env bash
# The main job: builds the library and runs the example program.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
keltab_install_deps

cmake -S . -B build/demo -DCMAKE_BUILD_TYPE=Release -DKELTAB_BUILD_TESTS=OFF -DKELTAB_BUILD_EXAMPLES=ON
cmake --build build/demo -j "$(nproc)"
./build/demo/examples/tabrecords/tabrecords
