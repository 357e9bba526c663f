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

using AllServices = testing::Types<PropertyService, PolicyService, TaskService, UpdateService>;
// The services whose modules are called by one thread at a time.
using ServicesWithTurns = testing::Types<PropertyService, PolicyService, UpdateService>;

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
    RegisteredModule(const std::string& ofProduct, typename Service::Module& module)
        : RegisteredModule::ModuleRegistration(ofProduct, module.object) {}
};

// One product in the bridge for the service, the agent there, and no module registered yet.
template <typename Service>
class RegistrationTest : public InstalledAgentTest {
protected:
    using Module = typename Service::Module;
    using Request = typename Service::Request;

    RegistrationTest() { Service::Prepare(); }

    // The products leave before the machine that they are on goes.
    void TearDown() override {
        product.Exit();
        BridgeTest::TearDown();
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

    // The agent has no registration to call.
    static void ExpectUnknownToAgent(const std::string& ofProduct = productId) {
        EXPECT_EQ(Request(ofProduct).Answer(), NY_SIM_NOT_REGISTERED) << ofProduct;
    }

    // Returns when the watcher has restarted the client and attached so many products.
    void Upgrade(const std::string& version = "5.7.1", size_t products = 1) {
        ny_sim_clear_calls();
        environment.UpgradeAgent(version);
        ASSERT_TRUE(WatcherCalls(Service::registering, products));
    }

    // From now on `module` is inside from `isInside` until `mayLeave`.
    void Block() {
        module.act = [this] {
            isInside.Set();
            EXPECT_TRUE(mayLeave.Wait());
            order.Add("module is out");
        };
    }

    Module module;
    Module otherModule;
    Event isInside;
    Event mayLeave;
    LineLog order;
    Product product{productId, &sink, Service::mask};
};
