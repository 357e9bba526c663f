#!/usr/bin/env python3
"""Writes what is linked into the shipped files, as a software bill of materials (CycloneDX, JSON).

What a file holds of others is read from the maps that the linker wrote, one for each file: which archives it took members
of. Which package of the distribution an archive or a header comes from, and its version, the distribution's own records
say. The same build of the same sources writes the same text.
"""
import argparse
import functools
import json
import pathlib
import re
import subprocess

# Libraries that consist of headers leave no trace in a map: which of the files are compiled with them.
HEADERS = {
    "CLI11": ("/usr/include/CLI/CLI.hpp", ["demo", "vsmsgbus_tool"]),
    "fmt": ("/usr/include/fmt/format.h", ["demo", "vsmsgbus_tool", "SampleModule"]),
    "nlohmann-json": ("/usr/include/nlohmann/json.hpp", ["demo", "vsmsgbus_tool", "ny_simulator"]),
}
LICENSES = {
    "gcc-mingw-w64-x86-64-posix": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "gcc-mingw-w64-x86-64-posix-runtime": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "g++-mingw-w64-x86-64-posix": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "mingw-w64-x86-64-dev": "ZPL-2.1 AND MIT AND LicenseRef-public-domain",
    "libcli11-dev": "BSD-3-Clause",
    "libfmt-dev": "MIT",
    "nlohmann-json3-dev": "MIT",
}


def archives_in(linker_map):
    """The archives outside the build that the map says members were taken of."""
    text = linker_map.read_text(errors="replace")
    listed = text[text.find("Archive member included"):text.find("Discarded input sections")]
    found = set(re.findall(r"^(/\S+\.a)\(", listed, re.MULTILINE))
    return {str(pathlib.Path(archive).resolve()) for archive in found}


@functools.cache
def package_of(file):
    """The package that a file of the system belongs to, with its version."""
    owner = subprocess.run(["dpkg", "--search", file], capture_output=True, text=True, check=True).stdout
    package = owner.split(":")[0].split(",")[0].strip()
    version = subprocess.run(["dpkg-query", "--show", "--showformat=${Version}", package],
                             capture_output=True, text=True, check=True).stdout
    return package, version


def component(package, version):
    reference = f"pkg:deb/debian/{package}@{version}"
    described = {"type": "library", "bom-ref": reference, "name": package, "version": version, "purl": reference}
    if package in LICENSES:
        described["licenses"] = [{"expression": LICENSES[package]}]
    return described


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--version", required=True, help="of the product")
    parser.add_argument("--out", required=True, type=pathlib.Path, help="the file to write")
    parser.add_argument("files", nargs="+", metavar="TARGET=NAME=MAP",
                        help="the build's name of a shipped file, its name in the package, and its map")
    arguments = parser.parse_args()

    packages = {}
    dependencies = []
    parts = []
    for target, name, linker_map in (entry.split("=") for entry in arguments.files):
        sources = archives_in(pathlib.Path(linker_map)) | {
            header for header, targets in HEADERS.values() if target in targets}
        of_file = sorted({package_of(source) for source in sources})
        packages.update({component(*package)["bom-ref"]: component(*package) for package in of_file})
        parts.append({"type": "application" if name.endswith(".exe") else "library", "bom-ref": name, "name": name,
                      "version": arguments.version})
        dependencies.append({"ref": name, "dependsOn": [component(*package)["bom-ref"] for package in of_file]})
    product = {"type": "library", "bom-ref": "VsMsgbus", "name": "VsMsgbus", "version": arguments.version}
    bill = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "version": 1,
        "metadata": {"component": product},
        "components": parts + [packages[reference] for reference in sorted(packages)],
        "dependencies": [{"ref": "VsMsgbus", "dependsOn": [part["bom-ref"] for part in parts]}] + dependencies,
    }
    arguments.out.write_text(json.dumps(bill, indent=2) + "\n")


if __name__ == "__main__":
    main()
