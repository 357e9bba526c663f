#include "policy/PolicyFunctions.h"

#include "dispatcher/groups/PolicyGroup.h"

PolicyFunctions::PolicyFunctions(const LibrariesInUse* inUse) noexcept
    : libraries(inUse), table(TableOf(policyGroup, inUse)) {}
