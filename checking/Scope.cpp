#include "checking/Scope.h"

#include "checking/Texts.h"

namespace checking {

namespace {

thread_local Scope* innermost = nullptr;

}  // namespace

Scope::Scope(const char* name, std::string_view id) : function(name), productId(id), outer(innermost) {
    innermost = this;
}

Scope::Scope(const char* name, const wchar_t* id) : function(name), productId(Narrow(id)), outer(innermost) {
    innermost = this;
}

void Scope::Leave() noexcept {
    if (isInside) {
        isInside = false;
        innermost = outer;
    }
}

const Scope* Scope::Innermost() noexcept {
    return innermost;
}

}  // namespace checking
