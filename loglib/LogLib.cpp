#include "loglib/LogLib.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "base/Attributes.h"
#include "base/Boundary.h"
#include "base/ModuleCall.h"
#include "loglib/DefaultLogManager.h"
#include "loglib/Utf8.h"

using namespace bridge;

namespace {

std::wstring WideOrNull(const char* text) {
    return text != nullptr ? WideFromUtf8(text) : L"<null>";
}

// The formatted text, or the format itself when the arguments cannot be formatted.
LIKE_PRINTF(1, 0) std::string Formatted(const char* format, va_list arguments) {
    va_list again{};
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) {
        return format;
    }
    std::string text(static_cast<size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

}  // namespace

namespace LogUtils {

void LogEvent::operator()(const wchar_t* component, const wchar_t* text) const {
    if (target == nullptr) {
        return;
    }
    Guarded([&] {
        const std::wstring own = component == nullptr ? WideOrNull(ownComponent) : std::wstring();
        const LogRecord record{
            file != nullptr ? file : "<null>",  line, level, component != nullptr ? component : own.c_str(),
            text != nullptr ? text : L"<null>",
        };
        ModulePointer(target).Call(&LogManager::Write, record);
    });
}

void LogEvent::operator()(const wchar_t* component, const char* format, ...) const {
    va_list arguments{};
    va_start(arguments, format);
    const auto compose = [&] { return format != nullptr ? Formatted(format, arguments) : std::string("<null>"); };
    Guarded([&] { (*this)(component, WideFromUtf8(compose()).c_str()); });
    va_end(arguments);
}

}  // namespace LogUtils

LogUtils::LogManager* getLogManager() {
    return &DefaultLogManager::Instance();
}
