#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/LpcBuffer.h"
#include "values/CUniStream.h"

namespace bridge {

// Writes what a walk tells as text, one indented line for each item. When memory runs out the text ends there, and is
// not good.
//
// The text is kept in pieces that never grow and are filled to their end: one block that grew would need room for the
// old text and the new one each time, and the whole one is copied once more for the module.
class CPolicyDump final : public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks {
public:
    // Each callback appends its line and returns true. A null text is written as "<null>".
    bool OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                     const wchar_t* name) noexcept override;
    bool OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) noexcept override;
    bool OnSection(const wchar_t* name, const wchar_t* reserved) noexcept override;
    bool OnSetting(const wchar_t* section, const wchar_t* name, const wchar_t* value) noexcept override;

    // Whether every line was written as a whole.
    bool IsGood() const noexcept { return isWhole && text.IsGood(); }
    size_t Length() const noexcept { return lengthBefore + text.Text().size(); }

    // Frees what the buffer holds and puts the text there; leaves it empty when there is no memory for it.
    void Store(VsKitMsgbus::lpc_buffer& buffer) noexcept;

private:
    void WriteLine(std::initializer_list<std::wstring_view> parts) noexcept;
    void Append(std::wstring_view part);
    void BeginPiece();

    VsKit::CUniStream text;            // the piece that is written now
    std::vector<std::wstring> pieces;  // those before it
    size_t lengthBefore = 0;           // of all of them
    bool isWhole = true;
};

}  // namespace bridge
