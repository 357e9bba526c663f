#include "soak/LeftHandles.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

struct Release {
    std::string_view function;
    ny_sim_handle_kind kind;
};

constexpr Release releases[] = {
    {"ny_buffer_release", NY_SIM_BUFFER},         {"ny_wbuffer_release", NY_SIM_WBUFFER},
    {"ny_variant_release", NY_SIM_VARIANT},       {"ny_table_release", NY_SIM_TABLE},
    {"ny_array_release", NY_SIM_ARRAY},           {"ny_policy_uri_release", NY_SIM_POLICY_URI},
    {"ny_policy_bag_release", NY_SIM_POLICY_BAG}, {"ny_policy_bag_iterator_release", NY_SIM_POLICY_ITERATOR},
};

std::map<ny_sim_handle_kind, size_t> RefusedReleases() {
    std::map<ny_sim_handle_kind, size_t> refused;
    ny_sim_call_t call{};
    for (size_t i = 0; ny_sim_get_call(i, &call) == NY_OK; ++i) {
        for (const Release& release : releases) {
            if (call.result != NY_OK && release.function == call.function) {
                ++refused[release.kind];
                ++refused[NY_SIM_ANY];
            }
        }
    }
    return refused;
}

}  // namespace

void LeftHandles::Check() {
    auto refused = RefusedReleases();
    ny_sim_clear_calls();
    ForEachKindOfHandle([&](ny_sim_handle_kind kind) {
        const size_t alive = ny_sim_live_handles(kind);
        EXPECT_LE(alive, left[kind] + refused[kind]) << "handles of kind " << kind;
        left[kind] = alive;
    });
}

size_t LeftHandles::Of(ny_sim_handle_kind kind) const {
    const auto found = left.find(kind);
    return found != left.end() ? found->second : 0;
}
