#!/usr/bin/env bash
# Checks every source: its format by clang-format and, in what is shipped as the DLLs, its habits by clang-tidy; with --all
# also in the simulated agent, the kit, the program and the demo, which takes as long again and needs a build of the release preset. What
# clang-tidy found nothing in is not looked at again until one of its sources, or any header, changes: scripts/tidy-clean. First the pages: that
# their links lead somewhere, that docs/LOG_LINES.md has every line that the sources write, that what their commands name is
# there, and that the pictures of docs/PERFORMANCE.md are drawn from its table.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# A digest of what clang-tidy found nothing in, for each line of the joints below; to be committed with the sources.
records=scripts/tidy-clean
# Each line is read as one, which takes a tenth of the time: headers are what takes long. The longest first.
joints=("msgbus msgbus/client msgbus/registrations msgbus/instance library" "policy services" "base dispatcher values"
    "property scheduler updater" "include" "loglib" "checking checking/exports checking/trace")
# No folder of the DLLs' sources is forgotten.
for folder in $(git ls-files base dispatcher values msgbus library policy services property scheduler updater loglib checking |
    sed -n 's|/[^/]*\.cpp$||p' | sort -u); do
    [[ " ${joints[*]} " == *" $folder "* ]] || {
        echo "$0: no clang-tidy for $folder" >&2
        exit 1
    }
done
core=simulator/core
[ "${1:-}" = --all ] && joints+=("$core $core/threads $core/frame $core/handles $core/values $core/client $core/services"
    "$core/property $core/policy $core/scheduler $core/updater $core/hostility" "demo/host" "demo/module"
    "simulator/exports simulator/setup" "kit/setup" "tool tool/output tool/timeline"
    "tool/doctor tool/doctor/checks tool/doctor/trial tool/files tool/pe" "tool/play tool/play/player tool/process tool/text"
    "tool/judge")

scripts/check-links.py
scripts/check-log-lines.py
scripts/check-commands.py
bench/report/draw.py --check

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.hpp' '*.cpp' | while read -r file; do
    [ -e "$file" ] && echo "$file"
done)
clang-format-14 --dry-run --Werror "${sources[@]}"

# clang finds Windows' headers by the compiler's name, but not that compiler's C++ library.
compiler=x86_64-w64-mingw32-g++-posix
mapfile -t flags < <("$compiler" -x c++ -E -v - </dev/null 2>&1 | sed -n 's/^ \(.*\/c++.*\)$/-isystem\1/p')
flags+=(--target=x86_64-w64-mingw32 -std=c++20 -DNOMINMAX -DUNICODE -DWIN32_LEAN_AND_MEAN -D_UNICODE
    -D_WIN32_WINNT=0x0601 -DFMT_HEADER_ONLY -DAGENT_VERSION=0 -I. -Iinclude -Iagent -Isimulator/include -Isimulator/setup
    -isystem kit/include -Idemo/module)
for library in build/release/third_party/*/; do
    flags+=(-isystem "$library")
done

# CheckHabits FOLDER...: their sources as one.
CheckHabits() {
    local name="$*" joint record digest output
    name="${name//[\/ ]/-}"
    joint="build/tidy/$name.cpp"
    record="$records/$name"
    mapfile -t members < <(printf '%s\n' "${@/%//*.?pp}" | while read -r pattern; do compgen -G "$pattern"; done)
    mapfile -t included < <(printf '%s\n' "${headers[@]}" | if [[ "$1" =~ ^(simulator|kit|tool|demo) ]]; then cat; else
        grep -vE '^(simulator|kit|tool|demo)/'
    fi)
    digest=$(sha256sum .clang-tidy "${members[@]}" "${included[@]}" | sort | sha256sum)
    [ "$(cat "$record" 2>/dev/null)" != "$digest" ] || return 0
    echo "clang-tidy $*"
    mkdir -p build/tidy "$records"
    printf "#include \"$PWD/%s\"  // NOLINT\n" "${members[@]}" >"$joint"
    if ! output=$(clang-tidy-14 --quiet --config-file=.clang-tidy "$joint" -- "${flags[@]}" 2>&1); then
        echo "$output"
        return 1
    fi
    echo "$digest" >"$record"
}
export -f CheckHabits
export records
# What the sources may include: those of the DLLs nothing of the simulated agent, the kit, the program and the demo.
mapfile -t headers < <(printf '%s\n' "${sources[@]}" | grep '\.hp*$' | grep -vE '^(tests|bench)/')
lists=$(declare -p flags headers)
export lists

printf '%s\n' "${joints[@]}" |
    xargs -P "$(nproc)" -L 1 bash -c 'eval "$lists"; CheckHabits "$@"' check-style
