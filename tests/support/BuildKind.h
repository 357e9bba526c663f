#pragma once

// False in the native builds. A call costs twenty times as much there, so that tests make fewer.
constexpr bool isWindows = sizeof(wchar_t) == 2;
