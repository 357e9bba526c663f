#include "SampleUpdates.h"

#include <windows.h>

using vsmsgbus::Utf8;

vsmsgbus::UpdateHandlers SampleUpdates::Handlers() {
    return {.notify =
                [this](vsmsgbus::UpdateNotice& notice) {
                    speaker.Say(R"(hears of the update on thread {}: "{}", "{}", "{}", number {})",
                                ::GetCurrentThreadId(), Utf8(notice.second), Utf8(notice.third), Utf8(notice.fourth),
                                notice.number);
                    return 0;
                },
            .get = [this](std::wstring_view name) -> std::optional<std::wstring> {
                const auto found = information.find(name);
                return found != information.end() ? std::optional(found->second) : std::nullopt;
            },
            .set =
                [this](std::wstring_view name, std::wstring_view value) {
                    information.insert_or_assign(std::wstring(name), std::wstring(value));
                    speaker.Say("keeps {} = {}", Utf8(name), Utf8(value));
                    return true;
                }};
}
