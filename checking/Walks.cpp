#include "checking/Walks.h"

#include <map>
#include <utility>

#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/StateLock.h"

namespace checking {

namespace {

using CallbackAnswers = std::map<std::string, bool>;  // whether each has answered true

struct WalkTable {
    StateLock lock;
    std::map<std::string, CallbackAnswers> products;
};

WalkTable& Walks() {
    static bridge::NoDestroyAtExit<WalkTable> table;
    return *table;
}

CallbackAnswers TakeAnswers(const std::string& productId) {
    const Guard guard(Walks().lock);
    const auto found = Walks().products.find(productId);
    if (found == Walks().products.end()) {
        return {};
    }
    CallbackAnswers taken = std::move(found->second);
    Walks().products.erase(found);
    return taken;
}

}  // namespace

void NoteWalk(const std::string& productId, const char* callback, bool hasGoneOn) {
    const Guard guard(Walks().lock);
    Walks().products[productId][callback] |= hasGoneOn;
}

void ReportRefusedWalks(const std::string& productId) {
    for (const auto& [callback, hasGoneOn] : TakeAnswers(productId)) {
        if (!hasGoneOn) {
            Report(Rule::WalkRefused, productId, {callback});
        }
    }
}

}  // namespace checking
