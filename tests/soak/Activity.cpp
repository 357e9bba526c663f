#include "soak/Activity.h"

Watchdog::Watchdog(std::chrono::milliseconds hangLimit, OnHang whatToDo)
    : limit(hangLimit), onHang(std::move(whatToDo)), thread([this] { Watch(); }) {}

Watchdog::~Watchdog() {
    isOver.Set();
    thread.join();
}

Activity& Watchdog::Add(const std::string& name) {
    const std::lock_guard guard(lock);
    return watched.emplace_back(name).activity;
}

void Watchdog::Watch() {
    while (!isOver.Wait(limit / 20)) {
        const std::string report = Hanging();
        if (!report.empty()) {
            onHang(report);
        }
    }
}

std::string Watchdog::Hanging() {
    const std::lock_guard guard(lock);
    const auto now = std::chrono::steady_clock::now();
    std::string hanging;
    std::string all;
    for (Watched& one : watched) {
        one.activity.Inspect([&](uint64_t begun, const std::string& current) {
            if (begun != one.begunBefore || current.empty()) {
                one.begunBefore = begun;
                one.since = now;
            }
            if (now - one.since >= limit && hanging.empty()) {
                hanging = one.activity.name + " hangs: " + current + "\n";
            }
            all += "  " + one.activity.name + ": " + (current.empty() ? "nothing" : current) + "\n";
        });
    }
    return hanging.empty() ? hanging : hanging + all;
}
