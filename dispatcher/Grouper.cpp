#include "dispatcher/Grouper.h"

#include <utility>

#include "agent/ny_agent.h"
#include "base/Boundary.h"
#include "dispatcher/RuntimePath.h"

namespace bridge {

namespace {

int32_t FindMember(Grouper& grouper, const char* product, Member** found) {
    for (const auto& member : grouper.members) {
        if (member->product == product) {
            *found = member.get();
            return NY_OK;
        }
    }
    return NY_INVALID_ARGUMENT;
}

void FindDirectory(const Grouper& grouper, Member& member) {
    if (LookUpRuntimePath(member.product.c_str(), member.directory) != NY_OK) {
        member.directory = grouper.defaultPath;
    }
}

int32_t AddMember(Grouper& grouper, const char* product) {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&]() -> int32_t {
        Member* existing = nullptr;
        if (FindMember(grouper, product, &existing) == NY_OK) {
            // A module that called while there was no agent, or no whole one, must reach the one that is installed
            // later.
            if (existing->libraries.empty()) {
                FindDirectory(grouper, *existing);
            }
            return NY_OK;
        }
        auto member = std::make_unique<Member>();
        member->product = product;
        FindDirectory(grouper, *member);
        grouper.members.push_back(std::move(member));
        return NY_OK;
    });
}

void ReleaseGrouper(Grouper& grouper, const DispatcherLog& log) {
    for (const auto& member : grouper.members) {
        if (member->operations != nullptr && member->operations->release != nullptr) {
            member->operations->release(*member, log);
        }
    }
    grouper.members.clear();
    grouper.defaultPath.reset();
}

}  // namespace

const GrouperOperations grouperOperations = {AddMember, nullptr, FindMember, nullptr, ReleaseGrouper};

}  // namespace bridge
