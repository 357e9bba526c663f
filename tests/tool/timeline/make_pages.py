#!/usr/bin/env python3
"""make_pages.py EMULATOR VSMSGBUS CHECKING_TESTS FOLDER: makes the pages that browser.py opens, in FOLDER. `large` is of a
generated trace of 100,000 events, `real` of what the checking bridge records of one of its own tests. Both have findings.
"""
import os
import pathlib
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent


def main():
    emulator, vsmsgbus, checking_tests = sys.argv[1:4]
    folder = pathlib.Path(sys.argv[4])
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("*.*"):
        old.unlink()
    subprocess.run([sys.executable, str(HERE / "large_trace.py"), "large.json"], cwd=folder, check=True)
    subprocess.run(
        [emulator, checking_tests, "--gtest_also_run_disabled_tests",
         "--gtest_filter=PlantedRecord.DISABLED_HasACollectionAndASecret"],
        cwd=folder, env=dict(os.environ, VSMSGBUS_TRACE="real.json"), check=True)
    for name in ["large", "real"]:
        run = subprocess.run([emulator, vsmsgbus, "timeline", f"{name}.json", "-o", f"{name}.html"], cwd=folder)
        if run.returncode != 1:
            sys.exit(f"{name}: the exit status is {run.returncode} in place of 1, for findings")


if __name__ == "__main__":
    main()
