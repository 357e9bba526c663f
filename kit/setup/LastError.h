// Why the last call of a thread failed, and the answers that go with it.
#pragma once

#include <cstdint>
#include <exception>
#include <new>

#include "ny_setup.h"

namespace kit {

// Keeps the text for the calling thread, cut to the room that there is.
void SetLastErrorText(const char* text) noexcept;
const char* LastErrorText() noexcept;

// A call that is answered a code other than NY_SETUP_FAILED.
class Refusal : public std::exception {
public:
    // The text must be a literal.
    Refusal(int32_t refusalCode, const char* refusalText) : code(refusalCode), text(refusalText) {}
    const char* what() const noexcept override { return text; }

    const int32_t code;

private:
    const char* text;
};

// Runs the body of an export: NY_OK when it returns, else the code for what it throws, whose text is kept.
template <class Body>
int32_t Guarded(const Body& body) noexcept {
    try {
        body();
        return NY_OK;
    } catch (const Refusal& refusal) {
        SetLastErrorText(refusal.what());
        return refusal.code;
    } catch (const std::bad_alloc&) {
        SetLastErrorText("out of memory");
        return NY_OUT_OF_MEMORY;
    } catch (const std::exception& failure) {
        SetLastErrorText(failure.what());
        return NY_SETUP_FAILED;
    }
}

}  // namespace kit
