#!/usr/bin/env python3
"""check-commands.py [--run PACKAGE]: checks the commands that the pages of the project print.

Without an argument: every block of commands is one that --run runs or stands below with the reason why not; and what each
command names is there: scripts with their options, presets, programs of tests, Debian's packages. Pieces of text that are commands
of scripts/ are looked at in the same way.

With --run the blocks of README.md and docs/GETTING_STARTED.md run as they are printed, in order, in a new folder that has a copy
of the unpacked package PACKAGE; and what the page says they print is compared. So is its step 3, whose changes are made.
"""
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Blocks that are not run, by page and first line.
NOT_RUN = {
    ("README.md", "scripts/demo.sh"): "they build everything and run all tests",
    ("README.md", "cmake --workflow --preset release"): "they build everything, on Windows",
    ("docs/GETTING_STARTED.md", "sudo apt-get install cmake"): "it installs packages; they are among scripts/packages.txt",
    ("docs/GETTING_STARTED.md", "sudo apt-get install clang-14"): "it installs packages; they are among scripts/packages.txt",
    ("docs/PERFORMANCE.md", "scripts/bench.sh"): "it measures for minutes, and writes the page",
    ("docs/TESTING.md", "scripts/wine-run.sh build/release/bin/module_tests.exe"): "builds of the checking kind, with all their tests",
    ("docs/TESTING.md", "build/asan/bin/inner_flow_tests"): "minutes to hours of a checking build",
    ("docs/TESTING.md", "build/asan/bin/reentrancy_tests"): "minutes to hours of a checking build",
    ("docs/TESTING.md", "scripts/wine-run.sh build/release/bin/soak.exe"): "an hour of load",
    ("docs/TESTING.md", "cmake --build build/release && ctest"): "a build with its tests, which scripts/test.sh runs",
    ("docs/TESTING.md", "cmake --build build/msabi"): "a build of its own, which scripts/test.sh makes and tests",
    ("docs/WHY_NOT_ASKED.md", "reg query"): "Windows' own tools, on a machine with the agent",
    ("docs/WHY_NOT_ASKED.md", "dumpbin"): "a tool of Visual Studio's",
}
RUN = ("README.md", "docs/GETTING_STARTED.md")
BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class Block:
    def __init__(self, page, match):
        self.page, self.kind, self.text = page, match[1], match[2]
        self.place = f"{page}:{match.string.count(chr(10), 0, match.start()) + 1}"
        # The end of the paragraph before it.
        self.before = match.string[: match.start()].rstrip().rpartition("\n")[2]

    def is_of_commands(self):
        return self.kind in ("sh", "bat")

    def reason(self):
        """Why it is not run: the key of NOT_RUN that speaks of it, or None."""
        keys = [key for key in NOT_RUN if key[0] == self.page and self.text.startswith(key[1])]
        return keys[0] if keys else None


def pages():
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.split("\n")
    return {name: (ROOT / name).read_text(encoding="utf-8") for name in listed if name and (ROOT / name).exists()}


def blocks_of(page, text):
    return [Block(page, match) for match in BLOCK.finditer(text)]


# --- What commands name --------------------------------------------------------------------------------------------------


def known_presets():
    names = set()
    for file in (ROOT / "CMakePresets.json", ROOT / "scripts" / "new-module" / "CMakePresets.json"):
        names |= {preset["name"] for preset in json.loads(file.read_text())["configurePresets"]}
    return names


class Names:
    """What is there for commands to name."""

    def __init__(self):
        self.presets = known_presets()
        cmake = "\n".join(file.read_text() for file in (ROOT / "tests").rglob("CMakeLists.txt"))
        self.programs = set(re.findall(r"(?:add_executable|add_test_program)\((\w+)", cmake))
        self.packages = set(re.findall(r"^[a-z][\w.+-]*", (ROOT / "scripts" / "packages.txt").read_text(), re.MULTILINE))
        self.tests = "\n".join(file.read_text() for file in (ROOT / "tests").rglob("*.cpp"))

    def faults(self, words):
        """What is wrong with one command, given as words."""
        while words and re.match(r"^\w+=", words[0]):
            words = words[1:]
        if not words:
            return
        tool = words[0].removeprefix("../../../../")
        if tool.startswith("scripts/"):
            yield from self.script_faults(tool, words[1:])
        elif "/bin/" in tool:
            yield from self.program_faults(words)
        elif tool in ("cmake", "ctest"):
            yield from self.cmake_faults(words)
        elif words[:3] == ["sudo", "apt-get", "install"]:
            yield from (f"{word} is not in scripts/packages.txt" for word in words[3:] if word not in self.packages)
        elif tool not in ("cd", "cp", "x86_64-w64-mingw32-g++-posix"):
            yield f"{tool} is unknown here"

    def script_faults(self, tool, words):
        if not (ROOT / tool).is_file():
            yield f"there is no {tool}"
        elif tool == "scripts/wine-run.sh":
            if words and "host.exe" not in words[0]:
                yield from self.program_faults(words)
        elif not tool.endswith(".md"):
            text = (ROOT / tool).read_text()
            yield from (f"{tool} has no {word}" for word in words if word.startswith("--") and word not in text)

    def program_faults(self, words):
        program = pathlib.PurePosixPath(words[0])
        preset = program.parent.parent.name
        if preset not in self.presets:
            yield f"there is no preset {preset}"
        if program.name.removesuffix(".exe") not in self.programs:
            yield f"there is no program {program.name}"
        for word in words[1:]:
            if word.startswith("--") and not word.startswith("--gtest_filter=") and f'"{word}"' not in self.tests:
                yield f"{program.name} has no {word}"

    def cmake_faults(self, words):
        for option, value in zip(words, words[1:]):
            if option == "--preset" and value not in self.presets:
                yield f"there is no preset {value}"
            if option in ("--build", "--test-dir") and re.match(r"^build/\w+$", value) and value[6:] not in self.presets:
                yield f"there is no preset for {value}"


