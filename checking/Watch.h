#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "checking/Registration.h"
#include "checking/StateLock.h"

namespace checking {

using RegistrationPointer = std::shared_ptr<Registration>;

// The state of the process's modules: the products that have entered, and the interfaces that are registered.
class Watch {
public:
    Watch() = default;
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    static Watch& OfProcess();
    StateLock& Lock() noexcept { return lock; }

    // Reports an id of which another spelling is known, or that no agent can use. `function` is given it.
    void LookAtId(const char* function, const std::wstring& id);

    // Reports an id that the agent calls a product by, when no product of it is in but one of another spelling.
    void LookAtAgentsId(const std::string& id);

    // A product that is in keeps its mask.
    void AddProduct(const std::string& id, uint32_t mask);
    void RemoveProduct(const std::string& id);
    bool HasProduct(const std::string& id);
    bool IsAnyProductIn() noexcept;
    // The id of any product that is in; empty when none is.
    std::string AnyProduct();
    // The products that are in, each with its mask.
    std::map<std::string, uint32_t> Products();

    // False, and nothing changes, when the service has a registration of that id.
    bool Add(const RegistrationPointer& registration);
    RegistrationPointer Remove(const ServiceText& service, const std::wstring& id);
    RegistrationPointer Find(const ServiceText& service, const std::wstring& id);
    std::vector<RegistrationPointer> Registrations();

    // The sinks that were offered since the last Exit: the first one serves the process.
    bool HasSink();
    void AddSink(std::shared_ptr<void> sink);
    std::vector<std::shared_ptr<void>> TakeSinks();
    // The product whose Exit took the sinks away; empty once another sink was offered.
    std::string SinkTaker();
    void SetSinkTaker(const std::string& id);

private:
    using Key = std::pair<uint32_t, std::wstring>;  // the service's bit and the product's id

    StateLock lock;
    std::map<std::string, uint32_t> products GUARDED_BY(lock);
    std::map<Key, RegistrationPointer> registrations GUARDED_BY(lock);
    std::map<std::wstring, std::wstring> spellings GUARDED_BY(lock);  // the first one of each id, by its folded form
    std::vector<std::shared_ptr<void>> sinks GUARDED_BY(lock);
    std::string sinkTaker GUARDED_BY(lock);
};

}  // namespace checking
