#include "abi/module/Told.h"

#include "abi/module/Module.h"

namespace {

ModuleTell tellTest = nullptr;
void* tellUserData = nullptr;

}  // namespace

void ModuleTellTo(ModuleTell tell, void* userData) {
    tellTest = tell;
    tellUserData = userData;
}

Told& Told::operator<<(const wchar_t* text) {
    line += text != nullptr ? text : L"<null>";
    return *this;
}

Told& Told::operator<<(int32_t number) {
    line += std::to_wstring(number);
    return *this;
}

Told::~Told() {
    if (tellTest != nullptr) {
        tellTest(line.c_str(), tellUserData);
    }
}
