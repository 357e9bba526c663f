#include "soak/Actions.h"

#include <gtest/gtest.h>

#include <cstring>

#include "ny_simulator.h"
#include "soak/ExportCalls.h"
#include "soak/KeepingSink.h"
#include "soak/Trouble.h"
#include "support/AgentEnvironment.h"
#include "support/LineLog.h"
#include "support/Text.h"

namespace {

// Objects that live as long as the program: anyone may take them back at any time, also from inside them.
struct SharedObject {
    std::mutex lock;
    std::unique_ptr<Registered> object;
    bool isSet = false;
};

std::wstring WideSharedId() {
    return Wide(sharedId);
}

SharedObject& Shared(size_t service) {
    static std::array<SharedObject, serviceCount> objects;
    return objects[service];
}

void RemoveSelfNowAndThen(Registered& object) {
    if (object.Calls() % 32 == 7) {
        object.Remove(WideSharedId());
    }
}

void ToggleShared(size_t service) {
    SharedObject& shared = Shared(service);
    const std::lock_guard guard(shared.lock);
    if (shared.object == nullptr) {
        shared.object = MakeRegistered(allServices[service]);
        shared.object->whileInside = [object = shared.object.get()] { RemoveSelfNowAndThen(*object); };
    }
    if (shared.isSet) {
        shared.object->Remove(WideSharedId());
    } else {
        shared.object->Set(WideSharedId());
    }
    shared.isSet = !shared.isSet;
}

// With the door held. Whether a service is refused depends on the agent of that moment.
void EnterAndLeave(const std::string& productId, uint32_t mask) {
    VsMsgbus* instance = nullptr;
    Call<&VsMsgbusEntry>(productId.c_str(), mask, &TheSink(), &instance);
    ASSERT_NE(instance, nullptr);
    EXPECT_NE(Call<&GetMsgbusClient>(), nullptr);
    EXPECT_TRUE(Call<&VsMsgbusExit>(productId.c_str(), instance));
}

// A client that the watcher is stopping is not asked to unregister any more: the registration ends with the client.
bool StaysRegistered(const std::string& productId, const Trouble::Absence& noTrouble) {
    return !WaitUntil([&] { return ny_sim_has_property_provider(productId.c_str()) == 0 || !noTrouble.Lasts(); });
}

void EncryptAndDecrypt(uint32_t size) {
    unsigned char plain[64] = {};
    std::memset(plain, 'x', sizeof plain);
    unsigned char secret[256] = {};
    unsigned char again[256] = {};
    unsigned int secretSize = 0;
    unsigned int againSize = 0;
    const unsigned int plainSize = size % sizeof plain + 1;
    if (Call<&VsKitMsgbusEncryptData>(plain, plainSize, secret, &secretSize, uint64_t{1}) == 0 &&
        Call<&VsKitMsgbusDecryptData>(secret, secretSize, again, &againSize, uint64_t{1}) == 0) {
        EXPECT_EQ(againSize, plainSize);
        EXPECT_EQ(std::memcmp(plain, again, plainSize), 0);
    }
    Call<&VsKitMsgbusHashBuffer>(plain, plainSize, nullptr, &againSize, uint64_t{1});
    EXPECT_EQ(Call<&VsKitMsgbusEncryptData>(nullptr, 1U, secret, &secretSize, uint64_t{0}), -1);
}

void AskForConstants() {
    EXPECT_EQ(Call<&VsKitMsgbusIsRunningInFIPSMode>(1), 0);
    EXPECT_EQ(Call<&VsKitMsgbusDecodeData>(1, 2), 0);
    EXPECT_EQ(Call<&VsKitMsgbusEncodeData>(1, 2), 0);
    EXPECT_EQ(Call<&VsKitMsgbusDecodeAndDecryptData>(1), 0);
    EXPECT_EQ(Call<&VsKitMsgbusEncryptAndEncodeData>(1), 0);
}

void AskForInformation(uint32_t index) {
    VsKitMsgbus::lpc_buffer text{};
    Call<&VsKitMsgbusGetInformation>(index, &text);
    Call<&VsKitMsgbusGetInfoByKeyName>("Version", &text);
    CallRelease(text);
    unsigned int mode = 0;
    Call<&VsKitMsgbusManagedMode>(&mode);
}

void OpenLibrary() {
    ny_dl_t library{};
    ASSERT_EQ(Call<&ny_dl_open>("LogLib.dll", 0U, &library), 0U);
    EXPECT_NE(Call<&ny_dl_sym>(&library, "getLogManager"), nullptr);
    Call<&ny_dl_close>(&library);
    EXPECT_NE(Call<&ny_dl_open>("no such library.dll", 0U, &library), 0U);
    char text[260];
    EXPECT_EQ(Call<&ny_dl_error>(text, 260), 0U);
}

void UseTempBuffers(size_t size) {
    ny_temp_buffer_t buffer;
    ny_temp_buffer_t copy;
    Call<&ny_temp_buffer_init>(&buffer);
    Call<&ny_temp_buffer_init>(&copy);
    ASSERT_EQ(Call<&ny_temp_buffer_reserve>(&buffer, size), 0U);
    std::memset(Call<&ny_temp_buffer_get>(&buffer), 'x', Call<&ny_temp_buffer_capacity>(&buffer));
    ASSERT_EQ((Call<&ny_temp_buffer_copy>(&copy, static_cast<const ny_temp_buffer_t*>(&buffer))), 0U);
    EXPECT_EQ(*Call<&ny_temp_buffer_address_of>(&buffer), nullptr);
    Call<&ny_temp_buffer_uninit>(&copy);
    Call<&ny_temp_buffer_uninit>(&buffer);
}

void CallWithoutAnything() {
    VsMsgbus* instance = nullptr;
    EXPECT_FALSE(VsKitMsgbusSetCollectProperties(nullptr, nullptr, nullptr));
    EXPECT_FALSE(VsKitMsgbusSetEnforcePolicy(nullptr, nullptr, nullptr));
    EXPECT_FALSE(VsKitMsgbusSetTaskEnforcer(nullptr, nullptr, nullptr));
    EXPECT_FALSE(VsKitMsgbusSetUpdateNotify(nullptr, nullptr, nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"nobody"));
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(L"nobody"));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(nullptr));
    VsKitMsgbusFreeTaskCookie(L"nobody", nullptr);
    UpdateMsgbusTaskStatus(nullptr, 2);
    const std::lock_guard guard(Door());
    EXPECT_FALSE(VsMsgbusEntry(nullptr, allServicesMask, &TheSink(), &instance));
    EXPECT_TRUE(VsMsgbusExit("nobody", nullptr));
}

