#include "SampleTasks.h"

#include <fmt/format.h>
#include <windows.h>

#include <algorithm>

#include "Text.h"

namespace {

using ITaskBag = VsKitMsgbus::INYTaskEnforcer::ITaskBag;
using VsKitMsgbus::lpc_buffer;

// The text of a buffer that the bridge filled, which is given back.
std::wstring Take(lpc_buffer& buffer) {
    std::wstring text;
    if (buffer.kind == lpc_buffer::WideText) {
        text.assign(static_cast<const wchar_t*>(buffer.data), buffer.length);
    }
    buffer.Release();
    return text;
}

std::wstring TextOf(ITaskBag& bag, const wchar_t* name) {
    lpc_buffer text;
    return bag.GetText(L"Scan", name, &text) ? Take(text) : std::wstring();
}

int32_t NumberOf(ITaskBag& bag, const wchar_t* name) {
    int32_t number = 0;
    bag.GetInteger(L"Scan", name, &number);
    return number;
}

ScanOrder ReadOrder(ITaskBag& bag) {
    return {TextOf(bag, L"Folder"), TextOf(bag, L"Patterns"), Utf8FromWide(TextOf(bag, L"Signature")),
            NumberOf(bag, L"MaximumFiles"), NumberOf(bag, L"FilesPerSecond")};
}

// Every setting of a section, in one line.
class SettingLine final : public ITaskBag::ISettingVisitor {
public:
    void BeginSettings() override {}
    void VisitSetting(const wchar_t* /*section*/, const wchar_t* key, const wchar_t* value) override {
        line += (line.empty() ? "" : ", ") + Utf8FromWide(key) + " = " + Utf8FromWide(value);
    }
    std::string line;
};

}  // namespace

int32_t SampleTasks::ExecuteTask(const wchar_t* taskId, ITaskBag* bag) {
    lpc_buffer name;
    bag->GetTaskName(&name);
    SettingLine settings;
    bag->IterateSettings(&settings, L"Scan");
    speaker.Say("module",
                fmt::format("runs \"{}\" on thread {}; it has {} sections of settings; Scan: {}",
                            Utf8FromWide(Take(name)), ::GetCurrentThreadId(), bag->CountEntries(), settings.line));
    const ScanPointer scan = Begin(taskId, *bag);
    const int32_t status = Scan(taskId, *bag, *scan);
    End(taskId, status);
    return status;
}

int32_t SampleTasks::Scan(const std::wstring& taskId, ITaskBag& bag, FolderScan& scan) {
    // The agent is told with 6 that a task is getting on.
    constexpr int gettingOn = 6;
    bool isProgressWanted = false;
    bag.GetBoolean(L"Report", L"Progress", &isProgressWanted);
    const ScanResult result = scan.Run([&](const ScanResult& /*soFar*/) {
        if (isProgressWanted) {
            UpdateMsgbusTaskStatus(taskId.c_str(), gettingOn);
        }
    });
    constexpr uint64_t kibibyte = 1024;
    speaker.Say("module", fmt::format("{} after {} files, {} KiB; {} of them hold the signature",
                                      result.isComplete ? "is done" : "was stopped", result.files,
                                      result.bytes / kibibyte, result.findings));
    return result.isComplete && result.files != 0 ? Succeeded : Failed;
}

int32_t SampleTasks::UpdateTaskStatus(const wchar_t* taskId, ITaskBag* /*bag*/) {
    const std::lock_guard guard(mutex);
    if (running.contains(taskId)) {
        return NothingDecided;
    }
    const auto found = lastStatus.find(taskId);
    return found != lastStatus.end() ? found->second : Failed;
}

int32_t SampleTasks::StopTask(const wchar_t* taskId, ITaskBag* /*bag*/) {
    const ScanPointer scan = Find(taskId);
    if (scan == nullptr) {
        return Failed;
    }
    speaker.Say("module", fmt::format("stops the scan, on thread {}", ::GetCurrentThreadId()));
    scan->Stop();
    return Succeeded;
}

int32_t SampleTasks::RemoveTask(const wchar_t* taskId, ITaskBag* /*bag*/) {
    const std::lock_guard guard(mutex);
    lastStatus.erase(taskId);
    return Succeeded;
}

void SampleTasks::FreeCookie(void* /*cookie*/) {}

void SampleTasks::StopAll() {
    const std::lock_guard guard(mutex);
    for (const auto& [taskId, scan] : running) {
        scan->Stop();
    }
}

SampleTasks::ScanPointer SampleTasks::Begin(const std::wstring& taskId, ITaskBag& bag) {
    auto scan = std::make_shared<FolderScan>(ReadOrder(bag));
    const std::lock_guard guard(mutex);
    running.insert_or_assign(taskId, scan);
    return scan;
}

void SampleTasks::End(const std::wstring& taskId, int32_t status) {
    const std::lock_guard guard(mutex);
    running.erase(taskId);
    lastStatus.insert_or_assign(taskId, status);
}

SampleTasks::ScanPointer SampleTasks::Find(const std::wstring& taskId) {
    const std::lock_guard guard(mutex);
    const auto found = running.find(taskId);
    return found != running.end() ? found->second : nullptr;
}
