#!/usr/bin/env python3
"""natvis.py PACKAGE COMPILER ARGUMENT...: the package's file for Visual Studio's debugger is well-formed, and each of its
expressions compiles as in a member function of the type that it is for: so all that it names is there. The CMake package
adds it to the sources of projects of Visual Studio, and of no others."""
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

SPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
# What stands behind an expression's last comma says how the debugger shows it: "su", or "[length]su" with a size.
FORMAT = re.compile(r",(?:\[(?P<size>[^\]]+)\])?\w+$")


def parts(expression):
    """The expression without its format, and that format's size if it has one."""
    found = FORMAT.search(expression)
    if found is None:
        return [expression]
    return [expression[: found.start()]] + ([found["size"]] if found["size"] else [])


def expressions(kind):
    for element in kind.iter():
        tag = element.tag.removeprefix(SPACE)
        if "Condition" in element.attrib:
            yield from parts(element.get("Condition"))
        text = (element.text or "").strip()
        if tag == "DisplayString":
            for shown in re.findall(r"\{([^{}]+)\}", text):
                yield from parts(shown)
        elif tag in ("StringView", "Item", "ExpandedItem"):
            yield from parts(text)
        elif tag not in ("Type", "Expand"):
            sys.exit(f"this test does not know <{tag}>")


def check_expressions(file, include, compiler):
    root = ElementTree.parse(file).getroot()
    if root.tag != SPACE + "AutoVisualizer":
        sys.exit(f"<{root.tag}> is no file of the debugger's")
    code = [
        "#include <VsMsgbus.h>",
        # The file has their numbers.
        "static_assert(VsKitMsgbus::lpc_buffer::Empty == 0 && VsKitMsgbus::lpc_buffer::WideText == 1 &&",
        "              VsKitMsgbus::lpc_buffer::NarrowText == 2);",
    ]
    count = 0
    for number, kind in enumerate(root.findall(SPACE + "Type")):
        code.append(f"struct Shown{number} : {kind.get('Name')} {{ void Show() const {{")
        for expression in expressions(kind):
            code.append(f"    static_cast<void>({expression});")
            count += 1
        code.append("}};")
    if count < 10:
        sys.exit(f"only {count} expressions were found")
    program = "\n".join(code) + "\n"
    run = subprocess.run([*compiler, "-fsyntax-only", f"-I{include}", "-x", "c++", "-"], input=program, text=True)
    if run.returncode != 0:
        sys.exit(f"this does not compile:\n{program}")


def sources_of_target(package, generator):
    """What a project of that generator gets as sources with the package. No such generator is needed: the package asks for
    its name alone."""
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "CMakeLists.txt").write_text(f"""
            cmake_minimum_required(VERSION 3.25)
            project(Natvis LANGUAGES NONE)
            set_property(GLOBAL PROPERTY TARGET_SUPPORTS_SHARED_LIBS TRUE)
            set(CMAKE_GENERATOR "{generator}")
            find_package(VsMsgbus REQUIRED)
            get_target_property(sources VsMsgbus::VsMsgbus INTERFACE_SOURCES)
            file(WRITE ${{CMAKE_BINARY_DIR}}/sources.txt "${{sources}}")
            """)
        subprocess.run(["cmake", "-S", folder, "-B", f"{folder}/build", "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={package}"],
                       check=True, stdout=subprocess.DEVNULL)
        return (pathlib.Path(folder) / "build" / "sources.txt").read_text()


def main():
    package = pathlib.Path(sys.argv[1]).resolve()
    file = package / "include" / "VsMsgbus.natvis"
    check_expressions(file, package / "include", sys.argv[2:])
    for generator, expected in (("Visual Studio 17 2022", str(file)), ("Ninja", "sources-NOTFOUND")):
        found = sources_of_target(package, generator)
        if found != expected:
            sys.exit(f"a project of {generator} gets: {found}")
    print("[  PASSED  ] 1 test.")


if __name__ == "__main__":
    main()
