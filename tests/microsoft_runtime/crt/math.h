// Between libc++ and mingw-w64's <math.h>, which has macros where libc++ expects the functions of Microsoft's C
// library.
#pragma once

#include_next <math.h>

#ifdef __cplusplus
#undef fpclassify
#undef isfinite
#undef isgreater
#undef isgreaterequal
#undef isinf
#undef isless
#undef islessequal
#undef islessgreater
#undef isnan
#undef isnormal
#undef isunordered
#undef signbit

extern "C++" {

inline bool isfinite(double number) noexcept {
    return __builtin_isfinite(number);
}
inline bool isinf(double number) noexcept {
    return __builtin_isinf(number);
}
inline bool isnan(double number) noexcept {
    return __builtin_isnan(number);
}
inline bool isnormal(double number) noexcept {
    return __builtin_isnormal(number);
}
inline bool signbit(double number) noexcept {
    return __builtin_signbit(number);
}

}  // extern "C++"
#endif
