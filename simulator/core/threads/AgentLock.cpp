#include "simulator/core/threads/AgentLock.h"

#include <windows.h>

#include <algorithm>

namespace simulator {

namespace {

AgentLock& theLock = *new AgentLock;

}  // namespace

void AgentLock::Switch(bool on) {
    const std::lock_guard lock(mutex);
    isOn = on;
    left.notify_all();
}

bool AgentLock::Enter() {
    const uint32_t self = GetCurrentThreadId();
    std::unique_lock lock(mutex);
    left.wait(lock, [this, self] { return GoesWithout(self) || depth == 0 || IsOwner(self); });
    if (GoesWithout(self)) {
        without.push_back(self);
        return false;
    }
    if (depth == 0) {
        owners.push_back(self);
    }
    ++depth;
    return true;
}

void AgentLock::Leave(bool hasEntered) noexcept {
    const std::lock_guard lock(mutex);
    if (!hasEntered) {
        without.erase(std::find(without.begin(), without.end(), GetCurrentThreadId()));
    } else if (--depth == 0) {
        owners.clear();
        left.notify_all();
    }
}

void AgentLock::Share() {
    const std::lock_guard lock(mutex);
    if (depth != 0) {
        owners.push_back(GetCurrentThreadId());
    }
}

void AgentLock::EndShare() noexcept {
    const std::lock_guard lock(mutex);
    std::erase(owners, GetCurrentThreadId());
}

bool AgentLock::IsOwner(uint32_t threadId) const {
    return std::find(owners.begin(), owners.end(), threadId) != owners.end();
}

bool AgentLock::GoesWithout(uint32_t threadId) const {
    return !isOn || std::find(without.begin(), without.end(), threadId) != without.end();
}

AgentLock& TheAgentLock() {
    return theLock;
}

AgentLockHold::AgentLockHold() : entered(theLock.Enter()) {}

AgentLockHold::~AgentLockHold() {
    theLock.Leave(entered);
}

}  // namespace simulator
