#include "reentrancy/Cell.h"

#include <cstdlib>

namespace {

const char* NameOf(Variant variant) {
    switch (variant) {
        case Variant::Plain: return "";
        case Variant::OneLock: return "_OneLock";
        case Variant::InRegister: return "_InRegister";
        case Variant::InRegisterAside: return "_InRegisterAside";
        case Variant::Upgrade: return "_Upgrade";
        case Variant::OtherEnters: return "_OtherEnters";
        case Variant::WatcherRegisters: return "_WatcherRegisters";
    }
    return "";
}

bool MakesSense(const Cell& cell) {
    const ExportCase& exportCase = *cell.exportCase;
    if (cell.callback->needsToBeAlone && (exportCase.needsOtherProduct || exportCase.needsInstance)) {
        return false;
    }
    switch (cell.variant) {
        case Variant::Plain:
        case Variant::OneLock: return true;
        case Variant::InRegister:
        case Variant::InRegisterAside: return cell.callback->call.has_value();
        // The other kinds change the agent by themselves.
        case Variant::Upgrade:
        case Variant::OtherEnters:
        case Variant::WatcherRegisters: return !cell.callback->entersItself;
    }
    return false;
}

}  // namespace

std::vector<Cell> AllCells() {
    std::vector<Cell> cells;
    for (const Variant variant : {Variant::Plain, Variant::OneLock, Variant::InRegister, Variant::InRegisterAside,
                                  Variant::Upgrade, Variant::OtherEnters, Variant::WatcherRegisters}) {
        if (variant != Variant::Plain && !IsWholeFormWanted()) {
            break;
        }
        for (const CallbackKind& callback : CallbackKinds()) {
            for (const ExportCase& exportCase : ExportCases()) {
                for (const CallingThread thread : {CallingThread::Same, CallingThread::Other}) {
                    if (const Cell cell{&callback, &exportCase, thread, variant}; MakesSense(cell)) {
                        cells.push_back(cell);
                    }
                }
            }
        }
    }
    return cells;
}

std::string NameOf(const Cell& cell) {
    return std::string(cell.callback->name) + "__" + cell.exportCase->name +
           (cell.thread == CallingThread::Same ? "__SameThread" : "__OtherThread") + NameOf(cell.variant);
}

bool IsWholeFormWanted() {
    return std::getenv("REENTRANCY_WHOLE") != nullptr;
}

bool MayWait(const Cell& cell) {
    uint32_t around = cell.callback->around;
    uint32_t waitsFor = cell.exportCase->waitsFor;
    switch (cell.variant) {
        case Variant::Plain: break;
        case Variant::OneLock: waitsFor |= cell.exportCase->waitsForWithOneLock; break;
        // The Entry that registers is under way, and what it does for the product.
        case Variant::InRegister:
        case Variant::InRegisterAside:
        case Variant::OtherEnters: around |= InEntryOrExit; break;
        // The watcher waits for the callback.
        case Variant::Upgrade:
        case Variant::WatcherRegisters: around |= InWatcher; break;
    }
    return (waitsFor & around) != 0;
}
