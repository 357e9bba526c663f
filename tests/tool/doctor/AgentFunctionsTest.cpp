// The doctor's list of what the bridge cannot do without a function keeps step with what the bridge calls.
#include "tool/doctor/AgentFunctions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

namespace {

using tool::doctor::AgentLibraries;
using tool::doctor::FunctionsOf;
using tool::doctor::UseOf;

// The functions that stand as entry points in the headers of the groups.
std::set<std::string> FunctionsThatTheBridgeCalls() {
    std::set<std::string> functions;
    for (const auto& header : std::filesystem::directory_iterator(GROUPS_FOLDER)) {
        std::ifstream file(header.path());
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::regex entryPoint("EntryPoint<&::(ny_[a-z_]+)");
        for (std::sregex_iterator match(text.begin(), text.end(), entryPoint), end; match != end; ++match) {
            functions.insert((*match)[1]);
        }
    }
    return functions;
}

TEST(AgentFunctions, AreThoseOfTheBridgesTables) {
    size_t count = 0;
    for (const auto& library : AgentLibraries()) {
        count += FunctionsOf(library.file).size();
    }
    EXPECT_EQ(count, 264U);
}

TEST(AgentFunctions, HaveAUseWhereTheBridgeCallsAndMissesThem) {
    // Settings whose answer is not looked at, the bus, the log, and what is called for its own sake.
    const std::set<std::string> notMissed = {"ny_client_handler_set_thread_option",
                                             "ny_client_handler_set_logger",
                                             "ny_client_handler_set_logger_callback",
                                             "ny_client_handler_set_msgbus_passphrase_callback",
                                             "ny_client_handler_get_msgbus",
                                             "ny_client_handler_set_msgbus",
                                             "ny_msgbus_get_version",
                                             "ny_msgbus_disable_watcher",
                                             "ny_log_v",
                                             "ny_variant_init",
                                             "ny_variant_deinit"};
    std::set<std::string> missed = FunctionsThatTheBridgeCalls();
    ASSERT_GT(missed.size(), notMissed.size());
    for (const std::string& function : notMissed) {
        EXPECT_EQ(missed.erase(function), 1U) << function;
    }
    std::set<std::string> withUse;
    for (const auto& library : AgentLibraries()) {
        for (const std::string_view function : FunctionsOf(library.file)) {
            if (!UseOf(function).empty()) {
                withUse.emplace(function);
            }
        }
    }
    EXPECT_EQ(withUse, missed);
}

}  // namespace
