// Exceptions of modules that Microsoft's compiler built: g++'s `catch` does not see them, and they run no destructors
// in the functions of g++'s that they pass. A ForeignFrame sees them, as that compiler's own try block does. Only C++
// exceptions are looked at: an access violation and the like pass on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace bridge {

struct ForeignType;

// One such exception on its way, while a frame looks at it.
class ForeignThrow {
public:
    // `description` is what TypeInfo returns; the addresses in it are relative to `image`.
    ForeignThrow(void* thrownObject, const std::byte* description, const std::byte* image) noexcept
        : object(thrownObject), typeInfo(description), imageBase(image) {}

    // The code that it carries when it is the agent exception, or derived from it.
    std::optional<int32_t> AgentCode() const noexcept;

    // The function that destroys the object; null when its type needs none.
    using Destructor = void (*)(void* object);
    Destructor FindDestructor() const noexcept;
    void* Object() const noexcept { return object; }

    // The ForeignThrowInfo of ForeignTypes.h; null when the compiler wrote none.
    const std::byte* TypeInfo() const noexcept { return typeInfo; }
    const std::byte* ImageBase() const noexcept { return imageBase; }

private:
    const ForeignType* FindType(const char* name) const noexcept;

    void* object;
    const std::byte* typeInfo;
    const std::byte* imageBase;
};

// A try block around code that calls a module. One run at a time.
class ForeignFrame {
public:
    // The bodies of the handlers that the system calls: see ForeignFrame.cpp.
    struct Handlers;

    ForeignFrame(const ForeignFrame&) = delete;
    ForeignFrame& operator=(const ForeignFrame&) = delete;

    // Runs `body()`. True when it ended with an exception that the frame has taken; the object thrown is destroyed
    // then. Such an exception runs no destructors on its way: `body` may hold nothing that needs a destructor, or Leave
    // must give it back.
    template <class Body>
    bool Run(const Body& body);

protected:
    ForeignFrame() noexcept = default;
    ~ForeignFrame() = default;

    // Whether the frame takes this exception. Nothing is destroyed yet.
    virtual bool Takes(const ForeignThrow& thrown) noexcept = 0;

    // Called once when an exception of any kind, or a jump, leaves the body, whether the frame takes it or not, and
    // before the handler that takes it runs. Only in the Windows build of g++: elsewhere destructors do it all.
    virtual void Leave() noexcept {}

private:
    ForeignThrow::Destructor destructor = nullptr;  // of what was thrown, once it is taken
    void* thrownObject;
};

#if defined(__MINGW32__)
// Runs `body(argument)` within the frame: see ForeignFrame.cpp.
extern "C" bool RunInForeignFrame(void (*body)(const void* argument), const void* argument, ForeignFrame* frame);
#endif

template <class Body>
bool ForeignFrame::Run(const Body& body) {
#if defined(__MINGW32__)
    return RunInForeignFrame([](const void* argument) { (*static_cast<const Body*>(argument))(); }, &body, this);
#else
    body();
    return false;
#endif
}

}  // namespace bridge
