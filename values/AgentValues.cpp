#include "values/AgentValues.h"

#include <algorithm>
#include <new>

#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "values/AgentException.h"

using corvane::ny::utils::Check;

namespace {

// The text of a buffer. The agent's contract: the length of the first call, the text of the second. What the second
// call says to be shorter is no longer than that, and a length that no memory holds is one that there is no memory for.
template <class Character, class Function, class Buffer>
std::basic_string_view<Character> TextOf(const Function& getString, const Buffer& buffer,
                                         std::basic_string_view<Character> none) {
    const Character* text = nullptr;
    size_t length = 0;
    Check(getString(buffer.Get(), &text, &length));
    size_t lengthOfText = length;
    Check(getString(buffer.Get(), &text, &lengthOfText));
    if (text == nullptr) {
        return none;
    }
    length = std::min(length, lengthOfText);
    if (length > std::basic_string<Character>().max_size()) {
        throw std::bad_alloc();
    }
    return {text, length};
}

inline BorrowedNarrow Narrow(ny_variant_t* variant) {
    BorrowedNarrow borrowed;
    Check(agent::ny_variant_get_string_buffer(variant, borrowed.buffer.Out()));
    borrowed.text = TextOf<char>(agent::ny_buffer_get_string, borrowed.buffer, noNarrowText);
    return borrowed;
}

inline BorrowedWide Wide(ny_variant_t* variant) {
    BorrowedWide borrowed;
    Check(agent::ny_variant_get_wstring_buffer(variant, borrowed.buffer.Out()));
    borrowed.text = TextOf<wchar_t>(agent::ny_wbuffer_get_string, borrowed.buffer, noWideText);
    return borrowed;
}

}  // namespace

BorrowedWide BorrowWide(ny_variant_t* variant) {
    return Wide(variant);
}

BorrowedNarrow BorrowNarrowFromWide(std::wstring_view text) {
    return Narrow(VariantFromWide(text).Get());
}

BorrowedWide BorrowWideFromNarrow(std::string_view text) {
    return Wide(VariantFromNarrow(text).Get());
}

std::string NarrowFromVariant(ny_variant_t* variant) {
    return std::string(Narrow(variant).text);
}

std::wstring WideFromVariant(ny_variant_t* variant) {
    return std::wstring(Wide(variant).text);
}

VariantOwner VariantFromNarrow(std::string_view text) {
    VariantOwner variant;
    Check(agent::ny_variant_create_from_string(text.data(), text.size(), variant.Out()));
    return variant;
}

VariantOwner VariantFromWide(std::wstring_view text) {
    VariantOwner variant;
    Check(agent::ny_variant_create_from_wstring(text.data(), text.size(), variant.Out()));
    return variant;
}

void WideFromNarrow(std::string_view text, std::wstring& into) {
    into.assign(Wide(VariantFromNarrow(text).Get()).text);
}

std::wstring WideFromNarrow(std::string_view text) {
    return std::wstring(Wide(VariantFromNarrow(text).Get()).text);
}

std::string NarrowFromWide(std::wstring_view text) {
    return std::string(Narrow(VariantFromWide(text).Get()).text);
}

TableOwner TableFromVariant(ny_variant_t* variant) {
    TableOwner table;
    Check(agent::ny_variant_get_table(variant, table.Out()));
    return table;
}

VariantOwner TableValue(ny_table_t* table, const wchar_t* key) {
    VariantOwner value;
    Check(agent::ny_table_get_wvalue(table, key, value.Out()));
    return value;
}

ArrayOwner TableKeys(ny_table_t* table) {
    ArrayOwner keys;
    Check(agent::ny_table_get_keys(table, keys.Out()));
    return keys;
}

size_t ArraySize(ny_array_t* array) {
    size_t size = 0;
    Check(agent::ny_array_size(array, &size));
    return size;
}

VariantOwner ArrayElement(ny_array_t* array, size_t index) {
    VariantOwner element;
    Check(agent::ny_array_get_element_at(array, index, element.Out()));
    return element;
}
