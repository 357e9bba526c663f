#include "abi/module/Module.h"
#include "abi/module/Told.h"
#include "loglib/LogLib.h"

namespace {

class Listener final : public LogUtils::LogListener {
public:
    void OnLogEvent(const LogUtils::LogRecord& event) override {
        Told() << L"OnLogEvent " << event.severity << L" " << event.component << L" " << event.text;
    }
};

constinit Listener listener;

}  // namespace

void ModuleListenToHostLog(bool listens) {
    const LogUtils::LogListener* const before = getLogManager()->SetListener(listens ? &listener : nullptr);
    Told() << L"SetListener answers " << (before == &listener ? L"the listener" : L"another");
}

void ModuleWriteToHostLog() {
    const LogUtils::LogEvent event("abi/module/HostLog.cpp", __LINE__, 8, "Own", getLogManager(), 2, false);
    event(L"Module", L"a text");
    event(nullptr, "a %s and %d", "format", 12);
}
