// One cell of the matrix: one call of an export inside one callback.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "reentrancy/ExportCase.h"

enum class CallingThread {
    Same,   // that of the callback
    Other,  // one that the callback waits for
};

enum class Variant {
    Plain,
    OneLock,           // the agent holds one lock around registering, unregistering and callbacks
    InRegister,        // the agent calls before register returns, on the registering thread
    InRegisterAside,   // the same, on another thread that register waits for
    Upgrade,           // the agent is upgraded while the callback runs
    OtherEnters,       // another product is just being registered by its Entry, which waits for the callback
    WatcherRegisters,  // the same, by the watcher after an upgrade
};

struct Cell {
    const CallbackKind* callback;
    const ExportCase* exportCase;
    CallingThread thread;
    Variant variant;
};

// The cells of the plain variant; of all variants that make sense where the whole form is wanted.
std::vector<Cell> AllCells();
// Letters, digits and underscores.
std::string NameOf(const Cell& cell);
inline void PrintTo(const Cell& cell, std::ostream* stream) {
    *stream << NameOf(cell);
}

// Whether REENTRANCY_WHOLE is set.
bool IsWholeFormWanted();

// Whether the export may have to wait for the callback when another thread calls it.
bool MayWait(const Cell& cell);
