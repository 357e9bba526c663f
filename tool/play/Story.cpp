#include "tool/play/Story.h"

#include <algorithm>
#include <optional>
#include <random>

#include "tool/files/WholeFile.h"
#include "tool/play/StoryCheck.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using Json = nlohmann::json;

bool LooksAtFindings(const Json& steps) {
    return std::any_of(steps.begin(), steps.end(), [](const Json& step) {
        const std::string verb = step.at("do");
        return verb == "expect no findings" || verb == "expect finding" ||
               (step.contains("steps") && LooksAtFindings(step.at("steps")));
    });
}

// Appends the steps, each as often and in the order as they are to be played.
void Append(Json steps, std::mt19937* random, uint32_t within, Json& all) {
    for (Json& step : steps) {
        const std::string verb = step.at("do");
        if (verb == "in any order") {
            Json inside = std::move(step.at("steps"));
            if (random != nullptr) {
                std::shuffle(inside.begin(), inside.end(), *random);
            }
            Append(std::move(inside), random, within, all);
        } else if (verb == "repeat") {
            for (uint32_t i = step.at("times"); i != 0; --i) {
                Append(step.at("steps"), random, within, all);
            }
        } else {
            step.emplace("within", within);
            all.push_back(std::move(step));
        }
    }
}

}  // namespace

Story::Story(const std::string& file, std::string_view text, const std::filesystem::path& folder) {
    const StoryText source(file, text);
    const Json checked = CheckStory(source, folder);
    name = checked.value("name", Utf8(PathOf(file).stem()));
    product = checked.value("product", "");
    load = checked.value("load", "");
    unload = checked.value("unload", "");
    within = checked.value("within", within);
    steps = checked.at("steps");
    needsCheckingBridge = LooksAtFindings(steps);
}

Story Story::Read(const std::filesystem::path& file) {
    const std::optional<std::string> text = ReadWholeFile(file);
    if (!text) {
        throw WrongStory(Utf8(file) + ": it cannot be read");
    }
    return {Utf8(file), *text, file.parent_path()};
}

Json Story::InOrder(std::optional<uint32_t> seed) const {
    std::mt19937 random(seed.value_or(0));
    Json all = Json::array();
    Append(steps, seed ? &random : nullptr, within, all);
    return all;
}

}  // namespace tool::play
