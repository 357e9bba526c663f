#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "checking/trace/Trace.h"

namespace checking {

// An export or a callback that the calling thread is inside, from construction to destruction. The innermost one is
// where a finding is made. It is a span of the record.
class Scope {
public:
    // `name` is a constant. The id is copied; without memory for that it is taken for empty. A null one is empty.
    Scope(const char* name, std::string_view id) noexcept;
    Scope(const char* name, const wchar_t* id) noexcept;
    // With the arguments of the call: `describe(arguments)` adds them when a record is kept.
    template <class Describe>
    Scope(const char* name, std::string_view id, const Describe& describe) noexcept : Scope(name, id, Untraced()) {
        Trace(TracePhase::Begin, function, [&](TraceArguments& arguments) {
            DescribeProduct(arguments);
            describe(arguments);
        });
    }
    ~Scope() { Leave(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    // Keeps the call's answer for the record.
    template <class Answer>
    Answer Answered(Answer value) noexcept {
        answer = static_cast<int64_t>(value);
        return value;
    }

    // The same of an export that may fail. Its caller's scope keeps the last failure until a call of the same export
    // goes well.
    template <class Answer>
    Answer Answered(Answer value, bool isFailure) noexcept {
        if (outer != nullptr) {
            outer->NoteInside(function, static_cast<int64_t>(value), isFailure);
        }
        return Answered(value);
    }
    // The export inside this scope that has failed last, with its answer; null when none has.
    const char* FailedInside() const noexcept { return failedInside; }
    int64_t AnswerOfFailedInside() const noexcept { return answerOfFailed; }

    // For where destructors do not run. A second time does nothing.
    void Leave() noexcept;

    const char* Function() const noexcept { return function; }
    const std::string& ProductId() const noexcept { return productId; }
    // Null for a thread that is in no export and no callback.
    static const Scope* Innermost() noexcept;

private:
    struct Untraced {};
    Scope(const char* name, std::string_view id, Untraced untraced) noexcept;

    void DescribeProduct(TraceArguments& arguments) const;
    void NoteInside(const char* called, int64_t value, bool isFailure) noexcept;

    const char* const function;
    std::string productId;
    Scope* const outer;
    std::optional<int64_t> answer;
    const char* failedInside = nullptr;
    int64_t answerOfFailed = 0;
    bool isInside = true;
};

}  // namespace checking
