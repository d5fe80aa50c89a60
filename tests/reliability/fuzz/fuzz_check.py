#!/usr/bin/env python3
"""Plays the fuzz targets in turn, in the form of a reliability check (rounds.py).

The round of a seed plays one target, the seed modulo the number of targets, with this seed:
  - in the preset fuzz by libFuzzer for 20 s. What it finds for the corpus is kept in build/fuzz/fuzz-corpus/TARGET, where the next
    round of the target goes on;
  - in any other preset by fuzz/support/ReplayDriver.cpp for 3 s: the corpus of the tree, and changes of it.

An input that is a fault is kept in build/PRESET/fuzz-findings/TARGET. The build is CHECK_BUILD, or that of the program in CALLJOURNAL.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

import rounds

ROOT = Path(__file__).resolve().parent.parent.parent.parent
BINARIES = Path(os.environ["CALLJOURNAL"]).parent
BUILD = Path(os.environ.get("CHECK_BUILD", BINARIES.parent))
TARGETS = sorted(each.name for each in (ROOT / "fuzz/corpus").iterdir())
IS_LIBFUZZER = BUILD.name == "fuzz"
SECONDS = 20 if IS_LIBFUZZER else 3
FAULT = re.compile(r"fault with seed|broken property|ERROR: |runtime error|SUMMARY: ")


def command(target, seed, findings):
    program = BINARIES / (target + "_fuzz")
    if not IS_LIBFUZZER:
        return [program, "--seconds", str(SECONDS), "--seed", str(seed * 1_000_000)]
    kept = BUILD / "fuzz-corpus" / target
    kept.mkdir(parents=True, exist_ok=True)
    return [program, "-max_total_time=%d" % SECONDS, "-seed=%d" % seed, "-timeout=30", "-rss_limit_mb=4096", "-max_len=65536",
            "-dict=%s" % (ROOT / "fuzz/dictionaries" / (target + ".dict")), "-artifact_prefix=%s/" % findings,
            kept, ROOT / "fuzz/corpus" / target]


def play_round(seed):
    target = TARGETS[seed % len(TARGETS)]
    findings = BUILD / "fuzz-findings" / target
    findings.mkdir(parents=True, exist_ok=True)
    # The databases of the targets are in memory, where that is possible.
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(dir=memory) as scratch:
        done = subprocess.run(command(target, seed, findings), cwd=findings, env={**os.environ, "TMPDIR": scratch},
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              encoding="utf-8", errors="replace", check=False)
    if done.returncode == 0:
        return []
    reasons = [line.strip() for line in done.stdout.splitlines() if FAULT.search(line)] or done.stdout.splitlines()[-1:]
    return ["%s: %s (inputs are in %s)" % (target, " | ".join(reasons[:3]), findings)]


if __name__ == "__main__":
    sys.stdout.reconfigure(errors="replace")
    rounds.play("fuzz", play_round, len(TARGETS))
