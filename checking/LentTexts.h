#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace checking {

struct TextChunk;

// Copies of the texts that a module is given for one callback, or for the callbacks of one walk. They become
// inaccessible when that has ended: a thread that reads one then is reported, and gets the access violation all the
// same.
class LentTexts {
public:
    // `id` is the product's; `name` is that of the callback and lives as long as the process.
    LentTexts(std::string id, const char* name);
    ~LentTexts() { End(); }
    LentTexts(const LentTexts&) = delete;
    LentTexts& operator=(const LentTexts&) = delete;

    // Null for null; the text itself when there is no memory for a copy.
    const wchar_t* Copy(const wchar_t* text) noexcept;
    // Ends the texts copied since the last call: they are overwritten, or made inaccessible.
    void Forget() noexcept;
    // Makes all texts inaccessible. For callers whose destructors do not run; a second call does nothing.
    void End() noexcept;

private:
    // Null when the chunk in use has no room for the text.
    const wchar_t* CopyIntoChunk(const wchar_t* text) noexcept;
    std::byte* Allocate(size_t size);

    const std::string productId;
    const char* const function;
    TextChunk* chunk = nullptr;    // the chunk that is being filled
    size_t forgotten = 0;          // bytes of `chunk` whose texts were ended
    std::vector<TextChunk*> full;  // the chunks filled since the last Forget
};

}  // namespace checking
