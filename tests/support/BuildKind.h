#pragma once

// False in the native builds: a call costs twenty times as much there, and fewer show what there is to see.
constexpr bool isWindows = sizeof(wchar_t) == 2;
