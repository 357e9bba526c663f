#include "policy/WideText.h"

#include "values/AgentValues.h"

void WideText::Assign(const char* narrow) {
    isNull = narrow == nullptr;
    if (!isNull) {
        WithMemory([&] { WideFromNarrow(narrow, text); });
    }
}

void WideText::Assign(ny_variant_t* variant) {
    isNull = variant == nullptr;
    if (!isNull) {
        WithMemory([&] { WideFromVariant(variant, text); });
    }
}
