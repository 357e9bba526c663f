#include "values/WideText.h"

#include <algorithm>

#include "values/BorrowedText.h"

namespace bridge {

WideText::WideText(std::string_view narrow, const LibrariesInUse* inUse) {
    Assign(LookUpTextFunctions(inUse), narrow);
}

void WideText::Assign(const TextFunctions& functions, std::string_view narrow) {
    Clear();
    const TextVariant variant(functions, narrow);
    const BorrowedWide wide(functions, variant.Get());
    const std::wstring_view view = wide.View();
    if (view.size() < shortText.size()) {
        *std::copy(view.begin(), view.end(), shortText.begin()) = L'\0';
        text = {shortText.data(), view.size()};
    } else {
        longText = view;
        text = longText;
    }
}

}  // namespace bridge
