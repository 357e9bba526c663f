// What the callbacks of walks have answered, until their product leaves.
#pragma once

#include <string>

namespace checking {

// `callback` was called in a walk of the product's, and answered true for an item of it or for none.
void NoteWalk(const std::string& productId, const char* callback, bool hasGoneOn);
// Reports each callback of the product's that has never answered true, and forgets all. One that looks for what only
// some policies have may refuse all of others.
void ReportRefusedWalks(const std::string& productId);

}  // namespace checking
