#!/usr/bin/env bash
# Makes the project of a module with its tests, from the files of new-module/: see Usage. Works in the package as well as
# in the source tree.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

Usage() {
    cat <<'END'
usage: new-module.sh NAME PRODUCT-ID FOLDER
Makes the project of a module, with its tests on the simulated agent.
  NAME         the module's, and its DLL's: MyModule
  PRODUCT-ID   by which the agent knows the product, letter for letter: MY_PRODUCT1000
  FOLDER       where the project is made; not there yet, or empty
END
}

# Refuse TEXT: ends the script, and says what is right.
Refuse() {
    echo "new-module.sh: $1" >&2
    exit 2
}

# FolderForCMake FOLDER: its whole path; on Windows as CMake knows it.
FolderForCMake() {
    (cd "$1" && { pwd -W 2>/dev/null || pwd; })
}

# Prints the folder of the package: the one that this script stands in, or the one that the source tree was built to.
FindPackage() {
    local folder
    for folder in "$here/.." "$here/../build/dist"; do
        if [ -e "$folder/lib/cmake/VsMsgbus/VsMsgbusConfig.cmake" ]; then
            FolderForCMake "$folder"
            return 0
        fi
    done
    Refuse "there is no package yet: run scripts/build.sh first"
}

if [ "${1:-}" = --help ] || [ "${1:-}" = -h ]; then
    Usage
    exit
fi
[ $# -eq 3 ] || Refuse "three arguments are needed, not $#: NAME PRODUCT-ID FOLDER, as in: MyModule MY_PRODUCT1000 ../my-module"
name="$1" id="$2" folder="$3"
[[ "$name" =~ ^[A-Za-z][A-Za-z0-9_]*$ ]] ||
    Refuse "NAME is a letter with letters, digits and underscores behind it, as in MyModule, not '$name'"
case "${name,,}" in
    vsmsgbus | loglib | ny_* | settings | all | clean | help | install | package | test)
        Refuse "NAME must not be that of another file or of a step of the build, as in MyModule, not '$name'" ;;
esac
[[ "$id" =~ ^[A-Za-z0-9_]+$ ]] ||
    Refuse "PRODUCT-ID is made of letters, digits and underscores, as in MY_PRODUCT1000, not '$id'"
[ -n "$folder" ] || Refuse "FOLDER is where the project is made, as in ../my-module"
if [ -e "$folder" ] && { [ ! -d "$folder" ] || [ -n "$(ls -A "$folder")" ]; }; then
    Refuse "FOLDER is one that is not there yet or empty; '$folder' is there"
fi
package=$(FindPackage)
scripts=$(FolderForCMake "$here")

mkdir -p "$folder"
target=$(cd "$folder" && pwd)
cd "$here/new-module"
find . -type f | while read -r file; do
    text=$(<"$file")
    text="${text//NewModule/"$name"}"
    text="${text//NEWMODULE1000/"$id"}"
    text="${text//PACKAGE-FOLDER/"$package"}"
    text="${text//SCRIPTS-FOLDER/"$scripts"}"
    made="$target/${file//NewModule/"$name"}"
    mkdir -p "$(dirname "$made")"
    printf '%s\n' "$text" >"$made"
done
echo "made $name in $folder; in that folder, this builds and tests it:"
echo "    cmake --workflow --preset mingw-cross    # Linux, tests under Wine; on Windows mingw, clang or visual-studio"
echo "    cmake --workflow --preset msabi-cross    # then the same module for Microsoft's C++ ABI, to try it"
