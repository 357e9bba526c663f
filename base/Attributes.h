#pragma once

// What a function is told to the compiler by, each in front of its declaration. Microsoft's compiler warns of what it
// does not know, and so is told less.

#if defined(__GNUC__) || defined(__clang__)

// Compiled on its own, in no caller.
#define NEVER_INLINED [[gnu::noinline]]

// Its callers are laid out for going on without it.
#define RARELY_CALLED [[gnu::cold]]

// Takes the format and the arguments of printf: the numbers of these parameters, from 1, the object that a member
// function is called for included. `arguments` is 0 for a va_list.
#define LIKE_PRINTF(text, arguments) [[gnu::format(printf, text, arguments)]]

#else
#define NEVER_INLINED __declspec(noinline)
#define RARELY_CALLED
#define LIKE_PRINTF(text, arguments)
#endif

// Has a function compiled into each of its callers, however many there are, in a build that is optimised. For the few
// lines that run for each of a million texts, and that the compiler would rather share. Other builds keep it one
// function, to be stepped through and counted.
#if defined(__OPTIMIZE__)
#define INTO_CALLER [[gnu::always_inline]]
#else
#define INTO_CALLER
#endif
