// The references on libraries that programs were given: what was not given cannot be freed.
#pragma once

#include "win32/libraries.h"

namespace win32 {

HMODULE Count(HMODULE library);
// Fails with ERROR_MOD_NOT_FOUND when there is none.
void Discount(HMODULE library);

}  // namespace win32
