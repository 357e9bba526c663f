#pragma once

#include <exception>
#include <string>

#include "base/Boundary.h"
#include "values/CUniStream.h"

// The end of every text that is composed and then goes to no log. A listener can be put here to read them; nothing else
// may depend on it. Without one, which is how the library runs, such a text is not even composed.
using DroppedTextListener = void (*)(const std::wstring& text);

// Null takes the listener away. Returns the one before.
DroppedTextListener SetDroppedTextListener(DroppedTextListener listener) noexcept;
DroppedTextListener GetDroppedTextListener() noexcept;

// `compose` writes the text into the stream that it is given.
template <class Compose>
void DropText(Compose&& compose) noexcept {
    if (const DroppedTextListener listener = GetDroppedTextListener()) {
        VsKit::CUniStream stream;
        compose(stream);
        listener(stream.Text());
    }
}

// Runs `body`; for what it throws, drops the text that `compose(stream, what)` writes, where `what` is the exception's
// own text. True when nothing was thrown.
template <class Body, class Compose>
bool RunOrDropText(Body&& body, Compose&& compose) noexcept {
    const auto drop = [&compose](const char* what) {
        DropText([&](VsKit::CUniStream& text) { compose(text, what); });
        return false;
    };
    const auto run = [&body] {
        body();
        return true;
    };
    return GuardedBy<std::exception>(
        false, run, [&](const std::exception& thrown) { return drop(thrown.what()); },
        [&] { return drop("Unknown exception"); });
}
