#pragma once

#include <array>
#include <new>
#include <string>
#include <utility>

#include "values/AgentException.h"
#include "values/TextFunctions.h"

// Runs `body`; memory that runs out there is an agent exception with NY_OUT_OF_MEMORY. For work of the bridge's own
// between calls of a module, whose exceptions stay as they are.
template <class Body>
auto WithMemory(Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        throw corvane::ny::utils::exception(NY_OUT_OF_MEMORY);
    }
}

// One text of the agent's after the other as wide text, in memory that is used again: on the heap when it is long. A
// text that is not there is null. Assigning raises the agent exception when the agent does not convert it or memory
// runs out.
class WideText {
public:
    void Assign(const TextFunctions& functions, const char* narrow);

    const wchar_t* Get() const noexcept { return text; }

private:
    const wchar_t* text = nullptr;
    std::array<wchar_t, 64> shortText;  // only what `text` needs is ever written
    std::wstring longText;
};
