/// @file
/// The plain interfaces, implemented by handlers. Used by Product.hpp alone.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/TaskEnforcer.h"
#include "VsMsgbus/UpdateNotify.h"
#include "VsMsgbus/cpp/Handlers.hpp"
#include "VsMsgbus/cpp/Log.hpp"
#include "VsMsgbus/cpp/TakenId.hpp"
#include "VsMsgbus/cpp/TaskRunner.hpp"

namespace vsmsgbus::detail {

/// The result of an update that the agent gets for a product without a callback.
inline constexpr int32_t noUpdateHandler = 2;

/// The parts that all interfaces of a product share. A callback that runs keeps them alive.
struct ProductParts;

/// While it lives, a callback of the product runs, and what the callback uses stays.
class Inside {
public:
    explicit Inside(ProductParts& parts);
    ~Inside();
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

private:
    const std::shared_ptr<ProductParts> kept;
};

class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    explicit Collector(ProductParts& productParts) : parts(productParts) {}
    void CollectProperties(bool full, ISet* set) override;
    int32_t GetLogLevel() override { return 0; }

private:
    ProductParts& parts;
};

class Enforcer final : public VsKitMsgbus::INYEnforcePolicy {
public:
    explicit Enforcer(ProductParts& productParts) : parts(productParts) {}
    int32_t GetLogLevel() override { return 0; }
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override;

private:
    ProductParts& parts;
};

#if defined(__cpp_lib_jthread)
class TaskEnforcer final : public VsKitMsgbus::INYTaskEnforcer {
public:
    explicit TaskEnforcer(ProductParts& productParts) : parts(productParts) {}
    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) override;
    void FreeCookie(void* /*cookie*/) override {}

private:
    ProductParts& parts;
};
#endif

class UpdateCallback final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    explicit UpdateCallback(ProductParts& productParts) : parts(productParts) {}
    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third, uint32_t* number) override;
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                          ISet* set) override;
    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override;

private:
    ProductParts& parts;
};

struct ProductParts : std::enable_shared_from_this<ProductParts> {
    ProductParts(std::wstring productId, Handlers productHandlers)
        : id(std::move(productId)),
          handlers(std::move(productHandlers)),
          log(std::make_shared<Log>(std::move(handlers.log))) {
#if defined(__cpp_lib_jthread)
        tasks = std::make_shared<TaskRunner>(std::move(handlers.tasks), log);
#endif
    }

    const std::wstring id;
    TakenId takenId{id};
    Handlers handlers;
    const std::shared_ptr<Log> log;
    // Callbacks that run.
    std::atomic<int> inside = 0;
    Collector collector{*this};
    Enforcer enforcer{*this};
    UpdateCallback updates{*this};
#if defined(__cpp_lib_jthread)
    TaskEnforcer taskEnforcer{*this};
    std::shared_ptr<TaskRunner> tasks;
#endif
};

inline Inside::Inside(ProductParts& parts) : kept(parts.shared_from_this()) {
    ++kept->inside;
}

inline Inside::~Inside() {
    --kept->inside;
}

inline void Collector::CollectProperties(bool /*full*/, ISet* set) {
    const Inside inside(parts);
    const bool isDone = RunHandler(*parts.log, "properties", [&] {
        Properties properties(*set);
        parts.handlers.properties(properties);
    });
    if (!isDone) {
        throw HandlerFailure::Told;
    }
}

inline void Enforcer::EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) {
    const Inside inside(parts);
    const bool isDone = RunHandler(*parts.log, "policies", [&] {
        Policies policies(productId, *bag, *parts.log);
        parts.handlers.policies(policies);
    });
    if (!isDone) {
        throw HandlerFailure::Told;
    }
}

#if defined(__cpp_lib_jthread)
inline int32_t TaskEnforcer::ExecuteTask(const wchar_t* taskId, ITaskBag* bag) {
    const Inside inside(parts);
    return parts.tasks->Execute(taskId, *bag);
}

inline int32_t TaskEnforcer::UpdateTaskStatus(const wchar_t* taskId, ITaskBag* /*bag*/) {
    const Inside inside(parts);
    return parts.tasks->Status(taskId);
}

inline int32_t TaskEnforcer::StopTask(const wchar_t* taskId, ITaskBag* /*bag*/) {
    const Inside inside(parts);
    parts.tasks->Stop(taskId);
    return Succeeded;
}

inline int32_t TaskEnforcer::RemoveTask(const wchar_t* taskId, ITaskBag* /*bag*/) {
    const Inside inside(parts);
    parts.tasks->Forget(taskId);
    return Succeeded;
}
#endif

inline int32_t UpdateCallback::UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                                            uint32_t* number) {
    const Inside inside(parts);
    int32_t answer = noUpdateHandler;
    RunHandler(*parts.log, "updates", [&] {
        if (parts.handlers.updates.notify) {
            UpdateNotice notice{second, third, fourth, *number};
            answer = parts.handlers.updates.notify(notice);
        }
    });
    return answer;
}

inline VsKitMsgbus::etag_PRODUCT_RETURN_VALUE UpdateCallback::GetProductInfo(VsKit::cp_wchar /*second*/,
                                                                             VsKit::cp_wchar key, ISet* set) {
    const Inside inside(parts);
    bool isThere = false;
    RunHandler(*parts.log, "updates", [&] {
        if (parts.handlers.updates.get) {
            if (const auto value = parts.handlers.updates.get(key)) {
                isThere = set->Set(value->c_str());
            }
        }
    });
    return isThere ? VsKitMsgbus::etag_PRODUCT_RETURN_VALUE{} : VsKitMsgbus::ProductReturnNotAvailable;
}

inline int32_t UpdateCallback::SetProductInfo(const wchar_t* /*second*/, const wchar_t* key, const wchar_t* value) {
    const Inside inside(parts);
    bool isTaken = false;
    RunHandler(*parts.log, "updates", [&] {
        if (parts.handlers.updates.set) {
            isTaken = parts.handlers.updates.set(key, value);
        }
    });
    return isTaken ? 0 : VsKitMsgbus::ProductReturnNotAvailable;
}

}  // namespace vsmsgbus::detail
