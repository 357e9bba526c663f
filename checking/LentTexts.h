#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace checking {

struct TextChunk;

// Copies of the texts that a module is given for one callback, or for the callbacks of one walk. They become
// inaccessible when that has ended: who reads one then is told of, and gets the access violation all the same.
class LentTexts {
public:
    // `name` is a constant.
    LentTexts(std::string id, const char* name);
    ~LentTexts() { End(); }
    LentTexts(const LentTexts&) = delete;
    LentTexts& operator=(const LentTexts&) = delete;

    // Null for null; the text itself when there is no memory for a copy.
    const wchar_t* Copy(const wchar_t* text) noexcept;
    // The texts copied since the last time are valid no more: they are overwritten, or inaccessible already.
    void Forget() noexcept;
    // For where destructors do not run. A second time does nothing.
    void End() noexcept;

private:
    // Null when there is no room for it in the chunk that is in use.
    const wchar_t* CopyIntoChunk(const wchar_t* text) noexcept;
    std::byte* Allocate(size_t size);

    const std::string productId;
    const char* const function;
    TextChunk* chunk = nullptr;    // the one that is being filled
    size_t forgotten = 0;          // bytes of it
    std::vector<TextChunk*> full;  // with texts that are not forgotten yet
};

}  // namespace checking
