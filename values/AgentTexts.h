// The agent's texts as standard strings. Each raises corvane::ny::utils::exception with the first code that the agent
// answers other than NY_OK, NY_FUNCTION_MISSING included, after releasing what it holds; and std::bad_alloc when there
// is no memory, or when the agent names a length that no memory holds. They go through the libraries given, which the
// caller is inside of, or through those that are open.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "agent/ny_agent.h"
#include "values/TextFunctions.h"

namespace bridge {

// A variant's text, with its exact length: zeros in it are kept.
std::string NarrowFromVariant(ny_variant_t* variant, const LibrariesInUse* inUse = nullptr);
std::wstring WideFromVariant(ny_variant_t* variant, const LibrariesInUse* inUse = nullptr);
// The same through functions that the caller has looked up.
std::wstring WideFromVariant(const TextFunctions& functions, ny_variant_t* variant);

// UTF-8 to UTF-16 and back, the agent's way: through a variant. A view stays in registers until here: as a parameter of
// a function that is called it is memory on Windows.
std::wstring WideFromNarrow(const char* text, size_t length, const LibrariesInUse* inUse);
std::string NarrowFromWide(const wchar_t* text, size_t length, const LibrariesInUse* inUse);
inline std::wstring WideFromNarrow(std::string_view text, const LibrariesInUse* inUse = nullptr) {
    return WideFromNarrow(text.data(), text.size(), inUse);
}
inline std::string NarrowFromWide(std::wstring_view text, const LibrariesInUse* inUse = nullptr) {
    return NarrowFromWide(text.data(), text.size(), inUse);
}

// Not a conversion: the low byte of each unit, the agent's contract for task ids and for names of health checks. Texts
// that differ elsewhere are one.
std::string LowBytes(const wchar_t* text);

}  // namespace bridge
