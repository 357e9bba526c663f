/// @file
/// The exception that vsmsgbus_testing.hpp throws, and the time that it waits.
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>

namespace vsmsgbus::testing {

/// An expectation was not met, or an operation failed. The text of what() is one line of UTF-8: what was to be, and
/// what was there instead.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How long is waited at most, unless a call says otherwise: longer than a bridge takes to notice an agent that came.
inline constexpr std::chrono::milliseconds usualLimit{20000};

namespace detail {

/// "waited 100 ms until <what>: "
inline std::string WaitedUntil(std::chrono::milliseconds limit, const std::string& what) {
    return "waited " + std::to_string(limit.count()) + " ms until " + what + ": ";
}

/// "1 client", "2 clients"
inline std::string Counted(size_t count, const std::string& one, const std::string& several) {
    return std::to_string(count) + ' ' + (count == 1 ? one : several);
}

/// Appends with ", " in between.
inline void AppendTo(std::string& list, const std::string& item) {
    list += (list.empty() ? "" : ", ") + item;
}

}  // namespace detail

}  // namespace vsmsgbus::testing
