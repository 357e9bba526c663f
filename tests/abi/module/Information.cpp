#include "VsMsgbus.h"
#include "abi/module/Module.h"
#include "abi/module/Told.h"

void ModuleReadInformation() {
    VsKitMsgbus::lpc_buffer text;
    const int32_t found = VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &text);
    Told() << L"VsKitMsgbusGetInformation answers " << found << L": " << static_cast<const wchar_t*>(text.data);
    text.Release();
    Told() << L"released, kind " << static_cast<int32_t>(text.kind);

    const int32_t code = VsKitMsgbusGetInfoByKeyName("AgentMode", &text);
    Told() << L"VsKitMsgbusGetInfoByKeyName answers " << code << L": " << static_cast<int32_t>(text.length)
           << L" characters of kind " << static_cast<int32_t>(text.kind);
    text.Release();

    unsigned int mode = 7;
    const int32_t hasMode = VsKitMsgbusManagedMode(&mode);
    Told() << L"VsKitMsgbusManagedMode answers " << hasMode << L": " << static_cast<int32_t>(mode);
}

void ModuleReadKey(const char* key, VsKitMsgbus::lpc_buffer* buffer) {
    VsKitMsgbusGetInfoByKeyName(key, buffer);
}
