#include "Summary.h"

#include <fmt/format.h>

void Summary::Tell(Narrator& narrator) const {
    narrator.Say("host", "has seen all of it go as it was told:");
    for (const auto& [what, line] : shown) {
        narrator.Continue(fmt::format("{:<10}  {}", what, line));
    }
}
