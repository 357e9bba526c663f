// The part of Win32 that this project uses, for the native checking build: see docs/TESTING.md.
//
// Only for that build, so that the sources run under sanitizers unchanged. Names, types and answers are Windows' own;
// what is not here is not used. wchar_t has four bytes, so wide text is UTF-32.
#pragma once

#include "win32/errors.h"
#include "win32/files.h"
#include "win32/libraries.h"
#include "win32/process.h"
#include "win32/registry.h"
#include "win32/text.h"
#include "win32/threads.h"
#include "win32/tokens.h"
#include "win32/types.h"
