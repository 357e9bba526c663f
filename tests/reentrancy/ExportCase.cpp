#include "reentrancy/ExportCase.h"

#include <cstring>

namespace {

using World = ReentrancyWorld;

// The calls that the Exit of a product may wait for, and those for the Exit of another one.
constexpr uint32_t exitOfOwn = InAgentCallback | InAgentLine | InSink | InEntryOrExit | InWatcher;
constexpr uint32_t exitOfOther = InSink | InEntryOrExit | InWatcher;
// With its one lock the agent neither registers nor unregisters while it is in a callback.
constexpr uint32_t oneLock = InAgentCallback | InAgentLine;

class OtherSink final : public VsKitMsgbus::ILogSink {
public:
    void Write(int /*level*/, const wchar_t* /*text*/) override {}
};

void Exit(World& world) {
    world.ExitProduct();
}

void ExitOfTheOther(World& world) {
    world.ExitProduct(World::otherProduct);
}

void ExitAndEntry(World& world) {
    world.ExitProduct();
    world.EnterProduct();
}

void EntryAgain(World& world) {
    world.EnterProduct();
}

void EntryOfAnother(World& world) {
    world.EnterProduct(World::otherProduct);
}

void EntryAndExitOfAnother(World& world) {
    world.EnterProduct(World::otherProduct);
    world.ExitProduct(World::otherProduct);
}

void GetClient(World& /*world*/) {
    static_cast<void>(GetMsgbusClient());
}

void Release(World& /*world*/) {
    VsKitMsgbus::lpc_buffer text{};
    VsKitMsgbusGetInfoByKeyName("GUID", &text);
    text.Release();
}

void SetCollector(World& world) {
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(World::wideOtherProduct, &world.module, nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(World::wideOtherProduct));
}

// The first registration stays in force; a second one of tasks and updates would be leaked.
void SetCollectorAgain(World& world) {
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(World::wideProduct, &world.module, nullptr));
}

void RemoveCollector(World& /*world*/) {
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(World::wideProduct));
}

void SetEnforcer(World& world) {
    EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(World::wideOtherProduct, &world.module.Enforcer(), nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(World::wideOtherProduct));
}

void RemoveEnforcer(World& /*world*/) {
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(World::wideProduct));
}

void EnforceLocalPolicy(World& /*world*/) {
    VsKitEnforceLocalPolicy(World::wideProduct);
}

void SetUpdateNotify(World& world) {
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(World::wideOtherProduct, &world.module, nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(World::wideOtherProduct));
}

void RemoveUpdateNotify(World& /*world*/) {
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(World::wideProduct));
}

void SetTaskEnforcer(World& world) {
    EXPECT_TRUE(VsKitMsgbusSetTaskEnforcer(World::wideOtherProduct, &world.module, nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(World::wideOtherProduct));
}

void RemoveTaskEnforcer(World& /*world*/) {
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(World::wideProduct));
}

void FreeTaskCookie(World& /*world*/) {
    int cookie = 0;
    VsKitMsgbusFreeTaskCookie(World::wideProduct, &cookie);
}

void UpdateTaskStatus(World& /*world*/) {
    UpdateMsgbusTaskStatus(L"task", 2);
}

void Encrypt(World& /*world*/) {
    const unsigned char plain[16] = {};
    unsigned char secret[256] = {};
    unsigned int size = 0;
    VsKitMsgbusEncryptData(plain, sizeof plain, secret, &size, 1);
}

void Decrypt(World& /*world*/) {
    const unsigned char secret[32] = {};
    unsigned char plain[256] = {};
    unsigned int size = 0;
    VsKitMsgbusDecryptData(secret, sizeof secret, plain, &size, 1);
}

void Hash(World& /*world*/) {
    const unsigned char plain[16] = {};
    unsigned int size = 0;
    VsKitMsgbusHashBuffer(plain, sizeof plain, nullptr, &size, 1);
}

template <int32_t (*function)(...) noexcept>
void Constant(World& /*world*/) {
    EXPECT_EQ(function(1), 0);
}

