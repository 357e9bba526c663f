#!/usr/bin/env bash
# Checks every source: its format by clang-format and, in what is shipped as the DLL, its habits by clang-tidy; with --all
# also in the simulated agent and the demo, which takes as long again. Needs a build of the release preset. What clang-tidy
# found nothing in is not looked at again until it, or a header of it, changes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/release
without=(-e "^$PWD/tests/" -e "^$PWD/build/" -e "^/usr/")
[ "${1:-}" = --all ] || without+=(-e "^$PWD/simulator/" -e "^$PWD/demo/")

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.cpp' | while read -r file; do
    [ -e "$file" ] && echo "$file"
done)
clang-format-14 --dry-run --Werror "${sources[@]}"

# clang finds Windows' headers by the compiler's name, but not that compiler's C++ library.
compiler=x86_64-w64-mingw32-g++-posix
mapfile -t includes < <("$compiler" -x c++ -E -v - </dev/null 2>&1 | sed -n 's/^ \(.*\/c++.*\)$/--extra-arg=-isystem\1/p')

# CheckHabits SOURCE OBJECT: the object is built anew whenever the source or a header of it has changed.
CheckHabits() {
    local stamp="$build/tidy/$2.ok" output
    if [ "$stamp" -nt "$build/$2" ] && [ "$stamp" -nt .clang-tidy ]; then
        return 0
    fi
    echo "clang-tidy ${1#"$PWD"/}"
    if ! output=$(clang-tidy-14 -p "$build" --quiet "${includes[@]}" "$1" 2>&1); then
        echo "$output"
        return 1
    fi
    mkdir -p "$(dirname "$stamp")"
    touch "$stamp"
}
export -f CheckHabits
export build
includesText=$(declare -p includes)
export includesText

sed -n 's/^ *"command": ".* -o \([^ ]*\) -c \([^ ]*\)",\{0,1\}$/\2 \1/p' "$build/compile_commands.json" |
    grep -v "${without[@]}" |
    xargs -P "$(nproc)" -L 1 bash -c 'eval "$includesText"; CheckHabits "$1" "$2"' check-style
