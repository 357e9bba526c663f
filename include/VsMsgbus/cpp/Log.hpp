/// @file
/// Where the C++ layer's lines and the bridge's go.
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "VsMsgbus/LogSink.h"
#include "VsMsgbus/cpp/Text.hpp"

namespace vsmsgbus {

/// Takes a line: its level (3, or 5 for what the agent refused to take or give) and its text, which is valid during the
/// call. Called on any thread, on two at once too. What it throws is dropped.
using LogHandler = std::function<void(int level, std::wstring_view line)>;

namespace detail {

/// The sink that the bridge writes to, and through which the layer tells what a handler threw.
class Log final : public VsKitMsgbus::ILogSink {
public:
    explicit Log(LogHandler logHandler) : handler(std::move(logHandler)) {}

    void Write(int level, const wchar_t* text) override {
        const std::wstring_view line = text;
        RememberCode(line);
        if (handler) {
            handler(level, line);
        }
    }

    /// For an exception that is being handled: "the handler of <what> threw: <what()>".
    void TellOfException(const char* what) noexcept {
        try {
            try {
                throw;
            } catch (const std::exception& thrown) {
                Tell(what, thrown.what());
            } catch (...) {
                Tell(what, "not a std::exception");
            }
        } catch (...) {
            // There is no memory for the line, or the log handler threw.
            return;
        }
    }

    bool IsWanted() const noexcept { return static_cast<bool>(handler); }

    /// The code at the end of the last line that ended with one, 0 when there was none since the last call.
    int32_t TakeCode() noexcept { return code.exchange(0); }

private:
    void Tell(const char* what, const char* thrown) {
        if (handler) {
            handler(3, Wide(std::string("the handler of ") + what + " threw: " + thrown));
        }
    }

    void RememberCode(std::wstring_view line) noexcept {
        constexpr std::wstring_view mark = L", exception ";
        const size_t found = line.rfind(mark);
        if (found == std::wstring_view::npos) {
            return;
        }
        int64_t number = 0;
        const std::wstring_view digits = line.substr(found + mark.size());
        const bool isNegative = digits.starts_with(L'-');
        for (const wchar_t digit : digits.substr(isNegative ? 1 : 0)) {
            if (digit < L'0' || digit > L'9' || number > INT32_MAX) {
                return;
            }
            number = number * 10 + (digit - L'0');
        }
        code = static_cast<int32_t>(isNegative ? -number : number);
    }

    const LogHandler handler;
    std::atomic<int32_t> code = 0;
};

/// Runs a handler. False when it threw, of which the log handler is told.
template <class Body>
bool RunHandler(Log& log, const char* what, const Body& body) noexcept {
    try {
        body();
        return true;
    } catch (...) {
        log.TellOfException(what);
        return false;
    }
}

/// What the layer throws into the bridge where a callback says by throwing alone that it failed: a number, which every
/// compiler's runtime can destroy.
enum class HandlerFailure { Told };

}  // namespace detail

}  // namespace vsmsgbus
