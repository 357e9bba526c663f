#include "soak/Modules.h"

#include <gtest/gtest.h>

#include "VsMsgbus.h"
#include "soak/ExportCalls.h"

namespace {

std::atomic<uint64_t> callsOfModules = 0;

class SoakCollector final : public Registered, public VsKitMsgbus::INYCollectProperties {
public:
    void Set(const std::wstring& productId) override {
        EXPECT_TRUE((Call<&VsKitMsgbusSetCollectProperties>(productId.c_str(), this, nullptr)));
    }
    void Remove(const std::wstring& productId) override {
        EXPECT_TRUE(Call<&VsKitMsgbusRemoveCollectProperties>(productId.c_str()));
    }

    void CollectProperties(bool /*full*/, ISet* set) override {
        Enter([&] {
            set->SetProperty(L"general", L"version", L"1.0");
            set->SetProperty(L"general", L"state", L"in soak");
            EXPECT_FALSE(set->SetProperty(L"path", L"name", nullptr));
        });
    }
    int32_t GetLogLevel() override { return 0; }
};

class SoakEnforcer final : public Registered, public VsKitMsgbus::INYEnforcePolicy {
public:
    void Set(const std::wstring& productId) override {
        EXPECT_TRUE((Call<&VsKitMsgbusSetEnforcePolicy>(productId.c_str(), this, nullptr)));
    }
    void Remove(const std::wstring& productId) override {
        EXPECT_TRUE(Call<&VsKitMsgbusRemoveEnforcerPolicy>(productId.c_str()));
    }

    int32_t GetLogLevel() override { return 4; }
    void Reserved() override { ADD_FAILURE() << "this slot is never called"; }
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        Enter([&] {
            Counting counting;
            bag->EnumeratePolicies(productId, &counting);
            bag->EnumerateUserPolicies(productId, &counting, L"user", L"DOMAIN");
            VsKitMsgbus::lpc_buffer dump{};
            bag->Dump(&dump);
            CallRelease(dump);
            bag->GetDigest("PRODUCT0");
        });
    }

private:
    class Counting final : public IPolicyBag::ICallbacks {
    public:
        bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override { return GoOn(); }
        bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override { return GoOn(); }
        bool OnSection(const wchar_t*, const wchar_t*) override { return GoOn(); }
        bool OnSetting(const wchar_t*, const wchar_t*, const wchar_t*) override { return GoOn(); }

    private:
        bool GoOn() { return ++items % 7 != 0; }

        unsigned items = 0;
    };
};

class SoakTaskEnforcer final : public Registered, public VsKitMsgbus::INYTaskEnforcer {
public:
    void Set(const std::wstring& productId) override {
        EXPECT_TRUE((Call<&VsKitMsgbusSetTaskEnforcer>(productId.c_str(), this, nullptr)));
    }
    void Remove(const std::wstring& productId) override {
        EXPECT_TRUE(Call<&VsKitMsgbusRemoveTaskEnforcer>(productId.c_str()));
    }

    int32_t ExecuteTask(const wchar_t* /*taskId*/, ITaskBag* bag) override { return Read(*bag); }
    int32_t UpdateTaskStatus(const wchar_t* /*taskId*/, ITaskBag* bag) override { return Read(*bag); }
    int32_t StopTask(const wchar_t* /*taskId*/, ITaskBag* bag) override { return Read(*bag); }
    int32_t RemoveTask(const wchar_t* /*taskId*/, ITaskBag* bag) override { return Read(*bag); }
    // On the thread of VsKitMsgbusFreeTaskCookie.
    void FreeCookie(void* /*cookie*/) override {
        Enter([] {});
    }

private:
    class Visitor final : public ITaskBag::ISettingVisitor {
    public:
        void BeginSettings() override { ADD_FAILURE() << "this slot is never called"; }
        void VisitSetting(const wchar_t*, const wchar_t*, const wchar_t*) override { ++settings; }

    private:
        unsigned settings = 0;
    };

    int32_t Read(ITaskBag& bag) {
        Enter([&] {
            Visitor visitor;
            bag.CountEntries();
            bag.IterateSettings(&visitor, L"Scan");
            bool deep = false;
            bag.GetBoolean(L"Scan", L"Deep", &deep);
            int32_t depth = 0;
            bag.GetInteger(L"Scan", L"Depth", &depth);
            VsKitMsgbus::lpc_buffer text{};
            bag.GetText(L"Scan", L"Folder", &text);
            bag.GetTaskName(&text);
            CallRelease(text);
        });
        return Succeeded;
    }
};

class SoakUpdateCallback final : public Registered, public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    void Set(const std::wstring& productId) override {
        EXPECT_TRUE((Call<&VsKitMsgbusSetUpdateNotify>(productId.c_str(), this, nullptr)));
    }
    void Remove(const std::wstring& productId) override {
        EXPECT_TRUE(Call<&VsKitMsgbusRemoveUpdateNotify>(productId.c_str()));
    }

    int32_t UpdateNotify(const wchar_t*, const wchar_t*, const wchar_t*, uint32_t* number) override {
        Enter([&] { ++*number; });
        return 1;
    }
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar, VsKit::cp_wchar key, ISet* set) override {
        Enter([&] { EXPECT_TRUE(set->Set(key)); });
        return VsKitMsgbus::ProductReturnNotAvailable;
    }
    int32_t SetProductInfo(const wchar_t*, const wchar_t*, const wchar_t*) override {
        Enter([] {});
        return 0;
    }
};

}  // namespace

Registered::Inside::Inside(Registered& called) : object(called) {
    EXPECT_EQ(object.mark, aliveMark) << "called after its Remove has returned";
    ++object.threadsInside;
    ++callsOfModules;
}

Registered::Inside::~Inside() {
    --object.threadsInside;
}

Registered::~Registered() {
    EXPECT_EQ(threadsInside, 0U) << "Remove has returned although somebody is inside";
    mark = 0;
}

std::unique_ptr<Registered> MakeRegistered(Service service) {
    switch (service) {
        case Service::Property: return std::make_unique<SoakCollector>();
        case Service::Policy: return std::make_unique<SoakEnforcer>();
        case Service::Task: return std::make_unique<SoakTaskEnforcer>();
        case Service::Update: return std::make_unique<SoakUpdateCallback>();
    }
    return nullptr;
}

uint64_t CallsOfModules() {
    return callsOfModules;
}
