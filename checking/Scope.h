#pragma once

#include <string>
#include <string_view>

namespace checking {

// An export or a callback that the calling thread is inside, from construction to destruction. The innermost one is
// where a finding is made.
class Scope {
public:
    // `name` is a constant. The id is copied.
    Scope(const char* name, std::string_view id);
    Scope(const char* name, const wchar_t* id);
    ~Scope() { Leave(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    // For where destructors do not run. A second time does nothing.
    void Leave() noexcept;

    const char* Function() const noexcept { return function; }
    const std::string& ProductId() const noexcept { return productId; }
    // Null for a thread that is in no export and no callback.
    static const Scope* Innermost() noexcept;

private:
    const char* const function;
    const std::string productId;
    Scope* const outer;
    bool isInside = true;
};

}  // namespace checking
