#pragma once

// Attributes of functions, to be written in front of the declaration. Microsoft's compiler warns of attributes that it
// does not know: for it some of them are empty.

#if defined(__GNUC__) || defined(__clang__)

// Compiled on its own, in no caller.
#define NEVER_INLINED [[gnu::noinline]]

// The compiler lays out the callers for the case that they do not call it.
#define RARELY_CALLED [[gnu::cold]]

// Takes the format and the arguments of printf: the numbers of these parameters, from 1, the object that a member
// function is called for included. `arguments` is 0 for a va_list.
#define LIKE_PRINTF(text, arguments) [[gnu::format(printf, text, arguments)]]

#else
#define NEVER_INLINED __declspec(noinline)
#define RARELY_CALLED
#define LIKE_PRINTF(text, arguments)
#endif

// Forces inlining in optimised builds. For the few lines that run for each of a million texts, and that the compiler
// would rather share. Other builds keep one function, which a debugger can step through and coverage can count.
#if defined(__OPTIMIZE__)
#define ALWAYS_INLINE [[gnu::always_inline]]
#else
#define ALWAYS_INLINE
#endif
