#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Cut a failing chaos run down to the few steps the failure needs.

    scripts/chaos-cutdown.py SEED BAR STEP [build dir]

SEED and STEP come from the failure's report ("classic bar, seed 1264114124 ...,
step 2854: ..."), BAR is "classic" or "scrolling"; the build dir defaults to
build/normal (use a sanitizer build for a sanitizer's report). Every step of the run
draws from its own random sequence, so a step can be left out without changing the
others. The script reruns steps 1 to STEP with some left out (KELTAB_CHAOS_KEEP) and
keeps a smaller set whenever the run still fails the same way: the same invariant or
warning with the numbers set aside, or the same sanitizer report. It ends with a set
from which no single step can be removed, prints it and the operations it runs: the
script of a regression test.

Each run gets its own X server, as ctest gives the test. The menus, drags and timer
waits run event loops, so a failure that depends on where a timer lands may not
reproduce every time; the script tries each candidate once and the final set twice.
"""

import os
import re
import subprocess
import sys
import tempfile

TIMEOUT = 600


def signature(output):
    """What kind of failure a run's output shows, or None if it passed."""
    for pattern in (r"SUMMARY: (\w+Sanitizer: [\w-]+)", r"runtime error: ([^\n]*)"):
        match = re.search(pattern, output)
        if match:
            return re.sub(r"0x[0-9a-f]+|\d+", "#", match.group(1))
    match = re.search(r"FAIL! .*?step \d+: ([^\n]*)", output)
    if match:
        return re.sub(r"\d+", "#", match.group(1))
    match = re.search(r"QFATAL[^\n]*", output)
    if match:
        return re.sub(r"\d+", "#", match.group(0))
    return None


def ranges(steps):
    """1,2,3,7 -> "1-3,7"."""
    parts = []
    steps = sorted(steps)
    start = prev = steps[0]
    for step in steps[1:] + [None]:
        if step is not None and step == prev + 1:
            prev = step
            continue
        parts.append(str(start) if start == prev else "%d-%d" % (start, prev))
        if step is not None:
            start = prev = step
    return ",".join(parts)


class Runner:
    def __init__(self, binary, seed, bar, last):
        self.binary = binary
        self.bar = bar
        self.env = dict(os.environ,
                        KELTAB_CHAOS_SEED=str(seed),
                        KELTAB_CHAOS_STEPS=str(last),
                        QT_QPA_PLATFORM="xcb",
                        QT_XCB_GL_INTEGRATION="none",
                        QT_LOGGING_RULES="qt.qpa.*=false",
                        QTEST_FUNCTION_TIMEOUT=str(TIMEOUT * 1000))
        self.runs = 0

    def run(self, steps):
        self.runs += 1
        env = dict(self.env, KELTAB_CHAOS_KEEP=ranges(steps))
        command = ["xvfb-run", "-a", "-s", "-screen 0 1600x1000x24 -dpi 96", self.binary,
                   "-maxwarnings", "0", "randomRun:%s: seeded run" % self.bar]
        try:
            done = subprocess.run(command, env=env, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  timeout=TIMEOUT)
        except subprocess.TimeoutExpired:
            return None, ""
        output = done.stdout.decode("utf-8", "replace")
        return (signature(output) if done.returncode != 0 else None), output


def cut_down(runner, steps, wanted):
    """Zeller's ddmin: the smallest set found that still fails as wanted."""
    parts = 2
    while len(steps) >= 2:
        size = len(steps) // parts
        chunks = [steps[i * size:(i + 1) * size] for i in range(parts - 1)]
        chunks.append(steps[(parts - 1) * size:])
        reduced = False
        for chunk in chunks:
            left_out = set(chunk)
            rest = [s for s in steps if s not in left_out]
            if rest and runner.run(rest)[0] == wanted:
                steps, parts, reduced = rest, max(parts - 1, 2), True
                print("  %d steps still fail" % len(steps), flush=True)
                break
        if not reduced:
            if parts >= len(steps):
                break
            parts = min(len(steps), parts * 2)
    return steps


def main():
    if len(sys.argv) < 4 or sys.argv[2] not in ("classic", "scrolling"):
        sys.exit(__doc__)
    seed, bar, last = int(sys.argv[1]), sys.argv[2], int(sys.argv[3])
    build = sys.argv[4] if len(sys.argv) > 4 else "build/normal"
    binary = os.path.join(build, "tests", "chaos", "tst_tabbarchaos")
    if not os.access(binary, os.X_OK):
        sys.exit("%s is missing: build the target tst_tabbarchaos first" % binary)
    runner = Runner(binary, seed, bar, last)

    steps = list(range(1, last + 1))
    wanted, output = runner.run(steps)
    if wanted is None:
        sys.exit("seed %d, %s bar, steps 1-%d: the run passed; nothing to cut down" % (seed, bar, last))
    print("failure: %s" % wanted, flush=True)
    steps = cut_down(runner, steps, wanted)
    # Twice more, to tell a failure of these steps from one of a timer's luck.
    confirmed = [runner.run(steps) for _ in range(2)]
    kept = ranges(steps)
    print("\n%d steps of %d (%d runs): KELTAB_CHAOS_SEED=%d KELTAB_CHAOS_STEPS=%d KELTAB_CHAOS_KEEP=%s"
          % (len(steps), last, runner.runs, seed, last, kept))
    if any(result != wanted for result, _ in confirmed):
        print("warning: the cut-down run did not fail the same way every time")
    with tempfile.NamedTemporaryFile("w", prefix="chaos-cutdown-", suffix=".log", delete=False) as log:
        log.write(confirmed[0][1])
    print("its operations (full output in %s):" % log.name)
    for line in confirmed[0][1].splitlines():
        if re.match(r"\s+\d+: ", line) or line.startswith("FAIL!"):
            print(line)


if __name__ == "__main__":
    main()
