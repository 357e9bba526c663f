#include "checking/Thrown.h"

#include <cxxabi.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "base/Boundary.h"
#include "base/ForeignTypes.h"
#include "checking/Findings.h"

namespace checking {

using bridge::ForeignThrowInfo;
using bridge::ForeignType;
using bridge::ForeignTypeList;
using bridge::ForeignTypeName;
using bridge::PartOfImage;

namespace {

std::string Demangled(const char* name) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                           &std::free);
    return status == 0 ? text.get() : name;
}

// The type that Microsoft's compiler gives this name, for types that are no classes and that programs throw; null for
// others.
const char* PlainType(std::string_view decorated) noexcept {
    constexpr std::pair<std::string_view, const char*> types[] = {
        {".H", "int"},           {".I", "unsigned int"},   {".J", "long"},
        {".K", "unsigned long"}, {".PEBD", "const char*"}, {".PEB_W", "const wchar_t*"},
        {"._N", "bool"},         {".N", "double"},
    };
    for (const auto& [name, type] : types) {
        if (decorated == name) {
            return type;
        }
    }
    return nullptr;
}

// ".?AVruntime_error@std@@" as "std::runtime_error". Names that are more than names in namespaces stay as they are.
std::string WithoutDecoration(const std::string& decorated) {
    constexpr size_t prefix = 4;
    constexpr std::string_view suffix = "@@";
    if (const char* const plainType = PlainType(decorated)) {
        return plainType;
    }
    if (decorated.size() <= prefix + suffix.size() || decorated.compare(0, 3, ".?A") != 0 ||
        decorated.find_first_of("?$", prefix) != std::string::npos) {
        return decorated;
    }
    std::string plain;
    std::string rest = decorated.substr(prefix, decorated.size() - prefix - suffix.size());
    while (!rest.empty()) {
        const size_t at = rest.find('@');
        const std::string part = rest.substr(0, at);
        plain = plain.empty() ? part : part + "::" + plain;
        rest = at != std::string::npos ? rest.substr(at + 1) : std::string();
    }
    return plain;
}

// The second virtual function of a standard exception, behind its destructor.
const char* WhatOf(const void* standardException) noexcept {
    using What = const char* (*)(const void* self);
    const auto* const table = *static_cast<const What* const*>(standardException);
    return table[1](standardException);
}

}  // namespace

ThrownText DescribeCurrentException() {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    ThrownText text{type != nullptr ? Demangled(type->name()) : "something of another runtime", ""};
    try {
        throw;
    } catch (const std::exception& error) {
        text.what = error.what();
    } catch (...) {
        // There is no text in it.
        return text;
    }
    return text;
}

ThrownText DescribeForeign(const bridge::ForeignThrow& thrown) {
    ThrownText text{"something without a description", ""};
    if (thrown.TypeInfo() == nullptr) {
        return text;
    }
    const std::byte* const image = thrown.ImageBase();
    const auto* const list =
        PartOfImage<ForeignTypeList>(image, reinterpret_cast<const ForeignThrowInfo*>(thrown.TypeInfo())->types);
    for (int32_t i = 0; list != nullptr && i < list->count; ++i) {
        const auto* const type = PartOfImage<ForeignType>(image, list->types[i]);
        const auto* const name = PartOfImage<ForeignTypeName>(image, type->name);
        if (i == 0 && name != nullptr) {
            text.type = WithoutDecoration(name->name);
        }
        if (name != nullptr && std::strcmp(name->name, ".?AVexception@std@@") == 0 && type->tableOffset < 0) {
            text.what = WhatOf(static_cast<const std::byte*>(thrown.Object()) + type->offset);
        }
    }
    return text;
}

void ReportThrown(std::string_view productId, const char* function, const ThrownText& thrown) {
    Report(Rule::CallbackThrew, productId,
           {function, thrown.type, thrown.what.empty() ? std::string() : " (\"" + thrown.what + "\")"});
}

bool TellingFrame::Takes(const bridge::ForeignThrow& thrown) noexcept {
    KeepCode(thrown);
    bridge::Guarded([&] { ReportThrown(productId, function, DescribeForeign(thrown)); });
    return true;
}

}  // namespace checking
