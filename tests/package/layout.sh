#!/usr/bin/env bash
# layout.sh FOLDER MICROSOFT-HEADERS: mingw-w64's compilers and Microsoft's give what crosses the border the same
# layout: every structure its fields and every interface its slots. Microsoft's put overloads in reverse order, and a
# destructor takes one slot there and two here: so there are no overloads, and a destructor is the last slot.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
folder="$1" microsoft="$2"
expected=$(dirname "${BASH_SOURCE[0]}")/slots.txt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
targets=(x86_64-w64-windows-gnu x86_64-pc-windows-msvc)

# Compile TARGET ARGUMENT...: reads the source from its input. That of mingw-w64 has the bridge's C++ library.
Compile() {
    local library=()
    [ "$1" != "${targets[0]}" ] || library=(-DVSMSGBUS_SAME_CPP_LIBRARY)
    clang++-14 --target="$1" -ffreestanding -nostdinc++ -nostdlibinc -isystem "$microsoft" \
        -I"$folder/installed/include" -std=c++20 -fno-rtti "${library[@]}" -x c++ - "${@:2}"
}

# Every installed header of the bridge.
Headers() {
    (cd "$folder/installed/include" && find . -name '*.h' -printf '#include "%P"\n')
}

# Records TARGET: the layout of each structure and class. What the compilers have of their own is left out, and so is
# how much room a class leaves to one that derives from it, because modules derive from interfaces alone.
Records() {
    Headers | Compile "$1" -fsyntax-only -Xclang -fdump-record-layouts-complete |
        sed 's/ dsize=[0-9]*,//; s/nvsize=[0-9]*/nvsize/; s/vftable pointer/vtable pointer/' |
        awk '/Dumping/ {text = ""}
            {text = text $0 "\n"}
            /nvsize/ && text !~ /__NSConst|unnamed at/ {printf "%s", text}'
}

# Slots TARGET: the slots of each interface, as "interface: number | function". A destructor is left out, because how
# many slots it takes differs: what comes behind it would differ in its number. The slot that not every module may call
# has two names.
Slots() {
    {
        Headers
        awk '/^ +0 \| (class|struct) / {name = $NF} /vtable pointer/ {print name}' "$work/$1.records" |
            sort -u | awk '{print "struct Use" NR " : " $1 " { Use" NR "(); }; Use" NR "::Use" NR "() {}"}'
    } | Compile "$1" -S -emit-llvm -o /dev/null -Xclang -fdump-vtable-layouts |
        awk '/^VF?Table indices for / {name = $4; sub(/^./, "", name); sub(/.$/, "", name); next}
            /^$/ || /^[^ ]/ {name = ""}
            name != "" && name !~ /^Use[0-9]+$/ && !/::~/ {print name ": " $0}' |
        sed -E 's/[^|]*IPolicyBag::(GetDigest|ReservedForGetDigest)\([^)]*\)/ IPolicyBag::GetDigest or its place/' |
        sed -E 's/ +\|/ |/; s/: +/: /' | sort
}

for target in "${targets[@]}"; do
    Records "$target" >"$work/$target.records"
    Slots "$target" >"$work/$target.slots"
done
interfaces=$(cut -d ' ' -f 1 "$work/${targets[0]}.slots" | sort -u | wc -l)
[ "$interfaces" -ge 3 ] || Fail "only $interfaces interfaces were found"
diff "$work/${targets[0]}.slots" "$work/${targets[1]}.slots" || Fail "slots differ"
diff "$work/${targets[0]}.records" "$work/${targets[1]}.records" || Fail "structures differ"
diff "$expected" "$work/${targets[0]}.slots" || Fail "the order of the slots is the contract: it is in $expected"

# A class of a C++ library is another one in another library.
if grep 'std::' "$work/${targets[0]}.slots"; then
    Fail "these cannot cross"
fi
echo "the slots of $interfaces interfaces are the same"
Passed
