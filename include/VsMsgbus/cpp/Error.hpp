/// @file
/// The exception of the C++ layer.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace vsmsgbus {

/// An operation of the layer that failed.
class Error : public std::exception {
public:
    /// @param doing   what was being done, as in "entering the bridge"
    /// @param code    the agent's or the bridge's code; 0 when it is not told
    /// @param remedy  what helps, as a sentence; empty when nothing is known
    Error(std::string doing, int32_t code, std::string remedy = {})
        : whatWasDone(std::move(doing)), failureCode(code), whatHelps(std::move(remedy)) {
        text = whatWasDone + " failed";
        if (failureCode != 0) {
            text += " with code " + std::to_string(failureCode);
        }
        if (!whatHelps.empty()) {
            text += ": " + whatHelps;
        }
    }

    /// All of it in one line, UTF-8.
    const char* what() const noexcept override { return text.c_str(); }
    /// The agent's or the bridge's code; 0 when it is not told.
    int32_t Code() const noexcept { return failureCode; }
    /// The operation, as in "entering the bridge".
    const std::string& Doing() const noexcept { return whatWasDone; }
    /// A sentence that says what helps; empty when nothing is known.
    const std::string& Remedy() const noexcept { return whatHelps; }

private:
    std::string whatWasDone;
    int32_t failureCode;
    std::string whatHelps;
    std::string text;
};

}  // namespace vsmsgbus
