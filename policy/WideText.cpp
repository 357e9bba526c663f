#include "policy/WideText.h"

#include "values/AgentValues.h"

void WideText::Assign(const char* narrow) {
    isNull = narrow == nullptr;
    if (!isNull) {
        WithMemory([&] { WideFromNarrow(narrow, text); });
    }
}