void GetInformation(World& /*world*/) {
    VsKitMsgbus::lpc_buffer text{};
    VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &text);
    text.Release();
}

void GetInfoByKeyName(World& /*world*/) {
    VsKitMsgbus::lpc_buffer text{};
    VsKitMsgbusGetInfoByKeyName("no such key", &text);
    text.Release();
}

void ManagedMode(World& /*world*/) {
    unsigned int mode = 0;
    VsKitMsgbusManagedMode(&mode);
}

void RegisterHealthCheck(World& /*world*/) {
    VsKitHealthCheckRegisterCB(L"reentrancy", [] {});
}

void OpenAndClose(World& /*world*/) {
    ny_dl_t library{};
    EXPECT_EQ(ny_dl_open("LogLib.dll", 0, &library), 0U);
    EXPECT_NE(ny_dl_sym(&library, "getLogManager"), nullptr);
    ny_dl_close(&library);
}

void DlError(World& /*world*/) {
    char text[260];
    EXPECT_EQ(ny_dl_error(text, sizeof text), 0U);
}

void UseTempBuffers(World& /*world*/) {
    ny_temp_buffer_t buffer;
    ny_temp_buffer_t copy;
    ny_temp_buffer_init(&buffer);
    ny_temp_buffer_init(&copy);
    EXPECT_EQ(ny_temp_buffer_reserve(&buffer, 1000), 0U);
    std::memset(ny_temp_buffer_get(&buffer), 'x', ny_temp_buffer_capacity(&buffer));
    EXPECT_EQ(ny_temp_buffer_copy(&copy, &buffer), 0U);
    EXPECT_EQ(*ny_temp_buffer_address_of(&buffer), nullptr);
    ny_temp_buffer_uninit(&copy);
    ny_temp_buffer_uninit(&buffer);
}

