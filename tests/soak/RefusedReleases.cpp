#include "soak/RefusedReleases.h"

#include <string_view>

namespace {

struct Release {
    std::string_view function;
    ny_sim_handle_kind kind;
};

constexpr Release releases[] = {
    {"ny_buffer_release", NY_SIM_BUFFER},
    {"ny_wbuffer_release", NY_SIM_WBUFFER},
    {"ny_variant_release", NY_SIM_VARIANT},
    {"ny_table_release", NY_SIM_TABLE},
    {"ny_array_release", NY_SIM_ARRAY},
    {"ny_client_handler_release", NY_SIM_CLIENT},
    {"ny_policy_uri_release", NY_SIM_POLICY_URI},
    {"ny_policy_bag_release", NY_SIM_POLICY_BAG},
    {"ny_policy_bag_iterator_release", NY_SIM_POLICY_ITERATOR},
};

}  // namespace

void RefusedReleases::AddRecorded() {
    ny_sim_call_t call{};
    for (size_t i = 0; ny_sim_get_call(i, &call) == NY_OK; ++i) {
        for (const Release& release : releases) {
            if (call.result != NY_OK && release.function == call.function) {
                ++refused[release.kind];
                ++refused[NY_SIM_ANY];
            }
        }
    }
}
