#include "checking/LentTexts.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <cwchar>
#include <deque>
#include <new>
#include <utility>

#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/StateLock.h"
#include "checking/VectoredHandler.h"

namespace checking {

struct TextChunk {
    std::byte* memory = nullptr;
    size_t size = 0;
    size_t used = 0;
    std::atomic<bool> isSealed = false;
    std::string productId;
    const char* function = "";
};

namespace {

constexpr size_t usualSize = 65536;  // bytes of a chunk
constexpr size_t mostSealed = 32;    // chunks that stay inaccessible; with more, the oldest is used again

class Chunks {
public:
    static Chunks& OfProcess() {
        static bridge::NoDestroyAtExit<Chunks> chunks;
        return *chunks;
    }

    // Raises std::bad_alloc.
    TextChunk* Take(size_t size) {
        const Guard guard(lock);
        TextChunk* const chunk = sealed.size() >= mostSealed ? TakeOldest() : Make();
        if (!Provide(*chunk, std::max(size, usualSize))) {
            sealed.push_back(chunk);
            throw std::bad_alloc();
        }
        return chunk;
    }

    void Seal(TextChunk& chunk) noexcept {
        DWORD before = 0;
        ::VirtualProtect(chunk.memory, chunk.size, PAGE_NOACCESS, &before);
        chunk.isSealed = true;
        const Guard guard(lock);
        // Without memory for this entry the chunk stays inaccessible for good.
        bridge::Guarded([&] { sealed.push_back(&chunk); });
    }

    // Takes no lock: the exception handler calls it on a thread that may hold any lock.
    const TextChunk* FindSealed(const void* address) const noexcept {
        for (const TextChunk& chunk : all) {
            if (chunk.isSealed && address >= chunk.memory && address < chunk.memory + chunk.size) {
                return &chunk;
            }
        }
        return nullptr;
    }

private:
    TextChunk* TakeOldest() {
        TextChunk* const oldest = sealed.front();
        sealed.pop_front();
        return oldest;
    }

    // A chunk that was never used. Raises std::bad_alloc when all are in use, which are more than many threads at once
    // need.
    TextChunk* Make() {
        if (made == all.size()) {
            throw std::bad_alloc();
        }
        return &all[made++];
    }

    static bool Provide(TextChunk& chunk, size_t size) noexcept {
        chunk.isSealed = false;
        chunk.used = 0;
        DWORD before = 0;
        if (chunk.memory != nullptr && chunk.size == size) {
            return ::VirtualProtect(chunk.memory, size, PAGE_READWRITE, &before) != FALSE;
        }
        if (chunk.memory != nullptr) {
            ::VirtualFree(chunk.memory, 0, MEM_RELEASE);
        }
        chunk.size = size;
        chunk.memory = static_cast<std::byte*>(::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        return chunk.memory != nullptr;
    }

    StateLock lock;
    std::array<TextChunk, 1024> all;
    size_t made = 0;
    std::deque<TextChunk*> sealed;
};

// Reports an access violation that is a late read of a lent text. The violation itself goes on to the process's own
// handlers.
LONG NTAPI LookAtViolation(EXCEPTION_POINTERS* raised) {
    const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
    if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2) {
        const auto* const address = reinterpret_cast<const void*>(record.ExceptionInformation[1]);
        if (const TextChunk* const chunk = Chunks::OfProcess().FindSealed(address)) {
            Report(Rule::TextKept, chunk->productId, {chunk->function});
        }
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

LentTexts::LentTexts(std::string id, const char* name) : productId(std::move(id)), function(name) {
    static const VectoredHandler handler(&LookAtViolation);
}

const wchar_t* LentTexts::Copy(const wchar_t* text) noexcept {
    if (text == nullptr) {
        return nullptr;
    }
    const wchar_t* lent = CopyIntoChunk(text);
    if (lent == nullptr) {
        lent = text;
        bridge::Guarded([&] {
            const size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
            std::byte* const copy = Allocate(size);
            std::memcpy(copy, text, size);
            lent = reinterpret_cast<const wchar_t*>(copy);
        });
    }
    return lent;
}

// Copies and measures in one pass, because a walk copies three short texts for each setting.
const wchar_t* LentTexts::CopyIntoChunk(const wchar_t* text) noexcept {
    if (chunk == nullptr) {
        return nullptr;
    }
    auto* const copy = reinterpret_cast<wchar_t*>(chunk->memory + chunk->used);
    const size_t room = (chunk->size - chunk->used) / sizeof(wchar_t);
    for (size_t i = 0; i < room; ++i) {
        copy[i] = text[i];
        if (text[i] == L'\0') {
            chunk->used += (i + 1) * sizeof(wchar_t);
            return copy;
        }
    }
    return nullptr;
}

std::byte* LentTexts::Allocate(size_t size) {
    if (chunk == nullptr || chunk->size - chunk->used < size) {
        full.reserve(full.size() + 1);
        TextChunk* const next = Chunks::OfProcess().Take(size);
        next->productId = productId;
        next->function = function;
        if (chunk != nullptr) {
            full.push_back(chunk);
        }
        chunk = next;
        forgotten = 0;
    }
    return chunk->memory + std::exchange(chunk->used, chunk->used + size);
}

void LentTexts::Forget() noexcept {
    constexpr int endedByte = 0xDD;  // seen by a module that reads a text too late
    for (TextChunk* const one : full) {
        Chunks::OfProcess().Seal(*one);
    }
    full.clear();
    if (chunk != nullptr) {
        std::memset(chunk->memory + forgotten, endedByte, chunk->used - forgotten);
        forgotten = chunk->used;
    }
}

void LentTexts::End() noexcept {
    Forget();
    if (TextChunk* const last = std::exchange(chunk, nullptr)) {
        Chunks::OfProcess().Seal(*last);
    }
}

}  // namespace checking
