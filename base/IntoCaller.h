#pragma once

// Has a function compiled into each of its callers, however many there are, in a build that is optimised. For the few
// lines that run for each of a million texts, and that the compiler would rather share. Other builds keep it one
// function, to be stepped through and counted.
#if defined(__OPTIMIZE__)
#define INTO_CALLER [[gnu::always_inline]]
#else
#define INTO_CALLER
#endif
