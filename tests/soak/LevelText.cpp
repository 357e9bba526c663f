#include "soak/Level.h"

std::ostream& operator<<(std::ostream& out, const Level& level) {
    out << level.handles << " handles, " << level.modules << " modules, " << level.heapBytes << " bytes allocated";
    if (level.heapBlocks != 0) {
        out << " in " << level.heapBlocks << " blocks";
    }
    return out << ", " << level.residentBytes / 1024 << " KB resident";
}
