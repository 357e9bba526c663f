#pragma once

#include <cstddef>

#include "VsMsgbus/EnforcePolicy.h"

// A module's callbacks that want everything and count the settings. They allocate nothing.
class SettingCounter final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
    bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override { return true; }
    bool OnSection(const wchar_t*, const wchar_t*) override { return true; }
    bool OnSetting(const wchar_t*, const wchar_t*, const wchar_t*) override {
        ++settings;
        return true;
    }

    size_t settings = 0;
};
