#include "tool/play/StoryCheck.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "tool/files/WholeFile.h"
#include "tool/play/Verbs.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using Json = nlohmann::json;

class Check {
public:
    Check(const StoryText& storySource, std::filesystem::path storyFolder)
        : source(storySource), folder(std::move(storyFolder)) {}

    Json Run() {
        Json story = source.Root();
        if (!story.is_object()) {
            source.Refuse("", "a story is an object with the member \"steps\"");
        }
        Members(story, "", "a story", {&StoryMembers()});
        return story;
    }

private:
    using Tables = std::vector<const std::vector<Member>*>;

    void Members(Json& object, const std::string& pointer, const std::string& whose, const Tables& tables) {
        for (auto& [name, value] : object.items()) {
            const Member* member = nullptr;
            for (const auto* const table : tables) {
                member = member != nullptr ? member : FindMember(*table, name);
            }
            if (member == nullptr) {
                source.Refuse(pointer + '/' + name, whose + " has no member \"" + name + "\"; it has " + Names(tables));
            }
            Value(value, pointer + '/' + name, *member);
        }
        for (const auto* const table : tables) {
            for (const Member& member : *table) {
                if (member.isRequired && !object.contains(member.name)) {
                    source.Refuse(pointer, whose + " needs the member \"" + member.name + "\": " + member.meaning);
                }
            }
        }
    }

    static std::string Names(const Tables& tables) {
        std::string names;
        for (const auto* const table : tables) {
            for (const Member& member : *table) {
                names += (names.empty() ? "" : ", ") + std::string(member.name);
            }
        }
        return names;
    }

    void Step(Json& step, const std::string& pointer) {
        if (!step.is_object() || !step.contains("do") || !step.at("do").is_string()) {
            source.Refuse(pointer, "a step is an object with the member \"do\", which says what happens");
        }
        const std::string name = step.at("do");
        const Verb* const verb = FindVerb(name);
        if (verb == nullptr) {
            source.Refuse(pointer + "/do", "there is no step \"" + name + "\"; there are " + VerbNames());
        }
        Members(step, pointer, '"' + name + '"', {&CommonMembers(), &verb->members});
        step["line"] = source.LineOf(pointer);
    }

    static std::string VerbNames() {
        std::string names;
        for (const Verb& verb : AllVerbs()) {
            names += (names.empty() ? "" : ", ") + std::string(verb.name);
        }
        return names;
    }

    void Value(Json& value, const std::string& pointer, const Member& member) {
        const auto demand = [&](bool isRight, const char* what) {
            if (!isRight) {
                source.Refuse(pointer, std::string("\"") + member.name + "\" is " + what + ", not " + Shown(value));
            }
        };
        switch (member.type) {
            case MemberType::Text: demand(value.is_string(), "a text"); break;
            case MemberType::Pattern: Pattern(value, pointer, member.name); break;
            case MemberType::Count: demand(IsCount(value), "a whole number, 0 or more"); break;
            case MemberType::Code: demand(IsCode(value), "a whole number"); break;
            case MemberType::Answer: demand(IsCode(value) || value.is_null(), "a whole number or null"); break;
            case MemberType::Flag: demand(value.is_boolean(), "true or false"); break;
            case MemberType::Truth: demand(value.is_boolean() || value.is_null(), "true, false or null"); break;
            case MemberType::Choice: demand(IsOneOf(value, member), OneOf(member).c_str()); break;
            case MemberType::Choices:
                demand(AllOf(value, [&](const Json& one) { return IsOneOf(one, member); }),
                       ("a list with " + OneOf(member)).c_str());
                break;
            case MemberType::Codes: demand(AllOf(value, IsCode), "a list of whole numbers"); break;
            case MemberType::Properties: Properties(value, pointer, member.name); break;
            case MemberType::Policies:
            case MemberType::Tasks: List(value, pointer, member.name); break;
            case MemberType::Information:
                demand(value.is_object() && std::all_of(value.begin(), value.end(), IsText),
                       "an object whose members are texts");
                break;
            case MemberType::Steps: Steps(value, pointer); break;
        }
    }

