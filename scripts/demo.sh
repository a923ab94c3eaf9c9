#!/usr/bin/env bash
# The main job: builds the library and the demo browser (examples/browser) and runs
# it. With a display the browser window opens. Without one (no DISPLAY or
# WAYLAND_DISPLAY) the browser runs its scripted tour offscreen and prints the
# folder that holds the screenshots and logs. Arguments go to the browser
# (--classic, --tour, --out DIR, --log-signals, --help).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
keltab_install_deps

cmake -S . -B build/demo -DCMAKE_BUILD_TYPE=Release -DKELTAB_BUILD_TESTS=OFF -DKELTAB_BUILD_EXAMPLES=ON
cmake --build build/demo -j "$(nproc)" --target browser
exec ./build/demo/examples/browser/browser "$@"
