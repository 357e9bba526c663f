#include "Narrator.h"

#include <fmt/format.h>

#include <cstdio>

void Narrator::Say(std::string_view actor, std::string_view line) {
    const std::lock_guard guard(mutex);
    fmt::print("{:>6}: {}\n", actor, line);
    std::fflush(stdout);
}

void Narrator::Detail(std::string_view actor, std::string_view line) {
    if (verbose) {
        Say(actor, line);
    }
}

void Narrator::Continue(std::string_view line) {
    const std::lock_guard guard(mutex);
    fmt::print("{:>6}    {}\n", "", line);
    std::fflush(stdout);
}
