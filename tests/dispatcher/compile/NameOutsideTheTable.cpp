// Does not compile: the group's name table lacks the function.
#include "dispatcher/groups/InfoGroup.h"

int32_t Release(ny_buffer_t* buffer) {
    constexpr bridge::EntryPoint<&::ny_buffer_release, bridge::infoNames, bridge::infoGroup> release{};
    return release(buffer);
}