std::wstring AnyProduct(uint32_t number) {
    return Wide(number % (productCount + 1) == productCount ? sharedId : ProductId(number % (productCount + 1)));
}

void CallAboutTasks(uint32_t number) {
    Call<&UpdateMsgbusTaskStatus>(L"task of PRODUCT1", static_cast<int>(number % 8));
    try {
        Call<&VsKitMsgbusFreeTaskCookie>(AnyProduct(number).c_str(), nullptr);
    } catch (...) {
        ADD_FAILURE() << "an export has let an exception out";
    }
}

void RegisterHealthCheck(uint32_t number) {
    Call<&VsKitHealthCheckRegisterCB>(AnyProduct(number).c_str(), [] {});
}

}  // namespace

std::mutex& Door() {
    static std::mutex door;
    return door;
}

struct Actions {
    static constexpr ExportCaller::Action all[] = {
        {"Entry and Exit", 2,
         [](ExportCaller& caller) {
             const std::lock_guard guard(Door());
             const Trouble::Absence noTrouble;
             EnterAndLeave(caller.id, caller.random.OneIn(2) ? allServicesMask : caller.random.Below(0x4000));
             EXPECT_FALSE(StaysRegistered(caller.id, noTrouble));
         }},
        {"Set and Remove of its own", 20, [](ExportCaller& caller) { caller.ToggleOwn(); }},
        {"Set and Remove of all threads'", 10,
         [](ExportCaller& caller) { ToggleShared(caller.random.Below(serviceCount)); }},
        {"bad arguments", 10, [](ExportCaller&) { CallWithoutAnything(); }},
        {"EnforceLocalPolicy", 2,
         [](ExportCaller& caller) { Call<&VsKitEnforceLocalPolicy>(AnyProduct(caller.random.Below(100)).c_str()); }},
        {"crypto", 20, [](ExportCaller& caller) { EncryptAndDecrypt(caller.random.Below(64)); }},
        {"constant answers", 5, [](ExportCaller&) { AskForConstants(); }},
        {"information", 20, [](ExportCaller& caller) { AskForInformation(caller.random.Below(12)); }},
        {"tasks", 20, [](ExportCaller& caller) { CallAboutTasks(caller.random.Below(100)); }},
        {"health check", 5, [](ExportCaller& caller) { RegisterHealthCheck(caller.random.Below(100)); }},
        {"libraries", 5, [](ExportCaller&) { OpenLibrary(); }},
        {"temporary buffers", 10, [](ExportCaller& caller) { UseTempBuffers(caller.random.Below(1024)); }},
    };
};

