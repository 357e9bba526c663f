// The answers of the callbacks of walks, kept until their product leaves.
#pragma once

#include <string>

namespace checking {

// `callback` was called in a walk of the product's, and answered true for an item of it or for none.
void NoteWalk(const std::string& productId, const char* callback, bool hasGoneOn);
// Reports each callback of the product's that has never answered true, and forgets all. A callback that looks for
// something that only some policies have may refuse every item of the others.
void ReportRefusedWalks(const std::string& productId);

}  // namespace checking
