// The floor's table of modules: found under a lock, called without it.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace bench {

template <class Module>
class FloorTable {
public:
    void Set(const wchar_t* productId, Module& module) {
        modules.emplace(productId, std::make_shared<Module*>(&module));
    }
    std::shared_ptr<Module*> Find(const std::wstring& productId) {
        const std::lock_guard guard(mutex);
        return modules.find(productId)->second;
    }

private:
    std::mutex mutex;
    std::unordered_map<std::wstring, std::shared_ptr<Module*>> modules;
};

}  // namespace bench
