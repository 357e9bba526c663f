#pragma once

#include "ThrowingModule.h"

// Throws when it was told to throw there.
void ThrowIfAt(Place place);

// Runs `body(argument)` and tells what it throws, as "caught <what>".
void Catch(void (*body)(void* argument), void* argument);

Catcher CurrentCatcher();
bool IsAt(Place place);

void Tell(const char* line);
