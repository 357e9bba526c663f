#pragma once

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

// The order for an on-demand scan.
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

// Scans the files of one folder. Returns when all of them were read, or soon after the token was triggered. `onFile`
// comes after each file. Files and folders that cannot be read are left out.
ScanResult ScanFolder(const ScanOrder& order, const std::stop_token& stop, const std::function<void()>& onFile);
