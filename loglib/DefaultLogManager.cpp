#include "loglib/DefaultLogManager.h"

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <mutex>
#include <new>
#include <utility>

#include "base/Boundary.h"
#include "loglib/LogLine.h"

namespace {

// Leaves the thread's last error as it was: who logs a failure may still have to ask for it.
class KeptLastError {
public:
    KeptLastError() = default;
    ~KeptLastError() { ::SetLastError(error); }
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;

private:
    const DWORD error = ::GetLastError();
};

}  // namespace

DefaultLogManager& DefaultLogManager::Instance() noexcept {
    alignas(DefaultLogManager) static std::byte place[sizeof(DefaultLogManager)];
    static auto* const manager = new (place) DefaultLogManager;
    return *manager;
}

void DefaultLogManager::Write(const LogUtils::LogRecord& event) noexcept {
    const KeptLastError kept;
    Guarded([&] { Tell(event); });
    Guarded([&] { destination.Write(LogLine(event, std::chrono::system_clock::now(), ::GetCurrentProcessId())); });
}

bool DefaultLogManager::SetFile(const wchar_t* path) noexcept {
    return Guarded(false, [&] { return destination.Choose(path); });
}

LogUtils::LogListener* DefaultLogManager::SetListener(LogUtils::LogListener* newListener) noexcept {
    return Guarded<LogUtils::LogListener*>(nullptr, [&] {
        auto replaced = newListener != nullptr ? std::make_shared<Listening>(newListener) : nullptr;
        {
            const std::lock_guard guard(listenerLock);
            replaced.swap(listening);
        }
        if (replaced == nullptr) {
            return static_cast<LogUtils::LogListener*>(nullptr);
        }
        replaced->gate.Close();
        replaced->gate.WaitForOthers();
        return replaced->listener.HandBack();
    });
}

void DefaultLogManager::Tell(const LogUtils::LogRecord& event) {
    std::shared_ptr<Listening> told;
    {
        const std::lock_guard guard(listenerLock);
        told = listening;
    }
    if (told == nullptr) {
        return;
    }
    const CallGate::Call call(told->gate, CallGate::Admission::OneThreadAtATime);
    if (call) {
        told->listener.Call(&LogUtils::LogListener::OnLogEvent, event);
    }
}
