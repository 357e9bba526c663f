#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Narrator.h"

// The list of what the story has shown, told at its end.
class Summary {
public:
    // Once it has happened.
    void Add(std::string what, std::string line) { shown.emplace_back(std::move(what), std::move(line)); }

    void Tell(Narrator& narrator) const;

private:
    std::vector<std::pair<std::string, std::string>> shown;
};
