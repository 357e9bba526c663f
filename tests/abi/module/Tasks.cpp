#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

namespace {

using ITaskBag = VsKitMsgbus::INYTaskEnforcer::ITaskBag;

class Visitor final : public ITaskBag::ISettingVisitor {
public:
    void BeginSettings() override { Told() << L"BeginSettings"; }
    void VisitSetting(const wchar_t* section, const wchar_t* key, const wchar_t* value) override {
        Told() << L"VisitSetting " << section << L" " << key << L" " << value;
    }
};

void TellText(const wchar_t* what, bool answer, VsKitMsgbus::lpc_buffer& text) {
    Told() << what << L" answers " << answer << L": " << static_cast<const wchar_t*>(text.data);
    text.Release();
}

class TaskEnforcer final : public VsKitMsgbus::INYTaskEnforcer {
public:
    // Every slot of the bag, and the strings that the header makes of two.
    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override {
        Told() << L"ExecuteTask " << taskId;
        Visitor visitor;
        Told() << L"CountEntries answers " << static_cast<int32_t>(bag->CountEntries());
        Told() << L"IterateSettings answers " << bag->IterateSettings(&visitor, L"Scan");
        bool boolean = false;
        const bool isBoolean = bag->GetBoolean(L"Scan", L"Deep", &boolean);
        Told() << L"GetBoolean answers " << isBoolean << L": " << boolean;
        VsKitMsgbus::lpc_buffer text;
        const bool isText = bag->GetText(L"Scan", L"Folder", &text);
        TellText(L"GetText", isText, text);
        int32_t integer = 0;
        const bool isInteger = bag->GetInteger(L"Scan", L"Depth", &integer);
        Told() << L"GetInteger answers " << isInteger << L": " << integer;
        const bool hasName = bag->GetTaskName(&text);
        TellText(L"GetTaskName", hasName, text);
        Told() << L"Text gives " << bag->Text(L"Scan", L"Folder").c_str();
        Told() << L"TaskName gives " << bag->TaskName().c_str();
        UpdateMsgbusTaskStatus(taskId, 6);
        return Succeeded;
    }
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* /*bag*/) override {
        Told() << L"UpdateTaskStatus " << taskId;
        return NothingDecided;
    }
    int32_t StopTask(const wchar_t* taskId, ITaskBag* /*bag*/) override {
        Told() << L"StopTask " << taskId;
        return Failed;
    }
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* /*bag*/) override {
        Told() << L"RemoveTask " << taskId;
        return Succeeded;
    }
    void FreeCookie(void* cookie) override { Told() << L"FreeCookie " << static_cast<const wchar_t*>(cookie); }
};

constinit TaskEnforcer taskEnforcer;

}  // namespace

bool ModuleOfferTasks(const wchar_t* productId) {
    return VsKitMsgbusSetTaskEnforcer(productId, &taskEnforcer, nullptr);
}

bool ModuleWithdrawTasks(const wchar_t* productId) {
    return VsKitMsgbusRemoveTaskEnforcer(productId);
}

void ModuleFreeTaskCookie(const wchar_t* productId, wchar_t* cookie) {
    VsKitMsgbusFreeTaskCookie(productId, cookie);
}
