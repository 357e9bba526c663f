#!/usr/bin/env bash
# reference.sh SOURCES FOLDER: the packaged reference explains every exported function, interface and slot, those of the kit and
# of the simulated agent too, has the guides and a front page by tasks, and its pages link what they name.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" pages="$2/installed/doc"

# Explains NAME: a page has an entry of that name, as the heading of an explanation.
Explains() {
    grep -qE "^<h2 class=\"memtitle\">.*</span>$1(\(\))?</h2>" "$pages"/*.html || Fail "the reference does not explain $1"
}

# Names in quotes or with a prefix are other spellings of a member, which stands under its own name.
mapfile -t names < <(sed -nE 's/^ +([A-Za-z][A-Za-z_0-9]*)( =.*)?$/\1/p' \
    "$sources"/{library/VsMsgbus,loglib/LogLib,kit/setup/ny_setup,simulator/core/ny_simulator}.def |
    grep -vE '^ny_core_')
[ ${#names[@]} -ge 16 ] || Fail "only ${#names[@]} exports were found"
for name in "${names[@]}" Release; do
    Explains "$name"
done
for name in $(sed -nE 's/^ +virtual .*[ *&]([A-Za-z_0-9]+)\(.*/\1/p' "$sources"/{include/VsMsgbus,loglib}/*.h); do
    # What stands in a slot that a module's compiler may not call is not explained.
    [ "$name" != ReservedForGetDigest ] || continue
    Explains "~?$name"
done
for guide in GETTING_STARTED CHECKS TIMELINE WHY_NOT_ASKED LOG_LINES STATUS_NUMBERS SECURITY; do
    grep -q "href=\"md_guides_$guide\.html\"" "$pages/index.html" || Fail "the reference does not lead to the guide $guide"
    [ -e "$pages/md_guides_$guide.html" ] || Fail "the reference lacks the guide $guide"
done

# Links PAGE NAME...: the page has a link with each of the names.
Links() {
    local page="$1" name
    shift
    for name in "$@"; do
        grep -qE "<a class=\"el\" href=\"[^\"]*\"[^>]*>$name</a>" "$pages/$page" || Fail "$page does not link $name"
    done
}
Links index.html VsMsgbusEntry vsmsgbus::Product vsmsgbus::OnOwnThread INYTaskEnforcer ny_sim_fail_call ny_setup.h
Links md_guides_WHY_NOT_ASKED.html VsMsgbusEntry VsKitMsgbusSetTaskEnforcer
Links md_guides_GETTING_STARTED.html vsmsgbus::Handlers VsKitMsgbusEncryptData
for header in CollectProperties EnforcePolicy TaskEnforcer UpdateNotify Crypto HealthCheck; do
    Links "${header}_8h.html" VsMsgbusEntry
done

# Every page that is named is there.
missing=$(grep -ohE 'href="[^"#:]+' "$pages"/*.html | sed 's/^href="//' | sort -u | while read -r page; do
    [ "$page" = https ] || [ -e "$pages/$page" ] || echo "$page"
done)
[ -z "$missing" ] || Fail "pages of the reference lead to these, which are not there: $missing"
Passed
