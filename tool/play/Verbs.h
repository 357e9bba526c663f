// The steps of a story: one table of their names and members, from which stories are checked and the schema is made.
#pragma once

#include <string_view>
#include <vector>

namespace tool::play {

// The types of members of a step.
enum class MemberType {
    Text,
    Pattern,      // a text, or {"matches": a regular expression}
    Count,        // a whole number, 0 or more
    Code,         // a whole number
    Answer,       // a whole number; null: whichever it is
    Flag,         // true or false
    Truth,        // true or false; null: whichever it is
    Choice,       // one of the texts of `choices`
    Choices,      // a list of those
    Codes,        // a list of whole numbers
    Properties,   // {"path": {"name": a pattern}}
    Policies,     // a list as ny_sim_policy.h describes it, or the name of a file with one
    Tasks,        // a list as ny_sim_scheduler.h describes it, or the name of a file with one
    Information,  // {"key": a text}
    Steps,        // a list of steps
};

struct Member {
    const char* name;
    MemberType type;
    bool isRequired;
    const char* meaning;
    std::vector<const char*> choices;
};

struct Verb {
    const char* name;
    const char* meaning;
    std::vector<Member> members;
};

// The members that a story itself has.
const std::vector<Member>& StoryMembers();
// The members that every step has besides its own.
const std::vector<Member>& CommonMembers();
// All verbs, in the order in which the guide shows them.
const std::vector<Verb>& AllVerbs();
// Null when there is none of that name.
const Verb* FindVerb(std::string_view name);
// Null when the step has no such member.
const Member* FindMember(const std::vector<Member>& members, std::string_view name);

}  // namespace tool::play
