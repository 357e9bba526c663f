#include "SampleUpdates.h"

#include <fmt/format.h>
#include <windows.h>

#include "Text.h"

namespace {

constexpr int32_t success = 0;

}  // namespace

SampleUpdates::SampleUpdates(const Speaker& moduleSpeaker)
    : speaker(moduleSpeaker), information{{L"Version", L"1.0.0"}, {L"Language", L"0409"}} {}

int32_t SampleUpdates::UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                                    uint32_t* number) {
    speaker.Say("module",
                fmt::format(R"(hears of the update on thread {}: "{}", "{}", "{}", number {})", ::GetCurrentThreadId(),
                            Utf8FromWide(second), Utf8FromWide(third), Utf8FromWide(fourth), *number));
    return success;
}

VsKitMsgbus::etag_PRODUCT_RETURN_VALUE SampleUpdates::GetProductInfo(VsKit::cp_wchar /*second*/, VsKit::cp_wchar key,
                                                                     ISet* set) {
    const std::lock_guard guard(mutex);
    const auto found = information.find(key);
    if (found == information.end()) {
        return VsKitMsgbus::ProductReturnNotAvailable;
    }
    set->Set(found->second.c_str());
    return static_cast<VsKitMsgbus::etag_PRODUCT_RETURN_VALUE>(success);
}

int32_t SampleUpdates::SetProductInfo(const wchar_t* /*second*/, const wchar_t* key, const wchar_t* value) {
    const std::lock_guard guard(mutex);
    information.insert_or_assign(key, value);
    speaker.Say("module", fmt::format("keeps {} = {}", Utf8FromWide(key), Utf8FromWide(value)));
    return success;
}
