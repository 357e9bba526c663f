#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "SampleCollector.h"
#include "VsMsgbus.h"

// Hears of the agent's updates, and keeps what the agent sets as the product's information, to be asked for again.
class SampleUpdates final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    explicit SampleUpdates(const Speaker& moduleSpeaker);

    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third, uint32_t* number) override;
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                          ISet* set) override;
    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override;

private:
    const Speaker& speaker;
    std::mutex mutex;
    std::map<std::wstring, std::wstring, std::less<>> information;
};
