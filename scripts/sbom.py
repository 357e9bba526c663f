#!/usr/bin/env python3
"""Writes what is linked into the shipped files, as a software bill of materials (CycloneDX, JSON).

What a file holds of others is read from the maps that the linker wrote, one for each file: which archives it took members
of. Which package of the distribution an archive or a header comes from, and its version, the distribution's own records
say. The same build of the same sources writes the same text.
"""
import argparse
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


def packages_of(files):
    """The packages that files of the system belong to, each with its version, by the file."""
    found = subprocess.run(["dpkg", "--search", *files], capture_output=True, text=True, check=True).stdout
    owners = {}
    for line in found.splitlines():
        owner, file = line.split(": ", 1)
        owners[file] = owner.split(",")[0].split(":")[0]
    shown = subprocess.run(["dpkg-query", "--show", "--showformat=${Package} ${Version}\n", *sorted(set(owners.values()))],
                           capture_output=True, text=True, check=True).stdout
    versions = dict(line.split() for line in shown.splitlines())
    return {file: (owner, versions[owner]) for file, owner in owners.items()}


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

    sources = {}
    for target, name, linker_map in (entry.split("=") for entry in arguments.files):
        sources[name] = archives_in(pathlib.Path(linker_map)) | {
            header for header, targets in HEADERS.values() if target in targets}
    owners = packages_of(sorted(set().union(*sources.values())))
    parts = [{"type": "application" if name.endswith(".exe") else "library", "bom-ref": name, "name": name,
              "version": arguments.version} for name in sources]
    packages = {component(*owner)["bom-ref"]: component(*owner) for owner in owners.values()}
    dependencies = [{"ref": name, "dependsOn": sorted({component(*owners[file])["bom-ref"] for file in files})}
                    for name, files in sources.items()]
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
