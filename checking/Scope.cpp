#include "checking/Scope.h"

#include "base/Boundary.h"
#include "checking/Texts.h"

namespace checking {

namespace {

thread_local Scope* innermost = nullptr;

std::string NarrowOrEmpty(const wchar_t* id) noexcept {
    std::string narrow;
    bridge::Guarded([&] { narrow = Narrow(id); });
    return narrow;
}

}  // namespace

Scope::Scope(const char* name, std::string_view id, Untraced /*untraced*/) noexcept : function(name), outer(innermost) {
    innermost = this;
    bridge::Guarded([&] { productId = id; });
}

Scope::Scope(const char* name, std::string_view id) noexcept : Scope(name, id, [](TraceArguments&) {}) {}

Scope::Scope(const char* name, const wchar_t* id) noexcept : Scope(name, NarrowOrEmpty(id)) {}

void Scope::DescribeProduct(TraceArguments& arguments) const {
    if (!productId.empty()) {
        arguments.Add("product", productId);
    }
}

// Names are constants of a call each, but two constants of one text may stand at two addresses.
void Scope::NoteInside(const char* called, int64_t value, bool isFailure) noexcept {
    if (isFailure) {
        failedInside = called;
        answerOfFailed = value;
    } else if (failedInside != nullptr && std::string_view(failedInside) == called) {
        failedInside = nullptr;
    }
}

void Scope::Leave() noexcept {
    if (!isInside) {
        return;
    }
    isInside = false;
    innermost = outer;
    Trace(TracePhase::End, function, [&](TraceArguments& arguments) {
        if (answer.has_value()) {
            arguments.Add("answer", *answer);
        }
    });
}

const Scope* Scope::Innermost() noexcept {
    return innermost;
}

}  // namespace checking
