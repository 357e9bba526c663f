#!/usr/bin/env bash
# frames.sh SOURCES: no source of the DLLs calls a module past base/ModuleCall.h, whose frames answer what the module
# throws.
source "$(dirname "${BASH_SOURCE[0]}")/../package/steps.sh"
cd "$1"
rooms=(base dispatcher library loglib msgbus policy property scheduler services updater values)

# The operations of all interfaces but those that the bridge implements. An operation stands one step deeper than the
# class that it is of.
operations=$(awk '
    /^ *class [A-Za-z]+ \{/ { owner[match($0, /[^ ]/)] = $2 }
    /^ *virtual / && !/~/ {
        class = owner[match($0, /[^ ]/) - 4]
        if (class != "ISet" && class != "IPolicyBag" && class != "ITaskBag") {
            name = $0; sub(/\(.*/, "", name); sub(/.* /, "", name); print name
        }
    }' include/VsMsgbus/*.h loglib/LogLib.h | sort -u)
[ "$(wc -l <<<"$operations")" -ge 20 ] || Fail "only these operations were found: $operations"

# Calls FOLDER...: where an operation is called on an object, where a pointer to an operation is used, and where a plain
# function or interface of a module's is taken out of what keeps it.
Calls() {
    grep -rnE --include='*.h' --include='*.cpp' \
        "(->|\.)($(paste -sd '|' <<<"$operations"))\(|(->|\.)\*|HandBack\(\)|getLogManager\(\)" "$@" |
        grep -vE '^base/ModuleCall\.h:' || true
}

# What is no call of a module, or has a frame around it.
Known() {
    grep -vE -e '^loglib/LogLib\.h:' \
        -e '^dispatcher/[a-zA-Z_]*\.cpp:.*[^A-Za-z]log\.Write\(Severity' \
        -e '^dispatcher/Dispatcher\.cpp:.*dispatcher->operations->\*slot :' \
        -e '^dispatcher/ny_dispatcher\.cpp:.*object\.operations->\*slot;' \
        -e '^loglib/DefaultLogManager\.cpp:.*[^A-Za-z]destination\.Write\(' \
        -e '^base/ModuleSlot\.h:.*return replaced->module\.HandBack\(\);' \
        -e '^loglib/LogLib\.cpp:.*LogManager\* getLogManager\(\)' \
        -e '^policy/VsMsgbusIEnforcePolicy\.cpp:.*CallModule\(\[&\] \{ write\(LogUtils::LogEvent\(.*getLogManager\(\)' \
        -e '^scheduler/AgentTask\.cpp:.*task->methods->\*accessor' \
        -e '^scheduler/VsMsgbusTaskExecutor\.cpp:.*\(service\.\*slot\)\(service\.Client\(\)' || true
}

# It finds what it looks for.
planted=$(mktemp -d)
trap 'rm -rf "$planted"' EXIT
for call in 'sink->Write(3, text);' '(*record).enforcer.EnforcePolicy(id, bag);' 'answer = (enforcer->*operation)(id, bag);' \
    'listener.HandBack()->OnLogEvent(event);' 'callbacks.OnSetting(section, name, value);'; do
    echo "$call" >"$planted/Planted.cpp"
    [ -n "$(Calls "$planted" | Known)" ] || Fail "not found: $call"
done

found=$(Calls "${rooms[@]}" | Known)
[ -z "$found" ] || Fail "calls of modules past base/ModuleCall.h:
$found"
Passed
