#include "loglib/DefaultLogManager.h"

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <new>

#include "base/Boundary.h"
#include "base/LastErrorKeeper.h"
#include "loglib/LogLine.h"

namespace bridge {

DefaultLogManager& DefaultLogManager::Instance() noexcept {
    alignas(DefaultLogManager) static std::byte place[sizeof(DefaultLogManager)];
    static auto* const manager = new (place) DefaultLogManager;
    return *manager;
}

void DefaultLogManager::Write(const LogUtils::LogRecord& event) noexcept {
    const LastErrorKeeper keeper;
    Guarded([&] { listener.Call(CallGate::Admission::OneThreadAtATime, &LogUtils::LogListener::OnLogEvent, event); });
    Guarded([&] { destination.Write(LogLine(event, std::chrono::system_clock::now(), ::GetCurrentProcessId())); });
}

bool DefaultLogManager::SetFile(const wchar_t* path) noexcept {
    return Guarded(false, [&] { return destination.Choose(path); });
}

LogUtils::LogListener* DefaultLogManager::SetListener(LogUtils::LogListener* newListener) noexcept {
    return Guarded<LogUtils::LogListener*>(nullptr, [&] { return listener.Exchange(newListener); });
}

}  // namespace bridge
