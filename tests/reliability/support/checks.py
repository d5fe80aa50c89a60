"""The reliability checks of tests/reliability/checks.toml: how tools/soak and tools/mutants build and play them."""

import fcntl
import os
import re
import shutil
import subprocess
import sys
import tomllib
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent.parent
LAST_LINE = re.compile(r"^(\S+): (\d+) rounds, (\d+) faults, next seed (\d+)$")


def read_checks():
    """The rows of the table by name."""
    return tomllib.loads((ROOT / "tests/reliability/checks.toml").read_text(encoding="utf-8"))


def build(root, preset, check):
    """Builds the program and the check in the tree `root`; raises CalledProcessError. Ends the process if it needs what is missing."""
    for program, package_list in check.get("needs", {}).items() if preset == check.get("preset") else []:
        if not shutil.which(program):
            sys.exit("%s is missing: tools/setup %s installs it" % (program, package_list))
    targets = [*(["calljournal"] if check.get("program", True) else []), *check.get("targets", [])]
    (root / "build").mkdir(exist_ok=True)
    with open(root / "build/checks.lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)  # two builds of one tree disturb each other
        subprocess.run([root / "tools/build", preset, *targets], check=True, stdout=subprocess.DEVNULL)
        link_programs(root, preset, check)


def run_directory(root, preset, check):
    """The directory with the programs of one check."""
    return root / "build" / preset / "check-runs" / Path(check["command"]).stem


def link_programs(root, preset, check):
    """Gives the check links of its own to the programs, so that it plays the same ones while another build replaces them."""
    run, built = run_directory(root, preset, check), root / "build" / preset
    shutil.rmtree(run, ignore_errors=True)
    run.mkdir(parents=True)
    (run / "share").symlink_to(built / "share")
    for file in [*(built / "bin").iterdir(), *(built / "lib").glob("*.so*")]:
        (run / file.parent.name).mkdir(exist_ok=True)
        os.link(file, run / file.parent.name / file.name)


def play(root, preset, name, check, options, quiet=False):
    """Plays the check of the tree `root`, which `build` has built; returns rounds, faults and the next seed, or None if its last line is missing."""
    binaries = run_directory(root, preset, check) / "bin"
    script = root / check["command"]
    command = ["/usr/bin/python3", "-B", script] if script.suffix == ".py" else [binaries / check["command"]]
    modules = [str(root / each) for each in ("tests/reliability/support", "tests/apps/calljournal")]
    environment = {**os.environ, "CALLJOURNAL": str(binaries / "calljournal"), "CHECK_BUILD": str(root / "build" / preset),
                   "PYTHONPATH": ":".join(modules)}
    found = None
    with subprocess.Popen([*command, *check.get("arguments", []), *options], cwd=root, env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL if quiet else None, text=True) as process:
        for line in process.stdout:
            found = LAST_LINE.match(line.strip()) or found
            if not quiet:
                sys.stdout.write(line)
                sys.stdout.flush()
    return tuple(int(each) for each in found.groups()[1:]) if found and found.group(1) == name else None
