#!/usr/bin/env python3
"""Makes the zip of an installed package: one folder named as the zip, with the same bytes whenever it is made.

make-zip.py FOLDER TO: the zip in the folder TO is named after the version that the package's headers have. The files are in the order of their names. Their time is that of the last commit; where there is no
git, the earliest one that a zip can hold.
"""
import pathlib
import re
import subprocess
import sys
import time
import zipfile


def time_of_commit():
    earliest = (1980, 1, 1, 0, 0, 0)
    try:
        seconds = subprocess.run(["git", "log", "-1", "--format=%ct"], capture_output=True, text=True, check=True,
                                 cwd=pathlib.Path(__file__).parent).stdout
        return max(earliest, time.gmtime(int(seconds))[:6])
    except (OSError, ValueError, subprocess.CalledProcessError):
        return earliest


def main():
    folder = pathlib.Path(sys.argv[1])
    header = (folder / "include/VsMsgbus/Version.h").read_text()
    version = ".".join(re.search(rf"#define VSMSGBUS_VERSION_{part} (\d+)", header)[1]
                       for part in ("MAJOR", "MINOR", "PATCH"))
    target = pathlib.Path(sys.argv[2]) / f"VsMsgbus-{version}-win64.zip"
    target.parent.mkdir(parents=True, exist_ok=True)
    when = time_of_commit()
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as archive:
        for file in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(f"{target.stem}/{file.relative_to(folder).as_posix()}", when)
            entry.compress_type = zipfile.ZIP_DEFLATED
            # As a Unix system has it: programs may be run, the rest may not.
            entry.create_system = 3
            entry.external_attr = (0o100755 if file.stat().st_mode & 0o100 else 0o100644) << 16
            archive.writestr(entry, file.read_bytes())


if __name__ == "__main__":
    main()
