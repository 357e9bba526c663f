#include "checking/Scope.h"

#include "checking/Texts.h"

namespace checking {

namespace {

thread_local Scope* innermost = nullptr;

}  // namespace

Scope::Scope(const char* name, std::string_view id, Untraced /*untraced*/)
    : function(name), productId(id), outer(innermost) {
    innermost = this;
}

Scope::Scope(const char* name, std::string_view id) : Scope(name, id, [](TraceArguments&) {}) {}

Scope::Scope(const char* name, const wchar_t* id) : Scope(name, Narrow(id)) {}

void Scope::DescribeProduct(TraceArguments& arguments) const {
    if (!productId.empty()) {
        arguments.Add("product", productId);
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
