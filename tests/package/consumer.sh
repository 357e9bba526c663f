#!/usr/bin/env bash
# consumer.sh SOURCES FOLDER CHECKING: the example of the unpacked package is built against it, outside the source tree, and
# runs; its modules also for Microsoft's C++ ABI, with what the package has for that. The plain module, and a program that
# installs the agent, are built for that ABI without any C++ library as well. With the checking bridge, which that file is, all
# of them run without a finding.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" package="$2/unpacked" checking="$3"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Configure PROJECT BUILD ARGUMENT...: for Windows, with the package.
Configure() {
    cmake -S "$1" -B "$2" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_SYSTEM_NAME=Windows \
        -DCMAKE_PREFIX_PATH="$work/package" "${@:3}"
}

# RunHost WHAT MODULE: the host tells what the module answered.
RunHost() {
    local output
    output=$("$sources/scripts/wine-run.sh" "$work/build/bin/host.exe" "$2" | tr -d '\r')
    [ "$output" = "General: Version = 1.0
General: State = running
the module has left" ] || Fail "the host of $1 says: $output"
}

# Moved once more, so that what finds the package by a path of its own is found out.
cp -r "$package" "$work/package"
Configure "$work/package/example" "$work/build" -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix
cmake --build "$work/build"
RunHost "the module" MyModule.dll
RunHost "the plain module" PlainModule.dll

# A launcher such as ccache need not know clang-cl's options.
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
Configure "$work/package/example" "$work/msabi" "-DCMAKE_TOOLCHAIN_FILE=$work/package/msabi/toolchain.cmake"
cmake --build "$work/msabi" --target MyModule PlainModule
for module in MyModule PlainModule; do
    cmp -s "$work/msabi/bin/$module.dll" "$work/build/bin/$module.dll" && Fail "$module.dll is the same for both ABIs"
    cp "$work/msabi/bin/$module.dll" "$work/build/bin/"
    RunHost "the example's module for Microsoft's C++ ABI" "$module.dll"
done

# There is nothing that this compiler could link a program for its trial with.
Configure "$sources/tests/package/msvc/consumer" "$work/microsoft" -DCMAKE_CXX_COMPILER=clang++-14 \
    -DCMAKE_CXX_COMPILER_TARGET=x86_64-pc-windows-msvc -DCMAKE_CXX_COMPILER_WORKS=1 -DCMAKE_CXX_STANDARD_LIBRARIES=
cmake --build "$work/microsoft"
cp "$work/microsoft/bin/PlainModule.dll" "$work/build/bin/"
RunHost "the plain module without a C++ library" PlainModule.dll

# A finding ends the host.
export VSMSGBUS_CHECK=abort VSMSGBUS_CHECK_SLOW=60000
cp "$checking" "$work/build/bin/VsMsgbus.dll"
for module in MyModule PlainModule; do
    RunHost "$module with the checking bridge" "$module.dll"
done
unset VSMSGBUS_CHECK VSMSGBUS_CHECK_SLOW

"$sources/scripts/wine-run.sh" "$work/microsoft/bin/SetupProgram.exe" ||
    Fail "step $? went wrong in the program for Microsoft's C++ ABI that installs the agent"
Passed
