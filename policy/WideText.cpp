#include "policy/WideText.h"

#include <algorithm>

#include "values/BorrowedText.h"

void WideText::Assign(const TextFunctions& functions, const char* narrow) {
    text = nullptr;
    if (narrow == nullptr) {
        return;
    }
    const TextVariant variant(functions, std::string_view(narrow));
    const BorrowedWide wide(functions, variant.Get());
    WithMemory([&] {
        const std::wstring_view view = wide.View();
        if (view.size() < shortText.size()) {
            *std::copy(view.begin(), view.end(), shortText.begin()) = L'\0';
            text = shortText.data();
        } else {
            longText = view;
            text = longText.c_str();
        }
    });
}
