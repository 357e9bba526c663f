#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "VsMsgbus/EnforcePolicy.h"
#include "support/LineLog.h"

using Lines = std::vector<std::string>;

// A module's callbacks that note what they are told, with null as "(null)", and go on unless the test says otherwise.
class NotingCallbacks final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                     const wchar_t* name) override {
        return Note("container " + Text(featureId) + "|" + Text(categoryId) + "|" + Text(typeId) + "|" + Text(name));
    }
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) override {
        return Note("settings " + Text(name) + "|" + Text(intParam) + "|" + Text(strParam));
    }
    bool OnSection(const wchar_t* name, const wchar_t* reserved) override {
        EXPECT_EQ(reserved, nullptr);
        return Note("section " + Text(name));
    }
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) override {
        return Note("setting " + Text(section) + ": " + Text(name) + "=" + Text(value));
    }

    std::function<bool(const std::string& line)> answer;
    Lines lines;

private:
    static std::string Text(const wchar_t* text) { return text != nullptr ? Narrow(text) : "(null)"; }
    bool Note(const std::string& line) {
        lines.push_back(line);
        return answer ? answer(line) : true;
    }
};
