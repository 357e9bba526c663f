// The exports for loading libraries and for growing buffers: nothing of them is checked, but all are recorded.
#include <type_traits>

#include "checking/Scope.h"
#include "checking/exports/Checked.h"

using namespace checking;

// As the bridge has it: the bridge's own calls of these names are recorded as what they are to the bridge.
extern "C" uint32_t __real_ny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept;
extern "C" void __real_ny_dl_close(ny_dl_t* lib) noexcept;

namespace {

// `function(given...)` as a span of the record.
template <class Answer, class... Parameters>
Answer Recorded(const char* name, Answer (*function)(Parameters...) noexcept, Parameters... given) noexcept {
    Scope scope(name, "");
    if constexpr (std::is_integral_v<Answer>) {
        return scope.Answered(function(given...));
    } else {
        return function(given...);
    }
}

}  // namespace

uint32_t Checkedny_dl_open(const char* path, unsigned flags, ny_dl_t* lib) noexcept {
    Scope scope("ny_dl_open", "", [&](TraceArguments& arguments) { arguments.Add("path", path); });
    return scope.Answered(__real_ny_dl_open(path, flags, lib));
}

void* Checkedny_dl_sym(ny_dl_t* lib, const char* name) noexcept {
    Scope scope("ny_dl_sym", "", [&](TraceArguments& arguments) { arguments.Add("name", name); });
    void* const found = ny_dl_sym(lib, name);
    scope.Answered(found != nullptr);
    return found;
}

void Checkedny_dl_close(ny_dl_t* lib) noexcept {
    Recorded("ny_dl_close", &__real_ny_dl_close, lib);
}

uint32_t Checkedny_dl_error(char* buffer, int size) noexcept {
    return Recorded("ny_dl_error", &ny_dl_error, buffer, size);
}

void Checkedny_temp_buffer_init(ny_temp_buffer_t* buffer) noexcept {
    Recorded("ny_temp_buffer_init", &ny_temp_buffer_init, buffer);
}

uint32_t Checkedny_temp_buffer_reserve(ny_temp_buffer_t* buffer, size_t size) noexcept {
    return Recorded("ny_temp_buffer_reserve", &ny_temp_buffer_reserve, buffer, size);
}

void* Checkedny_temp_buffer_get(ny_temp_buffer_t* buffer) noexcept {
    return Recorded("ny_temp_buffer_get", &ny_temp_buffer_get, buffer);
}

size_t Checkedny_temp_buffer_capacity(const ny_temp_buffer_t* buffer) noexcept {
    return Recorded("ny_temp_buffer_capacity", &ny_temp_buffer_capacity, buffer);
}

uint32_t Checkedny_temp_buffer_copy(ny_temp_buffer_t* dest, const ny_temp_buffer_t* source) noexcept {
    return Recorded("ny_temp_buffer_copy", &ny_temp_buffer_copy, dest, source);
}

void** Checkedny_temp_buffer_address_of(ny_temp_buffer_t* buffer) noexcept {
    return Recorded("ny_temp_buffer_address_of", &ny_temp_buffer_address_of, buffer);
}

void Checkedny_temp_buffer_uninit(ny_temp_buffer_t* buffer) noexcept {
    Recorded("ny_temp_buffer_uninit", &ny_temp_buffer_uninit, buffer);
}
