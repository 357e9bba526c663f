// Tasks: the four callbacks, the bag that a module reads a task through, and status reports.
#include <optional>

#include "VsMsgbus/TaskEnforcer.h"
#include "fuzz/FuzzedSession.h"
#include "msgbus/lpc_buffer.h"

using VsKitMsgbus::INYTaskEnforcer;
using VsKitMsgbus::lpc_buffer;

namespace {

constexpr unsigned mostRounds = 8;

// A task of the agent's, lent for one call; any accessor may be missing.
struct FuzzedTask : ny_task {
    explicit FuzzedTask(FuzzInput& input) : ny_task{&accessors} {
        accessors = {input.Rarely() ? nullptr : &GetText, input.Rarely() ? nullptr : &GetText,
                     input.Rarely() ? nullptr : &GetSetting, input.Rarely() ? nullptr : &GetSection,
                     input.Rarely() ? nullptr : &GetSettings};
        if (input.Rarely()) {
            methods = nullptr;
        }
    }

    static int32_t GetText(ny_task_t* task, const char** text) {
        return Answer([=](FuzzedAgent& agent) {
            auto& given = static_cast<FuzzedTask*>(task)->text;
            given.emplace(agent.input, agent.input.Text());
            *text = given->Get();
        });
    }
    static int32_t GetSetting(ny_task_t* /*task*/, const char* section, const char* name, ny_variant_t** out) {
        Touch(section);
        Touch(name);
        return Answer([=](FuzzedAgent& agent) { Give(agent, agent.MakeVariant(), out); });
    }
    static int32_t GetSection(ny_task_t* /*task*/, const char* section, ny_variant_t** out) {
        Touch(section);
        return Answer([=](FuzzedAgent& agent) { Give(agent, agent.MakeVariant(), out); });
    }
    static int32_t GetSettings(ny_task_t* task, ny_variant_t** out) { return GetSection(task, nullptr, out); }

    ny_task_methods_t accessors{};
    std::optional<ExactText<char>> text;
};

class ReadingVisitor final : public INYTaskEnforcer::ITaskBag::ISettingVisitor {
public:
    void BeginSettings() override {}
    void VisitSetting(const wchar_t* section, const wchar_t* key, const wchar_t* value) override {
        Touch(section);
        Touch(key);
        Touch(value);
    }
};

class FuzzedTaskEnforcer final : public INYTaskEnforcer {
public:
    explicit FuzzedTaskEnforcer(FuzzInput& fuzzInput) : input(fuzzInput) {}

    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override { return Use(taskId, *bag); }
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) override { return Use(taskId, *bag); }
    int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) override { return Use(taskId, *bag); }
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) override { return Use(taskId, *bag); }
    void FreeCookie(void* /*cookie*/) override { Throw(); }

private:
    void Throw() {
        if (input.Byte() == 0xFF) {
            throw 1;
        }
    }

    int32_t Use(const wchar_t* taskId, ITaskBag& bag) {
        Touch(taskId);
        for (unsigned rounds = input.Below(4) + 1; rounds != 0; --rounds) {
            Read(bag);
        }
        Throw();
        return static_cast<int32_t>(input.Below(8));
    }

    void Read(ITaskBag& bag) {
        const ExactText<wchar_t> section(input, input.WideText());
        const ExactText<wchar_t> name(input, input.WideText());
        ReadingVisitor visitor;
        lpc_buffer text;
        bool boolean = false;
        int32_t number = 0;
        switch (input.Below(7)) {
            case 0: bag.IterateSettings(&visitor, section.Get()); break;
            case 1: bag.CountEntries(); break;
            case 2: bag.GetBoolean(section.Get(), name.Get(), input.Rarely() ? nullptr : &boolean); break;
            case 3: bag.GetText(section.Get(), name.Get(), input.Rarely() ? nullptr : &text); break;
            case 4: bag.GetInteger(section.Get(), name.Get(), input.Rarely() ? nullptr : &number); break;
            case 5: bag.GetTaskName(&text); break;
            default: VsKitMsgbusRemoveTaskEnforcer(fuzzedProductWide);
        }
        if (text.data != nullptr) {
            Touch(text.data, (text.length + 1) * sizeof(wchar_t));
        }
        text.Release();
    }

    FuzzInput& input;
};

void CallBack(FuzzedSession& session) {
    const auto found = session.agent.Client()->tasks.find(fuzzedProduct);
    if (found == session.agent.Client()->tasks.end()) {
        return;
    }
    const auto [callbacks, userData] = found->second;
    FuzzedTask task(session.input);
    const ny_task_callback_t slots[] = {callbacks.execute, callbacks.stop, callbacks.remove, callbacks.update_status};
    const ny_task_callback_t slot = slots[session.input.Below(4)];
    const ExactText<char> product(session.input, session.input.Often() ? session.input.Text() : fuzzedProduct);
    const ExactText<char> type(session.input, session.input.Text());
    slot(session.agent.Client(), product.Get(), type.Get(), session.input.Rarely() ? nullptr : &task, userData);
}

void Run(FuzzedSession& session) {
    FuzzedTaskEnforcer enforcer(session.input);
    for (unsigned round = 0; round < mostRounds && (round == 0 || !session.input.IsOver()); ++round) {
        VsKitMsgbusRemoveTaskEnforcer(fuzzedProductWide);
        VsKitMsgbusSetTaskEnforcer(fuzzedProductWide, &enforcer, nullptr);
        if (session.agent.Client() != nullptr) {
            CallBack(session);
        }
        const ExactText<wchar_t> taskId(session.input, session.input.WideText());
        UpdateMsgbusTaskStatus(taskId.Get(), static_cast<int>(session.input.Number(1)));
        VsKitMsgbusFreeTaskCookie(taskId.Get(), nullptr);
    }
    VsKitMsgbusRemoveTaskEnforcer(fuzzedProductWide);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    RunSession(data, size, Run);
    return 0;
}
