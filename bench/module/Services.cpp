// A task, an update notice and an information read, from the agent's call or the module's to its answer.
#include <cstdlib>
#include <cstring>

#include "bench/floor/FloorAgent.h"
#include "bench/floor/FloorTable.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"

namespace bench {

namespace {

class Working final : public VsKitMsgbus::INYTaskEnforcer {
public:
    Working() { VsKitMsgbusSetTaskEnforcer(bareWideProductId, this, nullptr); }
    ~Working() { VsKitMsgbusRemoveTaskEnforcer(bareWideProductId); }
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

    int32_t ExecuteTask(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override { return Succeeded; }
    int32_t UpdateTaskStatus(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override { return Succeeded; }
    int32_t StopTask(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override { return Succeeded; }
    int32_t RemoveTask(const wchar_t* /*taskId*/, ITaskBag* /*bag*/) override { return Succeeded; }
    void FreeCookie(void* /*cookie*/) override {}
};

class Updating final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    Updating() { VsKitMsgbusSetUpdateNotify(bareWideProductId, this, nullptr); }
    ~Updating() { VsKitMsgbusRemoveUpdateNotify(bareWideProductId); }
    Updating(const Updating&) = delete;
    Updating& operator=(const Updating&) = delete;

    int32_t UpdateNotify(const wchar_t* /*second*/, const wchar_t* /*fourth*/, const wchar_t* /*third*/,
                         uint32_t* number) override {
        return static_cast<int32_t>(*number);
    }
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar /*second*/, VsKit::cp_wchar /*key*/,
                                                          ISet* /*set*/) override {
        return VsKitMsgbus::ProductReturnNotAvailable;
    }
    int32_t SetProductInfo(const wchar_t* /*second*/, const wchar_t* /*key*/, const wchar_t* /*value*/) override {
        return 0;
    }
};

int32_t GiveId(ny_task_t* /*task*/, const char** id) {
    *id = "1234";
    return NY_OK;
}

const ny_task_methods_t taskMethods{GiveId, nullptr, nullptr, nullptr, nullptr};
ny_task_t task{&taskMethods};

template <class Body>
Contender Way(const char* name, Body body) {
    return {name, [=](size_t count) {
                return SecondsOf([&] {
                    for (size_t i = 0; i < count; ++i) {
                        body();
                    }
                });
            }};
}

void Require(bool isRight) {
    if (!isRight) {
        throw std::runtime_error("a wrong answer");
    }
}

constexpr double servicesAim = 1.5;

void MeasureTask(Session& session) {
    Working module;
    FloorTable<Working> modules;
    modules.Set(bareWideProductId, module);
    const auto registered = TheBareAgent()->tasks;
    session.Race({"services",
                  "a task, executed and reported",
                  0,
                  1,
                  {Way("ours",
                       [=] {
                           Require(registered.callback->execute(nullptr, bareProductId, "", &task,
                                                                registered.userData) == NY_OK);
                       }),
                   Way("floor",
                       [&] {
                           const std::wstring id = FloorWiden(bareProductId);
                           const char* taskId = nullptr;
                           task.methods->get_id(&task, &taskId);
                           const std::wstring wideTaskId(taskId, taskId + std::strlen(taskId));
                           const auto found = modules.Find(id);
                           const int32_t status = (*found)->ExecuteTask(wideTaskId.c_str(), nullptr);
                           FloorReportTask(bareClient, &task, status);
                       })},
                  servicesAim});
}

void MeasureUpdate(Session& session) {
    Updating module;
    FloorTable<Updating> modules;
    modules.Set(bareWideProductId, module);
    const auto registered = TheBareAgent()->updates;
    session.Race(
        {"services",
         "an update notice",
         0,
         1,
         {Way("ours",
              [=] {
                  int32_t result = 0;
                  Require(registered.callback->update_notify(nullptr, bareProductId, "second text", "third text", 7,
                                                             "fourth text", &result, registered.userData) == NY_OK);
                  Require(result == 7);
              }),
          Way("floor",
              [&] {
                  const auto found = modules.Find(FloorWiden(bareProductId));
                  uint32_t number = 7;
                  Require((*found)->UpdateNotify(FloorWiden("second text").c_str(), FloorWiden("fourth text").c_str(),
                                                 FloorWiden("third text").c_str(), &number) == 7);
              })},
         servicesAim});
}

void MeasureInformation(Session& session) {
    session.Race({"services",
                  "an information read",
                  0,
                  1,
                  {Way("ours",
                       [] {
                           VsKitMsgbus::lpc_buffer text{};
                           Require(VsKitMsgbusGetInformation(VsMsgbusInformationGUID, &text) == 1);
                           text.Release();
                       }),
                   Way("floor", [] { std::free(FloorInformation(bareClient, "GUID")); })},
                  servicesAim});
}

void MeasureEncryption(Session& session) {
    static constexpr uint32_t size = 1024;
    static constexpr unsigned char data[size] = {};
    session.Race({"services",
                  "encrypting 1 KB",
                  0,
                  1,
                  {Way("ours",
                       [] {
                           unsigned char out[size];
                           uint32_t outSize = 0;
                           Require(VsKitMsgbusEncryptData(data, size, out, &outSize, 0) == 0 && outSize == size);
                       }),
                   Way("floor",
                       [] {
                           unsigned char out[size];
                           Require(FloorEncrypt(bareClient, data, size, out) == size);
                       })},
                  servicesAim});
}

}  // namespace

void MeasureServices(Session& session) {
    const Stage stage;
    const Entered entered(VsMsgbusServiceTask | VsMsgbusServiceUpdate);
    OpenFloorAgent(stage.Folder());
    TheBareAgent()->textLength = 36;
    MeasureTask(session);
    MeasureUpdate(session);
    MeasureInformation(session);
    MeasureEncryption(session);
    TheBareAgent()->textLength = 12;
}

}  // namespace bench