constexpr ExportCase cases[] = {
    {"VsMsgbusEntryAgain", "VsMsgbusEntry", EntryAgain, Leaves::OtherProducts, 0, oneLock},
    {"VsMsgbusEntryOfAnother", "VsMsgbusEntry", EntryOfAnother, Leaves::OtherProducts, 0, oneLock},
    {"VsMsgbusEntryAndExitOfAnother", "VsMsgbusEntry", EntryAndExitOfAnother, Leaves::OtherProducts, exitOfOther,
     oneLock},
    {"VsMsgbusExitOfTheLast", "VsMsgbusExit", Exit, Leaves::OtherProducts, exitOfOwn, oneLock},
    {"VsMsgbusExitAndEntry", "VsMsgbusExit", ExitAndEntry, Leaves::OtherProducts, exitOfOwn, oneLock},
    {"VsMsgbusExitOfOneOfTwo", "VsMsgbusExit", Exit, Leaves::OtherProducts, exitOfOwn, oneLock, true},
    {"VsMsgbusExitOfTheOther", "VsMsgbusExit", ExitOfTheOther, Leaves::OtherProducts, exitOfOther, oneLock, true},
    {"GetMsgbusClient", "GetMsgbusClient", GetClient, Leaves::Everything, 0, 0, false, true},
    {"Release", "_ZN11VsKitMsgbus10lpc_buffer7ReleaseEv", Release},
    {"ReleaseByItsOtherName", "?Release@lpc_buffer@VsKitMsgbus@@QEAAXXZ", Release},
    {"VsKitMsgbusSetCollectProperties", "VsKitMsgbusSetCollectProperties", SetCollector},
    {"VsKitMsgbusSetCollectPropertiesAgain", "VsKitMsgbusSetCollectProperties", SetCollectorAgain},
    {"VsKitMsgbusRemoveCollectProperties", "VsKitMsgbusRemoveCollectProperties", RemoveCollector,
     Leaves::NoRegistration, InCollector},
    {"VsKitMsgbusSetEnforcePolicy", "VsKitMsgbusSetEnforcePolicy", SetEnforcer},
    {"VsKitMsgbusRemoveEnforcerPolicy", "VsKitMsgbusRemoveEnforcerPolicy", RemoveEnforcer, Leaves::NoRegistration,
     InEnforcer},
    {"VsKitEnforceLocalPolicy", "VsKitEnforceLocalPolicy", EnforceLocalPolicy},
    {"VsKitMsgbusSetUpdateNotify", "VsKitMsgbusSetUpdateNotify", SetUpdateNotify},
    {"VsKitMsgbusRemoveUpdateNotify", "VsKitMsgbusRemoveUpdateNotify", RemoveUpdateNotify, Leaves::NoRegistration,
     InUpdateCallback},
    {"VsKitMsgbusEncryptData", "VsKitMsgbusEncryptData", Encrypt},
    {"VsKitMsgbusDecryptData", "VsKitMsgbusDecryptData", Decrypt},
    {"VsKitMsgbusHashBuffer", "VsKitMsgbusHashBuffer", Hash},
    {"VsKitMsgbusIsRunningInFIPSMode", "VsKitMsgbusIsRunningInFIPSMode", Constant<VsKitMsgbusIsRunningInFIPSMode>},
    {"VsKitMsgbusDecodeData", "VsKitMsgbusDecodeData", Constant<VsKitMsgbusDecodeData>},
    {"VsKitMsgbusEncodeData", "VsKitMsgbusEncodeData", Constant<VsKitMsgbusEncodeData>},
    {"VsKitMsgbusDecodeAndDecryptData", "VsKitMsgbusDecodeAndDecryptData", Constant<VsKitMsgbusDecodeAndDecryptData>},
    {"VsKitMsgbusEncryptAndEncodeData", "VsKitMsgbusEncryptAndEncodeData", Constant<VsKitMsgbusEncryptAndEncodeData>},
    {"VsKitMsgbusGetInformation", "VsKitMsgbusGetInformation", GetInformation},
    {"VsKitMsgbusGetInfoByKeyName", "VsKitMsgbusGetInfoByKeyName", GetInfoByKeyName},
    {"VsKitMsgbusManagedMode", "VsKitMsgbusManagedMode", ManagedMode},
    {"VsKitHealthCheckRegisterCB", "VsKitHealthCheckRegisterCB", RegisterHealthCheck},
    {"VsKitMsgbusSetTaskEnforcer", "VsKitMsgbusSetTaskEnforcer", SetTaskEnforcer},
    {"VsKitMsgbusRemoveTaskEnforcer", "VsKitMsgbusRemoveTaskEnforcer", RemoveTaskEnforcer, Leaves::NoRegistration,
     InTaskEnforcer},
    {"VsKitMsgbusFreeTaskCookie", "VsKitMsgbusFreeTaskCookie", FreeTaskCookie},
    {"UpdateMsgbusTaskStatus", "UpdateMsgbusTaskStatus", UpdateTaskStatus},
    {"ny_dl_open", "ny_dl_open", OpenAndClose},
    {"ny_dl_sym", "ny_dl_sym", OpenAndClose},
    {"ny_dl_close", "ny_dl_close", OpenAndClose},
    {"ny_dl_error", "ny_dl_error", DlError},
    {"ny_temp_buffer_init", "ny_temp_buffer_init", UseTempBuffers},
    {"ny_temp_buffer_reserve", "ny_temp_buffer_reserve", UseTempBuffers},
    {"ny_temp_buffer_get", "ny_temp_buffer_get", UseTempBuffers},
    {"ny_temp_buffer_capacity", "ny_temp_buffer_capacity", UseTempBuffers},
    {"ny_temp_buffer_copy", "ny_temp_buffer_copy", UseTempBuffers},
    {"ny_temp_buffer_address_of", "ny_temp_buffer_address_of", UseTempBuffers},
    {"ny_temp_buffer_uninit", "ny_temp_buffer_uninit", UseTempBuffers},
};

}  // namespace

std::span<const ExportCase> ExportCases() {
    return cases;
}
