#include "checking/Watch.h"

#include <utility>

#include "base/NoDestroyAtExit.h"
#include "checking/Findings.h"
#include "checking/Texts.h"

namespace checking {

Watch& Watch::OfProcess() {
    static bridge::NoDestroyAtExit<Watch> watch;
    return *watch;
}

void Watch::LookAtId(const char* function, const std::wstring& id) {
    constexpr size_t tooLong = 65536;
    if (id.empty() || id.size() >= tooLong) {
        Report(Rule::IdUnusable, Narrow(id.substr(0, 40)), {function, id.empty() ? "empty" : "too long"});
        return;
    }
    std::wstring first;
    {
        const Guard guard(lock);
        first = spellings.try_emplace(Folded(id), id).first->second;
    }
    if (first != id) {
        Report(Rule::IdDiffers, Narrow(id), {function, Narrow(first)});
    }
}

void Watch::LookAtAgentsId(const std::string& id) {
    if (HasProduct(id)) {
        return;
    }
    const std::wstring folded = Folded(Wide(id));
    const std::map<std::string, uint32_t> present = Products();
    if (present.count(id) != 0) {
        // The product has entered since the first look.
        return;
    }
    for (const auto& [product, mask] : present) {
        if (Folded(Wide(product)) == folded) {
            Report(Rule::IdDiffers, id, {"A call of the agent's", product});
            return;
        }
    }
}

void Watch::AddProduct(const std::string& id, uint32_t mask) {
    const Guard guard(lock);
    products.try_emplace(id, mask);
}

void Watch::RemoveProduct(const std::string& id) {
    const Guard guard(lock);
    products.erase(id);
}

bool Watch::HasProduct(const std::string& id) {
    const Guard guard(lock);
    return products.count(id) != 0;
}

bool Watch::IsAnyProductIn() noexcept {
    const Guard guard(lock);
    return !products.empty();
}

std::string Watch::AnyProduct() {
    const Guard guard(lock);
    return products.empty() ? std::string() : products.begin()->first;
}

std::map<std::string, uint32_t> Watch::Products() {
    const Guard guard(lock);
    return products;
}

bool Watch::Add(const RegistrationPointer& registration) {
    const Guard guard(lock);
    return registrations.try_emplace(Key(registration->Service().bit, registration->Id()), registration).second;
}

RegistrationPointer Watch::Remove(const ServiceText& service, const std::wstring& id) {
    const Guard guard(lock);
    const auto found = registrations.find(Key(service.bit, id));
    if (found == registrations.end()) {
        return nullptr;
    }
    RegistrationPointer removed = found->second;
    registrations.erase(found);
    return removed;
}

RegistrationPointer Watch::Find(const ServiceText& service, const std::wstring& id) {
    const Guard guard(lock);
    const auto found = registrations.find(Key(service.bit, id));
    return found != registrations.end() ? found->second : nullptr;
}

std::vector<RegistrationPointer> Watch::Registrations() {
    std::vector<RegistrationPointer> all;
    const Guard guard(lock);
    for (const auto& [key, registration] : registrations) {
        all.push_back(registration);
    }
    return all;
}

bool Watch::HasSink() {
    const Guard guard(lock);
    return !sinks.empty();
}

void Watch::AddSink(std::shared_ptr<void> sink) {
    const Guard guard(lock);
    sinks.push_back(std::move(sink));
    sinkTaker.clear();
}

std::vector<std::shared_ptr<void>> Watch::TakeSinks() {
    const Guard guard(lock);
    return std::exchange(sinks, {});
}

std::string Watch::SinkTaker() {
    const Guard guard(lock);
    return sinkTaker;
}

void Watch::SetSinkTaker(const std::string& id) {
    const Guard guard(lock);
    sinkTaker = id;
}

}  // namespace checking
