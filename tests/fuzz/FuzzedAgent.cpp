#include "fuzz/FuzzedAgent.h"

#include "support/SystemFunction.h"

namespace {

int library = 0;  // its address stands for every library

}  // namespace

FuzzedAgent::FuzzedAgent(FuzzInput& agentInput) : input(agentInput) {
    TakeOverLibraries();
    current = this;
}

void FuzzedAgent::TakeOverLibraries() {
    static const SystemFunction<decltype(::LoadLibraryExA)> loading(&::LoadLibraryExA, &Load);
    static const SystemFunction<decltype(::GetProcAddress)> resolving(&::GetProcAddress, &Resolve);
    static const SystemFunction<decltype(::FreeLibrary)> freeing(&::FreeLibrary, &Free);
}

FuzzedAgent::~FuzzedAgent() {
    handles.ExpectNoneHeld();
    current = nullptr;
}

HMODULE FuzzedAgent::Load(LPCSTR path, HANDLE /*reserved*/, DWORD /*flags*/) {
    current->openedPath = path;
    if (!current->hasLibraries) {
        ::SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HMODULE>(&library);
}

FARPROC FuzzedAgent::Resolve(HMODULE /*library*/, LPCSTR name) {
    return FuzzedFunction(name);
}

BOOL FuzzedAgent::Free(HMODULE /*library*/) {
    return TRUE;
}

std::unique_ptr<ny_variant> FuzzedAgent::MakeVariant() {
    auto variant = std::make_unique<ny_variant>();
    switch (input.Below(4)) {
        case 1:
            variant->kind = ny_variant::Kind::Wide;
            variant->wide = input.WideText();
            break;
        case 2: variant->kind = ny_variant::Kind::Table; break;
        default: {
            const std::string text = input.Text();
            variant->narrow.assign(text.c_str(), text.c_str() + text.size() + 1);
        }
    }
    return variant;
}
