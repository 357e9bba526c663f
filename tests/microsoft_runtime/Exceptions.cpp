// The standard's exceptions, as far as libc++'s headers only declare them.
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace {

// A text with a count of those that have it.
struct SharedText {
    std::atomic<size_t> owners;
    char text[1];
};

SharedText& SharedTextOf(const char* text) noexcept {
    return *reinterpret_cast<SharedText*>(const_cast<char*>(text) - offsetof(SharedText, text));
}

}  // namespace

namespace std {

const nothrow_t nothrow{};

void terminate() noexcept {
    abort();
}

exception::~exception() noexcept = default;
const char* exception::what() const noexcept {
    return "std::exception";
}

bad_alloc::bad_alloc() noexcept = default;
bad_alloc::~bad_alloc() noexcept = default;
const char* bad_alloc::what() const noexcept {
    return "std::bad_alloc";
}

bad_array_new_length::bad_array_new_length() noexcept = default;
bad_array_new_length::~bad_array_new_length() noexcept = default;
const char* bad_array_new_length::what() const noexcept {
    return "std::bad_array_new_length";
}

__libcpp_refstring::__libcpp_refstring(const char* text) {
    const size_t size = strlen(text) + 1;
    auto* const shared = new (operator new(sizeof(SharedText) + size)) SharedText{1, {}};
    memcpy(shared->text, text, size);
    __imp_ = shared->text;
}
__libcpp_refstring::__libcpp_refstring(const __libcpp_refstring& other) noexcept : __imp_(other.__imp_) {
    ++SharedTextOf(__imp_).owners;
}
__libcpp_refstring& __libcpp_refstring::operator=(const __libcpp_refstring& other) noexcept {
    ++SharedTextOf(other.__imp_).owners;
    this->~__libcpp_refstring();
    __imp_ = other.__imp_;
    return *this;
}
__libcpp_refstring::~__libcpp_refstring() {
    SharedText& shared = SharedTextOf(__imp_);
    if (--shared.owners == 0) {
        operator delete(&shared);
    }
}

logic_error::logic_error(const char* text) : __imp_(text) {}
logic_error::logic_error(const string& text) : __imp_(text.c_str()) {}
logic_error::logic_error(const logic_error& other) noexcept = default;
logic_error::~logic_error() noexcept = default;
const char* logic_error::what() const noexcept {
    return __imp_.c_str();
}
length_error::~length_error() noexcept = default;
out_of_range::~out_of_range() noexcept = default;

runtime_error::runtime_error(const char* text) : __imp_(text) {}
runtime_error::runtime_error(const string& text) : __imp_(text.c_str()) {}
runtime_error::runtime_error(const runtime_error& other) noexcept = default;
runtime_error::~runtime_error() noexcept = default;
const char* runtime_error::what() const noexcept {
    return __imp_.c_str();
}

inline namespace __1 {

bad_weak_ptr::~bad_weak_ptr() noexcept = default;
const char* bad_weak_ptr::what() const noexcept {
    return "std::bad_weak_ptr";
}

}  // namespace __1

}  // namespace std