def commands(text):
    """The commands of a block, each as a list of words."""
    for line in text.replace("\\\n", " ").splitlines():
        words = shlex.split(line, comments=True)
        command = []
        for word in words:
            if word == "&&":
                yield command
                command = []
            elif word.strip("()"):
                command.append(word.strip("()"))
        yield command


def static_faults():
    names, unused = Names(), set(NOT_RUN)
    found = 0
    for page, text in pages().items():
        for block in blocks_of(page, text):
            if not block.is_of_commands():
                continue
            found += 1
            reason = block.reason()
            unused.discard(reason)
            if not reason and (page not in RUN or block.kind != "sh"):
                yield f"{block.place}: this block is not run, and NOT_RUN has no reason for it"
            if block.kind == "sh":
                yield from (f"{block.place}: {fault}" for words in commands(block.text) for fault in names.faults(words))
        for code in re.findall(r"`(scripts/[\w./-]+[^`\n]*)`", BLOCK.sub("", text)):
            yield from (f"{page}: `{code}`: {fault}" for fault in inline_faults(names, code))
    yield from (f"NOT_RUN speaks of a block that is not there: {key}" for key in unused)
    if found < 10:
        yield f"only {found} blocks were found"


def inline_faults(names, code):
    first = code.split()[0].rstrip("/")
    if (ROOT / first).is_dir():
        return []
    # Places to fill in are no options.
    return names.faults(shlex.split(re.sub(r"\[.*\]|\bbuild/fuzz\S*", "", code)))


# --- Running them --------------------------------------------------------------------------------------------------------


class Runner:
    def __init__(self, work, package):
        self.package = work / "VsMsgbus"
        self.project = work / "my-module"
        shutil.copytree(package, self.package)
        self.readme = work / "readme"
        (self.readme / "build").mkdir(parents=True)
        (self.readme / "build" / "dist").symlink_to(self.package)
        # With GoogleTest's sources the tests would take longer; a launcher such as ccache need not know clang-cl's options.
        left_out = ("GOOGLETEST_SOURCE_DIR", "CMAKE_C_COMPILER_LAUNCHER", "CMAKE_CXX_COMPILER_LAUNCHER")
        self.environment = {name: value for name, value in os.environ.items() if name not in left_out}
        self.environment.setdefault("VSMSGBUS_WINEPREFIX", str(ROOT / "build" / "wineprefix"))

    def shell(self, text, folder, expected=0):
        run = subprocess.run(["bash", "-euo", "pipefail", "-c", text], cwd=folder, env=self.environment, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if (run.returncode == 0) != (expected == 0):
            sys.exit(f"{run.stdout}\nended with {run.returncode}:\n{text}")
        return run.stdout.replace("\r", "")

    def readme_blocks(self, blocks):
        module = next(block for block in blocks if block.kind == "cpp")
        (self.readme / "module.cpp").write_text(module.text)
        for block in self.to_run(blocks):
            self.shell(block.text, self.readme)
        if not (self.readme / "module.dll").exists():
            sys.exit("README.md builds no module.dll")

    def guide_blocks(self, blocks):
        output = ""
        to_run = self.to_run(blocks)
        for number, block in enumerate(blocks):
            if block in to_run:
                output = self.shell(block.text, self.package)
            elif block.before == "It prints" and not output.endswith(block.text):
                sys.exit(f"{block.place}: this is printed: {output}")
            elif block.kind == "cpp" and "TEST_F" in block.text:
                self.follow_step_3(*blocks[number: number + 3])

    def follow_step_3(self, test, says, line):
        """A test that fails with what the page says, and passes with the line that the page adds to Tell."""
        workflow = "cmake --workflow --preset mingw-cross"
        tests, module = self.project / "tests" / "MyModuleTest.cpp", self.project / "MyModule.cpp"
        tests.write_text(f"\n{test.text}\n}}  // namespace".join(tests.read_text().rsplit("\n}  // namespace", 1)))
        output = self.shell(workflow, self.project, expected=1)
        if says.text.strip() not in output or "FAILED MyModuleTest.HasAnOwner" not in output:
            sys.exit(f"{says.place}: this is said: {output}")
        begin = "void Tell(vsmsgbus::Properties& properties) {\n"
        module.write_text(module.read_text().replace(begin, begin + line.text))
        self.shell(workflow, self.project)

    @staticmethod
    def to_run(blocks):
        found = [block for block in blocks if block.kind == "sh" and not block.reason()]
        if not found:
            sys.exit("a page has no block to run")
        return found


def run_blocks(package):
    texts = pages()
    with tempfile.TemporaryDirectory() as folder:
        runner = Runner(pathlib.Path(folder), package)
        runner.readme_blocks(blocks_of(RUN[0], texts[RUN[0]]))
        runner.guide_blocks(blocks_of(RUN[1], texts[RUN[1]]))
    print("[  PASSED  ] 1 test.")


def main():
    if sys.argv[1:2] == ["--run"]:
        run_blocks(pathlib.Path(sys.argv[2]).resolve())
        return 0
    faults = list(static_faults())
    print("\n".join(faults), end="\n" if faults else "", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
