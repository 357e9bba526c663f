// Whether a module's object and code are still in memory.
#pragma once

#include <cstddef>
#include <string>

namespace checking {

// The number of the object's first slot, from 1, that is no function; 0 when all are. The object is there.
size_t SlotThatIsNoFunction(const void* object, size_t slots) noexcept;

// Whether the object and its table are in memory that can be read, and its first function in memory that can run.
bool IsObjectThere(const void* object) noexcept;

// The object's first function. Null when the object, its table or the function's code cannot be read. Quicker than
// IsObjectThere, which also looks whether the code may run.
const void* FirstFunction(const void* object) noexcept;

// The file name of the library that has the object's functions; "unknown code" when there is none.
std::string LibraryOf(const void* object);

// Whether the object lies on the calling thread's stack.
bool IsOnOwnStack(const void* object) noexcept;

// How many bytes from `address` on can be written: up to the end of its block of the process's heap or of the C
// library's, else up to the end of its pages. Above `enough` the answer may be any number above that.
size_t RoomAt(const void* address, size_t enough) noexcept;

}  // namespace checking
