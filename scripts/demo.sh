#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The main job: builds the library and the demo browser (examples/browser) and runs
# it. With a display the browser window opens. Without one (no DISPLAY or
# WAYLAND_DISPLAY) the browser runs its scripted tour offscreen and prints the
# folder that holds the screenshots and logs. Arguments go to the browser
# (--classic, --tour, --out DIR, --log-signals, --help).
# Built with Qt 5; with KELTAB_QT_MAJOR_VERSION=6 in the environment, with Qt 6.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/deps.sh
keltab_install_deps

qt=${KELTAB_QT_MAJOR_VERSION:-5}
case "$qt" in
    5) dir=build/demo ;;
    6) dir=build/demo-qt6 ;;
    *) echo "KELTAB_QT_MAJOR_VERSION must be 5 or 6, not '$qt'" >&2; exit 2 ;;
esac

cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=Release -DKELTAB_BUILD_TESTS=OFF -DKELTAB_BUILD_EXAMPLES=ON \
    -DKELTAB_QT_MAJOR_VERSION="$qt"
cmake --build "$dir" -j "$(nproc)" --target browser
exec "./$dir/examples/browser/browser" "$@"