    void Steps(Json& steps, const std::string& pointer) {
        if (!steps.is_array()) {
            source.Refuse(pointer, "\"steps\" is a list of steps, not " + Shown(steps));
        }
        for (size_t i = 0; i < steps.size(); ++i) {
            Step(steps[i], pointer + '/' + std::to_string(i));
        }
    }

    void Pattern(const Json& value, const std::string& pointer, const std::string& name) {
        const bool isExpression =
            value.is_object() && value.size() == 1 && value.contains("matches") && value.at("matches").is_string();
        if (!value.is_string() && !isExpression) {
            source.Refuse(pointer,
                          '"' + name + "\" is a text or {\"matches\": a regular expression}, not " + Shown(value));
        }
        if (isExpression) {
            try {
                const std::regex expression(value.at("matches").get<std::string>());
            } catch (const std::regex_error& wrong) {
                source.Refuse(pointer, '"' + name + "\": this is no regular expression: " + wrong.what());
            }
        }
    }

    void Properties(const Json& value, const std::string& pointer, const std::string& name) {
        const bool isRight = value.is_object() &&
                             std::all_of(value.begin(), value.end(), [](const Json& path) { return path.is_object(); });
        if (!isRight) {
            source.Refuse(pointer, '"' + name + "\" is {\"path\": {\"name\": the value}}, not " + Shown(value));
        }
        for (const auto& [path, names] : value.items()) {
            for (const auto& [property, text] : names.items()) {
                Pattern(text, pointer + '/' + path + '/' + property, property);
            }
        }
    }

    void List(Json& value, const std::string& pointer, const std::string& name) {
        if (value.is_string()) {
            const std::filesystem::path file = folder / PathOf(value.get<std::string>());
            const std::optional<std::string> text = ReadWholeFile(file);
            value = text ? Json::parse(*text, nullptr, false) : Json();
            if (!value.is_array()) {
                source.Refuse(pointer, Utf8(file) + (text ? " is no list in JSON" : " cannot be read"));
            }
        } else if (!value.is_array()) {
            source.Refuse(pointer, '"' + name + "\" is a list, or the name of a file with one, not " + Shown(value));
        }
    }

    static bool IsText(const Json& value) { return value.is_string(); }
    static bool IsCount(const Json& value) {
        return value.is_number_unsigned() && value.get<uint64_t>() <= std::numeric_limits<uint32_t>::max();
    }
    static bool IsCode(const Json& value) {
        using Limits = std::numeric_limits<int32_t>;
        return value.is_number_unsigned()
                   ? value.get<uint64_t>() <= static_cast<uint64_t>(Limits::max())
                   : value.is_number_integer() && value.get<int64_t>() >= static_cast<int64_t>(Limits::min());
    }
    static bool IsOneOf(const Json& value, const Member& member) {
        return value.is_string() && std::any_of(member.choices.begin(), member.choices.end(),
                                                [&](const char* choice) { return value == choice; });
    }
    template <class Condition>
    static bool AllOf(const Json& value, const Condition& condition) {
        return value.is_array() && std::all_of(value.begin(), value.end(), condition);
    }
    static std::string OneOf(const Member& member) {
        std::string text = "one of ";
        for (const char* const choice : member.choices) {
            text += (choice == member.choices.front() ? "\"" : ", \"") + std::string(choice) + '"';
        }
        return text;
    }
    static std::string Shown(const Json& value) {
        constexpr size_t most = 60;
        const std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
        return text.size() <= most ? text : text.substr(0, most) + "...";
    }

    const StoryText& source;
    const std::filesystem::path folder;
};

}  // namespace

Json CheckStory(const StoryText& source, const std::filesystem::path& folder) {
    return Check(source, folder).Run();
}

}  // namespace tool::play
