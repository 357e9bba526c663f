// The life of what a module registers with the bridge is the same for all four services. Each test of this room runs
// for each of them; what a service has of its own is tested in that service's room.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "registration/PolicyService.h"
#include "registration/PropertyService.h"
#include "registration/TaskService.h"
#include "registration/UpdateService.h"
#include "support/BridgeTest.h"
#include "support/Checkpoint.h"

using AllServices = testing::Types<PropertyService, PolicyService, TaskService, UpdateService>;
// The services whose modules are called by one thread at a time.
using ServicesWithTurns = testing::Types<PropertyService, PolicyService, UpdateService>;
// The services whose modules are asked for a log level.
using ServicesWithLogLevel = testing::Types<PropertyService, PolicyService>;

// The names of the types in the names of the tests.
class ServiceNames {
public:
    template <typename Service>
    static std::string GetName(int /*index*/) {
        switch (Service::mask) {
            case VsMsgbusServiceProperty: return "Property";
            case VsMsgbusServicePolicy: return "Policy";
            case VsMsgbusServiceTask: return "Task";
            default: return "Update";
        }
    }
};

inline constexpr char productId[] = "PRODUCT1000";
inline constexpr wchar_t wideId[] = L"PRODUCT1000";
inline constexpr char otherId[] = "PRODUCT2000";
inline constexpr wchar_t wideOtherId[] = L"PRODUCT2000";

// A module in the table for as long as the object lives, or until Remove.
template <typename Service>
class RegisteredModule : public ModuleRegistration<decltype(Service::Module::object), Service::Set, Service::Remove> {
public:
    RegisteredModule(const std::string& ofProduct, typename Service::Module& module,
                     VsKitMsgbus::ILogSink* sink = nullptr)
        : RegisteredModule::ModuleRegistration(ofProduct, module.object, sink) {}
};

// One product in the bridge for the service, the agent there, and no module registered yet.
template <typename Service>
class RegistrationTest : public ProductTest {
protected:
    using Module = typename Service::Module;
    using Request = typename Service::Request;

    RegistrationTest() : ProductTest(Service::mask) { Service::Prepare(); }

    void TearDown() override {
        ProductTest::TearDown();
        EXPECT_EQ(ny_sim_lent_tasks(), 0U);
    }

    static std::string OutcomeOf(const std::string& ofProduct = productId) {
        return Service::OutcomeOf(Request(ofProduct));
    }

    // The agent asks for the product, and this module answers.
    static void ExpectCalled(Module& module, const std::string& ofProduct = productId) {
        EXPECT_EQ(Service::Ask(ofProduct), Service::asked) << ofProduct;
        EXPECT_EQ(module.object.log.Take(), Service::NotesOf(ofProduct)) << ofProduct;
    }

    // The agent asks for the product, is answered, and neither of the test's two modules is called.
    void ExpectNobodyCalled(const std::string& ofProduct = productId) {
        EXPECT_EQ(Service::Ask(ofProduct), Service::askedInVain) << ofProduct;
        EXPECT_THAT(module.object.log.Take(), testing::IsEmpty()) << ofProduct;
        EXPECT_THAT(otherModule.object.log.Take(), testing::IsEmpty()) << ofProduct;
    }

    // The notes that the module makes of a request that ends when the bridge asks it for its log level.
    static std::vector<std::string> NotesUntilLogLevel() {
        std::vector<std::string> notes = Service::NotesOf(productId);
        notes.erase(std::ranges::find(notes, "GetLogLevel") + 1, notes.end());
        return notes;
    }

    // The agent has no registration to call.
    static void ExpectUnknownToAgent(const std::string& ofProduct = productId) {
        EXPECT_EQ(Request(ofProduct).Answer(), NY_SIM_NOT_REGISTERED) << ofProduct;
    }

    // Returns when the watcher has restarted the client and attached so many products.
    void Upgrade(const std::string& version = "5.7.1", size_t products = 1) {
        UpgradeAndWait(version, "full", products, Service::registering);
    }

    // From now on `held` holds up each call of `module`.
    void Block() {
        module.act = [this] {
            held.Stop();
            order.Add("module is out");
        };
    }

    Module module;
    Module otherModule;
    Checkpoint held;
    LineLog order;
};
