#pragma once

#include <string>

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
