#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "FolderScan.h"
#include "SampleCollector.h"
#include "VsMsgbus.h"

// Runs the agent's on-demand scans.
class SampleTasks final : public VsKitMsgbus::INYTaskEnforcer {
public:
    explicit SampleTasks(const Speaker& moduleSpeaker) : speaker(moduleSpeaker) {}

    // Scans on the agent's thread, and reports after each file.
    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) override;
    // This module hands out no cookies.
    void FreeCookie(void* cookie) override;

    // To be called before the module is unloaded: no scan holds up the end.
    void StopAll();

private:
    using ScanPointer = std::shared_ptr<FolderScan>;

    int32_t Scan(const std::wstring& taskId, ITaskBag& bag, FolderScan& scan);
    ScanPointer Begin(const std::wstring& taskId, ITaskBag& bag);
    void End(const std::wstring& taskId, int32_t status);
    ScanPointer Find(const std::wstring& taskId);

    const Speaker& speaker;
    std::mutex mutex;
    std::map<std::wstring, ScanPointer> running;
    std::map<std::wstring, int32_t> lastStatus;
};
