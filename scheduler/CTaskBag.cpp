#include "scheduler/CTaskBag.h"

#include "base/Boundary.h"
#include "msgbus/lpc_buffer.h"
#include "scheduler/AgentTask.h"
#include "scheduler/SettingText.h"
#include "values/AgentException.h"
#include "values/AgentTables.h"
#include "values/AgentTexts.h"
#include "values/UnloggedText.h"

namespace bridge {

using VsKit::CUniStream;
using VsKitMsgbus::lpc_buffer;

namespace {

bool IsGiven(const wchar_t* section) noexcept {
    return section != nullptr && *section != L'\0';
}

// The body's answer; `whenFailed` when the agent fails it, with the text that `compose` begins and the code, or when
// anything else does.
template <class Answer, class Body, class Compose>
Answer RunOrDropCode(Answer whenFailed, Body&& body, Compose&& compose) noexcept {
    try {
        return body();
    } catch (const AgentException& failure) {
        ComposeUnlogged([&](CUniStream& text) {
            compose(text);
            text << L", exception " << failure.Code();
        });
    } catch (...) {
    }
    return whenFailed;
}

}  // namespace

size_t CTaskBag::CountEntries() noexcept {
    return Guarded<size_t>(0, [&] {
        const AgentTables tables(libraries);
        const VariantOwner settings = TaskSettings(task, libraries);
        const TableOwner table = tables.FromVariant(settings.Get());
        const ArrayOwner keys = tables.Keys(table.Get());
        return tables.Size(keys.Get());
    });
}

int32_t CTaskBag::IterateSettings(ISettingVisitor* visitor, const wchar_t* section) noexcept {
    if (visitor == nullptr || !IsGiven(section)) {
        return 0;
    }
    return RunOrDropCode<int32_t>(
        0,
        [&] {
            ShowSettings(visitor, section);
            return 1;
        },
        [](CUniStream& text) { text << L"Failed to iterate the task bag "; });
}

void CTaskBag::ShowSettings(ModuleInterface<ISettingVisitor> visitor, const wchar_t* section) const {
    const TextFunctions texts = LookUpTextFunctions(libraries);
    const AgentTables tables(libraries);
    const VariantOwner settings = TaskSection(task, NarrowFromWide(section, libraries), libraries);
    const TableOwner table = tables.FromVariant(settings.Get());
    const ArrayOwner keys = tables.Keys(table.Get());
    const size_t size = tables.Size(keys.Get());
    for (size_t index = 0; index < size; ++index) {
        const std::wstring key = WideFromVariant(texts, tables.Element(keys.Get(), index).Get());
        const std::wstring value = WideFromVariant(texts, tables.Value(table.Get(), key.c_str()).Get());
        visitor.Call(&ISettingVisitor::VisitSetting, section, key.c_str(), value.c_str());
        // A module may leave the bridge there: the task is then of a client that is gone.
        texts.RequireCurrent();
    }
}

template <class Read>
bool CTaskBag::ReadSetting(const wchar_t* section, const wchar_t* name, Read&& read) const noexcept {
    if (!IsGiven(section) || name == nullptr) {
        return false;
    }
    return RunOrDropCode(
        false,
        [&] {
            return read(
                TaskSetting(task, NarrowFromWide(section, libraries), NarrowFromWide(name, libraries), libraries)
                    .Get());
        },
        [&](CUniStream& text) { text << L"Failed to get the value for setting name " << name; });
}

bool CTaskBag::GetBoolean(const wchar_t* section, const wchar_t* name, bool* value) noexcept {
    if (value == nullptr) {
        return false;
    }
    *value = false;
    *value = ReadSetting(
        section, name, [this](ny_variant_t* setting) { return IsBooleanText(NarrowFromVariant(setting, libraries)); });
    return *value;
}

bool CTaskBag::GetText(const wchar_t* section, const wchar_t* name, lpc_buffer* value) noexcept {
    if (value == nullptr) {
        return false;
    }
    value->Release();
    return ReadSetting(section, name,
                       [&](ny_variant_t* setting) { return StoreText(*value, WideFromVariant(setting, libraries)); });
}

bool CTaskBag::GetInteger(const wchar_t* section, const wchar_t* name, int32_t* value) noexcept {
    if (value == nullptr) {
        return false;
    }
    *value = 0;
    return ReadSetting(section, name, [&](ny_variant_t* setting) {
        *value = NumberOfText(NarrowFromVariant(setting, libraries));
        return true;
    });
}

bool CTaskBag::GetTaskName(lpc_buffer* name) noexcept {
    if (name == nullptr) {
        return false;
    }
    name->Release();
    return RunOrDropCode(
        false, [&] { return StoreText(*name, WideFromNarrow(bridge::TaskName(task), libraries)); },
        [](CUniStream& text) { text << L"Failed to get the task name "; });
}

}  // namespace bridge