ExportCaller::ExportCaller(uint64_t seed, std::string productId)
    : random(seed), id(std::move(productId)), wideId(Wide(id)) {}

ExportCaller::~ExportCaller() {
    for (const auto& object : own) {
        if (object != nullptr) {
            object->Remove(wideId);
        }
    }
}

const ExportCaller::Action& ExportCaller::Next() {
    if (firsts < std::size(Actions::all)) {
        return Actions::all[firsts++];
    }
    uint32_t sum = 0;
    for (const Action& action : Actions::all) {
        sum += action.weight;
    }
    uint32_t choice = random.Below(sum);
    const Action* action = Actions::all;
    while (choice >= action->weight) {
        choice -= action->weight;
        ++action;
    }
    return *action;
}

void ExportCaller::ToggleOwn() {
    const uint32_t service = random.Below(serviceCount);
    std::unique_ptr<Registered>& object = own[service];
    if (object != nullptr) {
        object->Remove(wideId);
        object.reset();
    } else {
        object = MakeRegistered(allServices[service]);
        object->Set(wideId);
    }
}

void CallFromInside() {
    thread_local uint32_t rounds = 0;
    static std::atomic<uint32_t> calls = 0;
    if (rounds != 0) {
        return;  // in a callback that a call from inside has led to
    }
    ++rounds;
    const uint32_t number = ++calls;
    switch (number % 8) {
        case 0: Call<&UpdateMsgbusTaskStatus>(L"task of PRODUCT2", 6); break;
        case 1: AskForInformation(number % 12); break;
        case 2: EncryptAndDecrypt(number); break;
        case 3: CallAboutTasks(number); break;
        case 4: RegisterHealthCheck(number); break;
        case 5:
            if (const std::unique_lock guard(Door(), std::try_to_lock); guard.owns_lock()) {
                EnterAndLeave("INSIDE", allServicesMask);
            }
            break;
        case 6:
            if (number % 64 == 6) {
                Call<&VsKitEnforceLocalPolicy>(AnyProduct(number).c_str());
            }
            break;
        default: break;
    }
    --rounds;
}

void ForgetShared() {
    for (size_t service = 0; service < serviceCount; ++service) {
        SharedObject& shared = Shared(service);
        const std::lock_guard guard(shared.lock);
        if (shared.object != nullptr) {
            shared.object->Remove(WideSharedId());
        }
        shared.isSet = false;
    }
}
