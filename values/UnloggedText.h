#pragma once

#include <exception>
#include <string>

#include "values/CUniStream.h"

namespace bridge {

// The end of every text that is composed and then goes to no log. A listener can be put here to read them; nothing else
// may depend on it. Without one, which is how the library runs, such a text is not even composed.
using UnloggedTextListener = void (*)(const std::wstring& text);

// Null takes the listener away. Returns the one before.
UnloggedTextListener SetUnloggedTextListener(UnloggedTextListener listener) noexcept;
UnloggedTextListener GetUnloggedTextListener() noexcept;

// `compose` writes the text into the stream that it is given.
template <class Compose>
void ComposeUnlogged(Compose&& compose) noexcept {
    if (const UnloggedTextListener listener = GetUnloggedTextListener()) {
        VsKit::CUniStream stream;
        compose(stream);
        listener(stream.Text());
    }
}

// Runs `body`; for what it throws, `compose(stream, what)` composes a text that goes to no log. `what` is the
// exception's own text. True when nothing was thrown.
template <class Body, class Compose>
bool RunOrComposeUnlogged(Body&& body, Compose&& compose) noexcept {
    const auto fail = [&compose](const char* what) {
        ComposeUnlogged([&](VsKit::CUniStream& text) { compose(text, what); });
    };
    try {
        body();
        return true;
    } catch (const std::exception& thrown) {
        fail(thrown.what());
    } catch (...) {
        fail("Unknown exception");
    }
    return false;
}

}  // namespace bridge
