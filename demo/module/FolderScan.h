#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

// What an on-demand scan is told to do.
struct ScanOrder {
    std::wstring folder;    // one that is not absolute is looked for where the program stands
    std::wstring patterns;  // of file names, as "*.dll;*.exe"
    std::string signature;  // the bytes that are looked for
    int32_t maximumFiles = 0;
    int32_t filesPerSecond = 0;  // 0: as fast as it goes
};

struct ScanResult {
    int32_t files = 0;
    uint64_t bytes = 0;
    int32_t findings = 0;  // files that hold the signature
    bool isComplete = false;
};

// A scan of the files of one folder; one thread runs it, another may stop it.
class FolderScan {
public:
    explicit FolderScan(ScanOrder scanOrder) : order(std::move(scanOrder)) {}

    // Returns when all files were read, or soon after Stop. `onFile(result so far)` comes after each file. Files and
    // folders that cannot be read are left out.
    ScanResult Run(const std::function<void(const ScanResult&)>& onFile);
    void Stop();

private:
    // False when the scan is to stop.
    bool WaitForNextFile();

    const ScanOrder order;
    std::mutex mutex;
    std::condition_variable stopped;
    bool isStopped = false;
};
