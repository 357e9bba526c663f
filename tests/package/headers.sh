#!/usr/bin/env bash
# headers.sh FOLDER -- COMPILER ARGUMENT...: each installed header compiles by itself, without a warning. With --layers in
# front of the folder the two that are for C++20 alone, each with its parts; without it all others.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
wanted=(-name '*.h')
least=10
if [ "$1" = --layers ]; then
    wanted=(-name 'vsmsgbus*.hpp')
    least=2
    shift
fi
package=$(realpath "$1/installed")
layouts=$(realpath "$(dirname "${BASH_SOURCE[0]}")/Layout.cpp")
shift 2
# What stands in the calling folder is not to be found.
cd /

mapfile -t headers < <(cd "$package" && find include agent/include example "${wanted[@]}" | sort)
[ ${#headers[@]} -ge "$least" ] || Fail "only ${#headers[@]} headers are installed"
failed=0
for header in "${headers[@]}"; do
    # Twice, because a header may be included again.
    printf '#include "%s"\n#include "%s"\n' "$header" "$header" |
        "$@" -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$package" -I"$package/include" \
            -I"$package/agent/include" -x c++ - || {
        echo "$header does not compile by itself" >&2
        failed=1
    }
done
[ "$failed" -eq 0 ] || Fail "compiled with: $*"
if [ "$least" -eq 2 ]; then
    Passed
    exit
fi

# The layouts are those of the contract.
"$@" -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$package" -I"$package/include" "$layouts" ||
    Fail "another layout, compiled with: $*"

# What is there without VsMsgbus.h is there with it.
while read -r header; do
    grep -qxF "#include \"VsMsgbus/$header\"" "$package/include/VsMsgbus.h" ||
        Fail "VsMsgbus.h does not include $header"
done < <(cd "$package/include/VsMsgbus" && ls -- *.h)
Passed
