#include "SampleTasks.h"

#include <windows.h>

#include <string>

#include "FolderScan.h"

using vsmsgbus::Utf8;

namespace {

// Every setting of a section, in one line.
std::string LineOf(vsmsgbus::Task& task, const char* section) {
    std::string line;
    task.Walk(section, [&](std::wstring_view name, std::wstring_view value) {
        line += (line.empty() ? "" : ", ") + Utf8(name) + " = " + Utf8(value);
    });
    return line;
}

ScanOrder ReadOrder(vsmsgbus::Task& task) {
    return {.folder = task.Get<std::wstring>("Scan", "Folder").ValueOr(L"."),
            .patterns = task.Get<std::wstring>("Scan", "Patterns").ValueOr(L"*"),
            .signature = task.Get<std::string>("Scan", "Signature").ValueOr(""),
            .maximumFiles = task.Get<int>("Scan", "MaximumFiles").ValueOr(0),
            .filesPerSecond = task.Get<int>("Scan", "FilesPerSecond").ValueOr(0)};
}

}  // namespace

vsmsgbus::TaskResult RunScan(vsmsgbus::Task& task, const Speaker& speaker) {
    speaker.Say("runs \"{}\" on thread {}; it has {} sections of settings; Scan: {}", Utf8(task.TaskName()),
                ::GetCurrentThreadId(), task.CountSections(), LineOf(task, "Scan"));
    const bool isProgressWanted = task.Get<bool>("Report", "Progress").ValueOr(false);
    const ScanResult result = ScanFolder(ReadOrder(task), task.StopToken(), [&] {
        if (isProgressWanted) {
            task.Progress();
        }
    });
    constexpr uint64_t kibibyte = 1024;
    speaker.Say("{} after {} files, {} KiB; {} of them hold the signature",
                result.isComplete ? "is done" : "was stopped", result.files, result.bytes / kibibyte, result.findings);
    return result.isComplete && result.files != 0 ? vsmsgbus::TaskResult::Done : vsmsgbus::TaskResult::Failed;
}
