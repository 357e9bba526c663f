#!/usr/bin/env bash
# digest.sh FOLDER -- COMPILER ARGUMENT...: a module with another C++ library than the bridge's cannot call GetDigest, and
# is told what to call instead, which compiles.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
include=$(realpath "$1/installed/include")
shift 2

# Compile CALL: a module that makes that call of a bag.
Compile() {
    printf '#include <VsMsgbus.h>\nvoid Read(VsKitMsgbus::INYEnforcePolicy::IPolicyBag& bag, %s) { %s; }\n' \
        'VsKitMsgbus::lpc_buffer& text' "$1" |
        "${compiler[@]}" -Wall -Wextra -Werror -Wno-unused-parameter -fsyntax-only -I"$include" -x c++ - 2>&1
}
compiler=("$@")

for call in 'bag.GetDigest("id")' 'std::string digest = bag.GetDigest("id"); (void)digest'; do
    output=$(Compile "$call") && Fail "this compiles: $call"
    grep -q 'error: static.*GetDigest returns a std::string of another C++ library: call GetDigestText' <<<"$output" ||
        Fail "$call: $output"
done
for call in 'bag.GetDigestText("id", &text)' 'std::string digest = bag.Digest("id"); (void)digest'; do
    output=$(Compile "$call") || Fail "$call: $output"
done
Passed
