#include "Told.h"

#include "MicrosoftModule.h"

namespace {

MicrosoftModuleTell tellTest = nullptr;
void* tellUserData = nullptr;

}  // namespace

void MicrosoftModuleTellTo(MicrosoftModuleTell tell, void* userData) {
    tellTest = tell;
    tellUserData = userData;
}

void Told::Append(wchar_t unit) {
    if (length + 1 < capacity) {
        line[length++] = unit;
    }
}

Told& Told::operator<<(const wchar_t* text) {
    for (const wchar_t* unit = text != nullptr ? text : L"<null>"; *unit != 0; ++unit) {
        Append(*unit);
    }
    return *this;
}

Told& Told::operator<<(int32_t number) {
    uint32_t rest = static_cast<uint32_t>(number);
    if (number < 0) {
        Append(L'-');
        rest = 0 - rest;
    }
    uint32_t divisor = 1;
    while (rest / divisor >= 10) {
        divisor *= 10;
    }
    for (; divisor != 0; divisor /= 10) {
        Append(static_cast<wchar_t>(L'0' + rest / divisor % 10));
    }
    return *this;
}

Told::~Told() {
    line[length] = 0;
    if (tellTest != nullptr) {
        tellTest(line, tellUserData);
    }
}
