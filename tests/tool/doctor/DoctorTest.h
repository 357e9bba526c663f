#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/AgentEnvironment.h"
#include "tool/RunProgram.h"

// The output and the exit status of `vsmsgbus doctor --json`.
class DoctorReport {
public:
    explicit DoctorReport(ProgramRun programRun)
        : run(std::move(programRun)), report(nlohmann::json::parse(run.output, nullptr, false)) {}

    int Status() const { return run.status; }
    bool HasCause() const { return report.is_object() && report["cause"].is_object(); }
    // Of the first cause; what was printed when there is none.
    std::string Problem() const { return OfCause("problem"); }
    std::string Text() const { return OfCause("text"); }
    std::string Remedy() const { return OfCause("remedy"); }
    // "good", "note", "bad", "not reached"; empty for a check that there is not.
    std::string State(const std::string& check) const {
        const nlohmann::json* const found = Find(check);
        return found != nullptr ? found->at("state").get<std::string>() : "";
    }
    std::vector<std::string> Details(const std::string& check) const {
        const nlohmann::json* const found = Find(check);
        return found != nullptr ? found->at("details").get<std::vector<std::string>>() : std::vector<std::string>();
    }
    // All that was printed.
    std::string Everything() const { return run.output + run.errors; }

private:
    std::string OfCause(const char* name) const {
        return HasCause() ? report["cause"][name].get<std::string>() : Everything();
    }
    const nlohmann::json* Find(const std::string& check) const {
        if (report.is_object()) {
            for (const nlohmann::json& candidate : report["checks"]) {
                if (candidate["name"] == check) {
                    return &candidate;
                }
            }
        }
        return nullptr;
    }

    ProgramRun run;
    nlohmann::json report;
};

// Expects that the examination ended with this cause, and that its text has this part.
inline void ExpectCause(const DoctorReport& report, const std::string& problem, const std::string& partOfText = "") {
    EXPECT_EQ(report.Status(), 1);
    EXPECT_EQ(report.Problem(), problem);
    EXPECT_THAT(report.Text(), testing::HasSubstr(partOfText));
}

// A test that has a machine of its own examined, with the simulated agent installed at first.
class DoctorTest : public testing::Test {
protected:
    DoctorTest() { environment.InstallAgent(); }
    ~DoctorTest() override {
        ::SetEnvironmentVariableA("PLANTED_AGENT", nullptr);
        ::SetEnvironmentVariableA("PLANTED_MODULE", nullptr);
    }

    DoctorReport Examine(std::vector<std::string> words = {}) const {
        words.insert(words.begin(), {"doctor", "--json", "--local-machine", environment.LocalMachine()});
        return DoctorReport(RunVsMsgbus(words));
    }

    // The agent's folder, and its file of that name.
    std::filesystem::path Folder() { return environment.Installer().CurrentFolder(); }
    std::filesystem::path Library(const std::string& name) { return Folder() / name; }

    // Has the agent behave so: see planted/PlantedAgent.cpp.
    void PlantAgent(const char* behaviour) {
        std::filesystem::copy_file(PlantedFolder() / "ny_client.dll", Library("ny_client.dll"),
                                   std::filesystem::copy_options::overwrite_existing);
        ::SetEnvironmentVariableA("PLANTED_AGENT", behaviour);
    }

    static std::filesystem::path PlantedFolder() {
        wchar_t program[MAX_PATH] = {};
        ::GetModuleFileNameW(nullptr, program, MAX_PATH);
        return std::filesystem::path(program).parent_path().parent_path() / "planted";
    }

    AgentEnvironment environment;
};
