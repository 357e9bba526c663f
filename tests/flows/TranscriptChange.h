#pragma once

#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// How a transcript differs from another one, as few lines as possible: "-<n> <line>" for the nth line of `from` that is
// gone, "+<n> <line>" for one that comes behind the nth. Empty when they are the same.
Lines ChangeOf(const Lines& from, const Lines& to);

// The transcript `to` that this change was made of. Throws std::runtime_error for a change that is none of `from`.
Lines Changed(const Lines& from, const Lines& change);
