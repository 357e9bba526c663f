#pragma once

// Clang's thread safety analysis checks these attributes in the native builds, where its warnings are errors. Other
// compilers see nothing of them.

#if defined(__clang__) && !defined(_WIN32)
#define THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define THREAD_SAFETY(attribute)
#endif

// A class that is a lock, and one that holds a lock for its lifetime.
#define CAPABILITY(name) THREAD_SAFETY(capability(name))
#define SCOPED_CAPABILITY THREAD_SAFETY(scoped_lockable)

// A field that is read and written only while that lock is held.
#define GUARDED_BY(lock) THREAD_SAFETY(guarded_by(lock))

// A function whose caller holds the locks.
#define REQUIRES(...) THREAD_SAFETY(requires_capability(__VA_ARGS__))

// A function that takes the locks, or leaves them. Without an argument: the object itself.
#define ACQUIRE(...) THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define RELEASE(...) THREAD_SAFETY(release_capability(__VA_ARGS__))
