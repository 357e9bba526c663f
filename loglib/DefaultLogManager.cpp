#include "loglib/DefaultLogManager.h"

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <new>
#include <utility>

#include "base/Boundary.h"
#include "base/LastErrorKeeper.h"
#include "loglib/LogLine.h"

DefaultLogManager& DefaultLogManager::Instance() noexcept {
    alignas(DefaultLogManager) static std::byte place[sizeof(DefaultLogManager)];
    static auto* const manager = new (place) DefaultLogManager;
    return *manager;
}

void DefaultLogManager::Write(const LogUtils::LogRecord& event) noexcept {
    const LastErrorKeeper keeper;
    Guarded([&] { Tell(event); });
    Guarded([&] { destination.Write(LogLine(event, std::chrono::system_clock::now(), ::GetCurrentProcessId())); });
}

bool DefaultLogManager::SetFile(const wchar_t* path) noexcept {
    return Guarded(false, [&] { return destination.Choose(path); });
}

LogUtils::LogListener* DefaultLogManager::SetListener(LogUtils::LogListener* newListener) noexcept {
    return Guarded<LogUtils::LogListener*>(nullptr, [&] {
        const auto replaced =
            listening.Exchange(newListener != nullptr ? std::make_shared<Listening>(newListener) : nullptr);
        if (replaced == nullptr) {
            return static_cast<LogUtils::LogListener*>(nullptr);
        }
        replaced->gate.CloseAndWait();
        return replaced->listener.HandBack();
    });
}

void DefaultLogManager::Tell(const LogUtils::LogRecord& event) {
    const auto told = listening.Share();
    if (told == nullptr) {
        return;
    }
    const CallGate::Call call(told->gate, CallGate::Admission::OneThreadAtATime);
    if (call) {
        told->listener.Call(&LogUtils::LogListener::OnLogEvent, event);
    }
}
