#!/usr/bin/env bash
# Checks every source: its format by clang-format and, but for the tests and the measurements, its habits by clang-tidy. Needs a build of the
# release preset. A folder in which clang-tidy found nothing is not looked at again until a source of it, or any header,
# changes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
stamps=build/tidy
# The longest first.
folders=(simulator/core demo/host msgbus policy demo/module dispatcher scheduler property values updater services
    base loglib library simulator/agent simulator/setup)

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.cpp' | while read -r file; do
    [ -e "$file" ] && echo "$file"
done)
clang-format-14 --dry-run --Werror "${sources[@]}"

# clang finds Windows' headers by the compiler's name, but not that compiler's C++ library.
compiler=x86_64-w64-mingw32-g++-posix
mapfile -t flags < <("$compiler" -x c++ -E -v - </dev/null 2>&1 | sed -n 's/^ \(.*\/c++.*\)$/-isystem\1/p')
flags+=(--target=x86_64-w64-mingw32 -std=c++20 -DNOMINMAX -DUNICODE -DWIN32_LEAN_AND_MEAN -D_UNICODE
    -D_WIN32_WINNT=0x0601 -DFMT_HEADER_ONLY -DAGENT_VERSION=0 -I. -Iinclude -Iagent -Isimulator/core -Isimulator/include
    -Isimulator/setup -Idemo/module)
for library in build/release/third_party/*/; do
    flags+=(-isystem "$library")
done

# CheckHabits FOLDER: its sources as one, which reads the headers once: a tenth of the time.
CheckHabits() {
    local folder="$1" joint="$stamps/$1.cpp" stamp="$stamps/$1.ok" source output
    if [ -e "$stamp" ] &&
        [ -z "$(find .clang-tidy "$folder"/*.cpp "${headers[@]}" -newer "$stamp" -print -quit)" ]; then
        return 0
    fi
    echo "clang-tidy $folder"
    mkdir -p "$(dirname "$joint")"
    for source in "$folder"/*.cpp; do
        echo "#include \"$PWD/$source\"  // NOLINT"
    done >"$joint"
    if ! output=$(clang-tidy-14 --quiet --config-file=.clang-tidy "$joint" -- "${flags[@]}" 2>&1); then
        echo "$output"
        return 1
    fi
    touch "$stamp"
}
export -f CheckHabits
export stamps
mapfile -t headers < <(printf '%s\n' "${sources[@]}" | grep '\.h$')
lists=$(declare -p flags headers)
export lists

printf '%s\n' "${folders[@]}" |
    xargs -P "$(nproc)" -L 1 bash -c 'eval "$lists"; CheckHabits "$1"' check-style
