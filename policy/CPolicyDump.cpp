#include "policy/CPolicyDump.h"

#include <algorithm>

#include "base/Boundary.h"
#include "msgbus/lpc_buffer.h"

namespace bridge {

using namespace std::string_view_literals;

namespace {

// In characters. A piece is as long as a quarter of what there is, within these limits: few pieces, and no more room in
// the last one than can be given back beside the text.
constexpr size_t shortestPiece = 1024;
constexpr size_t longestPiece = 32768;
constexpr size_t piecesOfText = 4;

std::wstring_view OrNull(const wchar_t* value) noexcept {
    return value != nullptr ? std::wstring_view(value) : L"<null>"sv;
}

}  // namespace

// "pCatagoryId" is what readers of these dumps look for, and stays.
bool CPolicyDump::OnContainer(const wchar_t* featureId, const wchar_t* categoryId, const wchar_t* typeId,
                              const wchar_t* name) noexcept {
    WriteLine({L"    Container FeatureId["sv, OrNull(featureId), L"] pCatagoryId["sv, OrNull(categoryId),
               L"] pTypeId["sv, OrNull(typeId), L"] pName["sv, OrNull(name), L"]\n"sv});
    return true;
}

bool CPolicyDump::OnSettings(const wchar_t* name, const wchar_t* intParam, const wchar_t* strParam) noexcept {
    WriteLine({L"      Settings Name=["sv, OrNull(name), L"] pIntParam["sv, OrNull(intParam), L"] pStrParam["sv,
               OrNull(strParam), L"]\n"sv});
    return true;
}

bool CPolicyDump::OnSection(const wchar_t* name, const wchar_t* /*reserved*/) noexcept {
    WriteLine({L"         Section Name=["sv, OrNull(name), L"]\n"sv});
    return true;
}

bool CPolicyDump::OnSetting(const wchar_t* /*section*/, const wchar_t* name, const wchar_t* value) noexcept {
    WriteLine({L"             "sv, OrNull(name), L"=["sv, OrNull(value), L"]\n"sv});
    return true;
}

void CPolicyDump::Store(VsKitMsgbus::lpc_buffer& buffer) noexcept {
    // The module's copy is made while all pieces are still held. So the last piece gives back its spare memory first.
    Guarded([this] {
        std::wstring last;
        text.Swap(last);
        last.shrink_to_fit();
        text.Swap(last);
    });
    wchar_t* place = VsKitMsgbus::MakeWideText(buffer, Length());
    if (place == nullptr) {
        return;
    }
    for (const std::wstring& piece : pieces) {
        place = std::copy(piece.begin(), piece.end(), place);
    }
    std::copy(text.Text().begin(), text.Text().end(), place);
}

void CPolicyDump::WriteLine(std::initializer_list<std::wstring_view> parts) noexcept {
    isWhole = IsGood() && Guarded([&] {
                  for (const std::wstring_view part : parts) {
                      Append(part);
                  }
              });
}

void CPolicyDump::Append(std::wstring_view part) {
    for (;;) {
        const size_t room = text.Text().capacity() - text.Text().size();
        if (part.size() <= room) {
            text << part;
            return;
        }
        text << part.substr(0, room);
        part.remove_prefix(room);
        BeginPiece();
    }
}

void CPolicyDump::BeginPiece() {
    std::wstring next;
    next.reserve(std::clamp(Length() / piecesOfText, shortestPiece, longestPiece));
    pieces.emplace_back();
    lengthBefore = Length();
    text.Swap(next);
    pieces.back() = std::move(next);
}

}  // namespace bridge
