#pragma once

#include <gmock/gmock.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tool/RunProgram.h"

// Plays stories in a folder of the test's own, with the sample module or with PlantedModule.dll.
class PlayFixture : public testing::Test {
protected:
    PlayFixture() {
        wchar_t program[MAX_PATH] = {};
        ::GetModuleFileNameW(nullptr, program, MAX_PATH);
        programs = std::filesystem::path(program).parent_path();
        folder = std::filesystem::temp_directory_path() / (L"play-" + std::to_wstring(::GetCurrentProcessId()));
        std::filesystem::create_directories(folder);
    }
    ~PlayFixture() override {
        ::SetEnvironmentVariableA("PLANTED_MISTAKE", nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    // UTF-8, as the command line has it.
    static std::string Text(const std::filesystem::path& path) {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    }
    std::string Sample() const { return Text(programs / "SampleModule.dll"); }
    std::string Planted() const { return Text(programs / "PlantedModule.dll"); }
    static void Plant(const char* mistake) { ::SetEnvironmentVariableA("PLANTED_MISTAKE", mistake); }

    // The file's name.
    std::string Write(const std::string& story, const std::string& name = "story.json") const {
        const auto file = folder / std::u8string(name.begin(), name.end());
        std::ofstream stream(file, std::ios::binary);
        EXPECT_TRUE(stream << story << std::flush) << Text(file) << " cannot be written";
        return Text(file);
    }
    static std::string Read(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    // `steps` stand one a line from line 2 on.
    ProgramRun Play(const std::string& steps, const std::string& module, std::vector<std::string> options = {}) const {
        std::vector<std::string> words{"play", Write("{\"steps\": [\n" + steps + "]}"), module};
        words.insert(words.end(), options.begin(), options.end());
        return RunVsMsgbus(words);
    }
    static nlohmann::json Result(const ProgramRun& run) {
        auto result = nlohmann::json::parse(run.output, nullptr, false);
        EXPECT_FALSE(result.is_discarded()) << run.output;
        return result;
    }

    std::filesystem::path programs;
    std::filesystem::path folder;
};
