#include "checking/Buffers.h"

#include <algorithm>
#include <deque>
#include <map>

#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/Scope.h"
#include "checking/StateLock.h"

namespace checking {

using VsKitMsgbus::lpc_buffer;

namespace {

struct Filled {
    std::string function;
    std::string productId;
    bool isTold = false;  // its lack of a release was reported
};

class Buffers {
public:
    static Buffers& OfProcess() {
        static bridge::NoDestroyAtExit<Buffers> buffers;
        return *buffers;
    }

    void Add(const void* text, Filled filled) {
        const Guard guard(lock);
        released.erase(std::remove(released.begin(), released.end(), text), released.end());
        texts.insert_or_assign(text, std::move(filled));
    }

    bool Has(const void* text) {
        const Guard guard(lock);
        return texts.count(text) != 0;
    }

    bool Remove(const void* text) {
        constexpr size_t mostRemembered = 256;  // texts
        const Guard guard(lock);
        if (texts.erase(text) == 0) {
            return false;
        }
        bridge::Guarded([&] { released.push_back(text); });
        if (released.size() > mostRemembered) {
            released.pop_front();
        }
        return true;
    }

    bool WasReleased(const void* text) {
        const Guard guard(lock);
        return std::find(released.begin(), released.end(), text) != released.end();
    }

    // The number of texts of each product and function that were not reported yet. From now on they count as reported.
    std::map<std::pair<std::string, std::string>, size_t> TellAll() {
        std::map<std::pair<std::string, std::string>, size_t> counts;
        const Guard guard(lock);
        for (auto& [text, filled] : texts) {
            if (!std::exchange(filled.isTold, true)) {
                ++counts[{filled.productId, filled.function}];
            }
        }
        return counts;
    }

private:
    StateLock lock;
    std::map<const void*, Filled> texts GUARDED_BY(lock);
    std::deque<const void*> released GUARDED_BY(lock);  // the last texts
};

std::string ProductOfScope() {
    const Scope* const scope = Scope::Innermost();
    return scope != nullptr ? scope->ProductId() : std::string();
}

bool HoldsText(const lpc_buffer& buffer) noexcept {
    return buffer.kind != lpc_buffer::Empty && buffer.data != nullptr;
}

}  // namespace

void LookAtBuffer(const char* function, lpc_buffer* buffer) noexcept {
    bridge::Guarded([&] {
        if (buffer == nullptr || !HoldsText(*buffer)) {
            return;
        }
        if (Buffers::OfProcess().Has(buffer->data)) {
            Buffers::OfProcess().Remove(buffer->data);
            return;
        }
        if (HasForgotten()) {
            return;
        }
        Report(Rule::BufferNotEmpty, ProductOfScope(), {function});
        *buffer = lpc_buffer{};
    });
}

void NoteFilled(const char* function, const lpc_buffer* buffer) noexcept {
    Noted([&] {
        if (buffer != nullptr && HoldsText(*buffer)) {
            Buffers::OfProcess().Add(buffer->data, {function, ProductOfScope()});
        }
    });
}

bool MayRelease(const lpc_buffer& buffer) noexcept {
    if (!HoldsText(buffer) || Buffers::OfProcess().Remove(buffer.data) || HasForgotten()) {
        return true;
    }
    bridge::Guarded([&] {
        Report(Buffers::OfProcess().WasReleased(buffer.data) ? Rule::BufferReleasedTwice : Rule::BufferForeign,
               ProductOfScope());
    });
    return false;
}

void ReportNotReleased() noexcept {
    bridge::Guarded([] {
        for (const auto& [filled, count] : Buffers::OfProcess().TellAll()) {
            Report(Rule::BufferNotReleased, filled.first, {filled.second, std::to_string(count)});
        }
    });
}

}  // namespace checking
