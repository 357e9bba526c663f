#include "soak/LeftHandles.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

struct Release {
    const char* function;
    ny_sim_handle_kind kind;
};

constexpr Release releases[] = {
    {"ny_buffer_release", NY_SIM_BUFFER},         {"ny_wbuffer_release", NY_SIM_WBUFFER},
    {"ny_variant_release", NY_SIM_VARIANT},       {"ny_table_release", NY_SIM_TABLE},
    {"ny_array_release", NY_SIM_ARRAY},           {"ny_policy_uri_release", NY_SIM_POLICY_URI},
    {"ny_policy_bag_release", NY_SIM_POLICY_BAG}, {"ny_policy_bag_iterator_release", NY_SIM_POLICY_ITERATOR},
};

// Since the process began.
std::map<ny_sim_handle_kind, size_t> RefusedReleases() {
    std::map<ny_sim_handle_kind, size_t> refused;
    for (const Release& release : releases) {
        refused[release.kind] = ny_sim_fault_count(release.function);
        refused[NY_SIM_ANY] += refused[release.kind];
    }
    return refused;
}

size_t Count(const std::map<ny_sim_handle_kind, size_t>& counts, ny_sim_handle_kind kind) {
    const auto found = counts.find(kind);
    return found != counts.end() ? found->second : 0;
}

}  // namespace

LeftHandles::LeftHandles() : refused(RefusedReleases()) {
    ForEachKindOfHandle([&](ny_sim_handle_kind kind) { left[kind] = ny_sim_live_handles(kind); });
}

void LeftHandles::Check() {
    const auto refusedBefore = std::exchange(refused, RefusedReleases());
    ForEachKindOfHandle([&](ny_sim_handle_kind kind) {
        const size_t alive = ny_sim_live_handles(kind);
        const size_t refusedSince = Count(refused, kind) - Count(refusedBefore, kind);
        EXPECT_LE(alive, Count(left, kind) + refusedSince) << "handles of kind " << kind;
        left[kind] = alive;
    });
}

size_t LeftHandles::Of(ny_sim_handle_kind kind) const {
    return Count(left, kind);
}
