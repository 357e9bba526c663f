#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

#include "VsMsgbus.h"
#include "dispatcher/EntryPoint.h"

// How often each export was called; created for a name that is new. Any thread.
std::atomic<uint64_t>& CallsOf(std::string_view exportName);
std::map<std::string_view, uint64_t> AllCalls();

// Calls an export and counts the call under its name.
template <auto function, class... Arguments>
auto Call(Arguments... arguments) {
    static std::atomic<uint64_t>& calls = CallsOf(entrypoint::NameOf<function>());
    ++calls;
    return function(arguments...);
}

// The same for the one export that is a member.
void CallRelease(VsKitMsgbus::lpc_buffer& buffer);
