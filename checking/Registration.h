#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "checking/Services.h"

namespace checking {

// A thread that is inside a module's interface, and the operation that it is in.
struct Insider {
    DWORD thread;
    const char* function;
};

// An interface that a module has registered for a product: the module's library, and the threads inside the interface.
// The lock of Watch guards those threads.
class Registration {
public:
    // The calling thread registers the object.
    Registration(const ServiceText& serviceText, const wchar_t* id, const void* moduleObject);
    virtual ~Registration();
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    const ServiceText& Service() const noexcept { return service; }
    const std::wstring& Id() const noexcept { return wideId; }
    const std::string& NarrowId() const noexcept { return narrowId; }
    const std::string& Library() const noexcept { return library; }

    // Notes that the thread ends, and with it the objects on its stack.
    static void NoteThreadEnd(DWORD thread) noexcept;

    // Raises bridge::ForeignException when the object can be called no more, which is reported.
    void ExpectThere() const;

    // Called when the bridge has removed the registration: objects that were lent to the module end.
    virtual void BeRemoved() noexcept { isRemoved = true; }
    bool IsRemoved() const noexcept { return isRemoved; }

    void Enter(const char* function);
    void Leave() noexcept;
    bool IsThisThreadInside() const;
    // A thread inside the module's interface other than the calling one.
    std::optional<Insider> InsiderOnOtherThread() const;
    std::vector<Insider> Insiders() const;

private:
    const ServiceText& service;
    const std::wstring wideId;
    const std::string narrowId;
    const void* const object;
    const void* const firstFunction;  // of the object's table when it was registered; null when it was not there
    const std::string library;        // the file name
    const DWORD threadOfStack;        // on whose stack the object lies; 0 for none
    std::atomic<bool> isStackGone = false;
    std::vector<Insider> insiders;
    std::atomic<bool> isRemoved = false;
};

}  // namespace checking
