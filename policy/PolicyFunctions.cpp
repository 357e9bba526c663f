#include "policy/PolicyFunctions.h"

#include "dispatcher/groups/PolicyGroup.h"

namespace bridge {

PolicyFunctions::PolicyFunctions(const LibrariesInUse* inUse) noexcept
    : libraries(inUse), table(TableOf(policyGroup, inUse)) {}

}  // namespace bridge
