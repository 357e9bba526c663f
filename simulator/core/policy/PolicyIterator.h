// The three kinds of iterators over a bag of policies, which are one kind of handle.
#pragma once

#include <memory>
#include <utility>

#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/policy/Policy.h"

namespace simulator {

// The item that an iterator handed out last. The user borrows it until the next one.
template <class Handle>
class Loan {
public:
    Loan() = default;
    ~Loan() { End(); }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

    Handle* Lend(std::shared_ptr<typename HandleTraits<Handle>::Object> object) {
        End();
        handle = Handles().Lend<Handle>(std::move(object));
        return handle;
    }
    void End() {
        if (Handle* const ended = std::exchange(handle, nullptr)) {
            Handles().EndLoan(ended);
        }
    }

private:
    Handle* handle = nullptr;
};

// The base of the three. Each is used by one thread at a time, and has a Next that throws Failure with NY_ITERATOR_END
// after the last item, at every call.
class PolicyIterator {
public:
    virtual ~PolicyIterator() = default;
    PolicyIterator(const PolicyIterator&) = delete;
    PolicyIterator& operator=(const PolicyIterator&) = delete;

protected:
    PolicyIterator() = default;
};

class UriIterator final : public PolicyIterator {
public:
    explicit UriIterator(std::shared_ptr<const PolicyBag> walkedBag) : bag(std::move(walkedBag)) {}
    ny_policy_uri_t* Next();

private:
    const std::shared_ptr<const PolicyBag> bag;
    size_t next = 0;
    Loan<ny_policy_uri_t> item;
};

class SectionIterator final : public PolicyIterator {
public:
    explicit SectionIterator(PolicyPointer walkedPolicy) : policy(std::move(walkedPolicy)) {}
    const char* Next();

private:
    const PolicyPointer policy;
    size_t next = 0;
};

class SettingIterator final : public PolicyIterator {
public:
    // Walks the first section of that name. Throws Failure when the policy has none.
    SettingIterator(PolicyPointer walkedPolicy, const char* name);
    std::pair<const char*, ny_variant_t*> Next();

private:
    const PolicyPointer policy;
    const PolicySection& section;
    size_t next = 0;
    Loan<ny_variant_t> item;
};

}  // namespace simulator
