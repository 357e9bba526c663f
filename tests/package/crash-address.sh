#!/usr/bin/env bash
# crash-address.sh FOLDER COMMAND...: an address in VsMsgbus.dll at which COMMAND crashes leads, by the symbols of the package,
# to the function that it called. FOLDER has the package.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
symbols="$1/unpacked/symbols/VsMsgbus.dll.debug"
shift

address="$("$@" | sed -n 's/^crash at VsMsgbus\.dll+\(0x[0-9a-f]*\).*/\1/p')"
[ -n "$address" ] || Fail "it has not crashed"
found="$(llvm-addr2line-14 --relative-address --functions --exe "$symbols" "$address" | head -n 1)"
[ "$found" = ny_temp_buffer_capacity ] || Fail "llvm-addr2line says $found"
# gdb wants the address as if the DLL were loaded where it asks to be.
base="$(x86_64-w64-mingw32-objdump -p "$symbols" | awk '/^ImageBase/ {print $2}')"
if command -v gdb >/dev/null; then
    absolute="$(printf '0x%x' $((0x$base + address)))"
    gdb -batch -ex "info symbol $absolute" "$symbols" 2>/dev/null | grep -q '^ny_temp_buffer_capacity' || Fail "gdb finds another"
fi
Passed
