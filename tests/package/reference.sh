#!/usr/bin/env bash
# reference.sh SOURCES FOLDER: the packaged reference explains every exported function, interface and slot, and has the
# guides.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" pages="$2/installed/doc"

# Explains NAME: a page has an entry of that name, as the heading of an explanation.
Explains() {
    grep -qE "^<h2 class=\"memtitle\">.*</span>$1(\(\))?</h2>" "$pages"/*.html || Fail "the reference does not explain $1"
}

# Names in quotes or with a prefix are other spellings of a member, which stands under its own name.
mapfile -t names < <(sed -nE 's/^ +([A-Za-z][A-Za-z_0-9]*)( =.*)?$/\1/p' \
    "$sources"/{library/VsMsgbus,loglib/LogLib,kit/setup/ny_setup}.def)
[ ${#names[@]} -ge 16 ] || Fail "only ${#names[@]} exports were found"
for name in "${names[@]}" Release; do
    Explains "$name"
done
for name in $(sed -nE 's/^ +virtual .*[ *&]([A-Za-z_0-9]+)\(.*/\1/p' "$sources"/{include/VsMsgbus,loglib}/*.h); do
    # What stands in a slot that a module's compiler may not call is not explained.
    [ "$name" != ReservedForGetDigest ] || continue
    Explains "~?$name"
done
for guide in GETTING_STARTED WHY_NOT_ASKED LOG_LINES STATUS_NUMBERS; do
    grep -q "href=\"md_guides_$guide\.html\"" "$pages/index.html" || Fail "the reference does not lead to the guide $guide"
    [ -e "$pages/md_guides_$guide.html" ] || Fail "the reference lacks the guide $guide"
done
Passed
