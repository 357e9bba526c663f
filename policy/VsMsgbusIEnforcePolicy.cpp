#include "policy/VsMsgbusIEnforcePolicy.h"

void StorePolicyName(const wchar_t* /*category*/, const wchar_t* /*name*/) noexcept {}
void LogDigestFailure(int32_t /*code*/) noexcept {}
