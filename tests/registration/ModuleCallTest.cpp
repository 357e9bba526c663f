// The bridge calls a module, and answers the agent when the module throws.
#include <atomic>
#include <climits>
#include <new>
#include <stdexcept>

#include "../../values/AgentException.h"
#include "registration/RegistrationTest.h"
#include "support/OnPurpose.h"
#include "support/ThrowingSink.h"

using corvane::ny::utils::exception;
using testing::IsEmpty;

namespace {

constexpr char unknown[] = " due to unknown exception";

std::string Known(int32_t code) {
    return ", exception: [" + std::to_string(code) + "]";
}

template <typename Service>
class ModuleCall : public RegistrationTest<Service> {};
TYPED_TEST_SUITE(ModuleCall, AllServices, ServiceNames);

TYPED_TEST(ModuleCall, IsNoReasonForALine) {
    const RegisteredModule<TypeParam> registration(productId, this->module, &this->modulesSink);
    this->ExpectCalled(this->module);
    this->ExpectCalled(this->module);
    EXPECT_THAT(this->modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
}

TYPED_TEST(ModuleCall, ThatFindsNoModuleIsToldToTheSinkForPoliciesAlone) {
    this->ExpectNobodyCalled();
    EXPECT_EQ(this->sink.log.Lines(), TypeParam::LinesInVain());
}

TYPED_TEST(ModuleCall, IsOnTheAgentsThread) {
    std::vector<DWORD> threads;
    this->module.act = [&] { threads.push_back(::GetCurrentThreadId()); };
    if constexpr (requires { this->module.object.getLogLevel; }) {
        this->module.object.getLogLevel = [&] {
            threads.push_back(::GetCurrentThreadId());
            return 0;
        };
    }
    const RegisteredModule<TypeParam> registration(productId, this->module);
    TypeParam::ForEachRequest(productId, [&](const auto& request) {
        EXPECT_EQ(request.Answer(), NY_OK);
        EXPECT_NE(request.ThreadId(), 0U);
        EXPECT_THAT(std::exchange(threads, {}),
                    testing::AllOf(testing::Not(IsEmpty()), testing::Each(request.ThreadId())));
    });
}

// A module's program has a C++ runtime of its own. The bridge catches its exceptions all the same.
template <typename Service>
class ModuleThrows : public ModuleCall<Service> {
protected:
    // Each call of the module throws. The agent gets `outcome`, and the sink lines that end with `reason`. The next
    // request succeeds.
    void ExpectFailure(std::function<void()> doThrow, const std::string& outcome, const std::string& reason) {
        this->module.act = std::move(doThrow);
        const RegisteredModule<Service> registration(productId, this->module, &this->modulesSink);
        const size_t handles = ny_sim_live_handles(NY_SIM_ANY);
        EXPECT_EQ(Service::Ask(productId), outcome);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), handles);
        EXPECT_EQ(WithoutLogLevel(this->module.object.log.Take()), WithoutLogLevel(Service::NotesOf(productId)));
        EXPECT_EQ(this->sink.log.Take(), Service::LinesOfFailure(productId, reason));
        this->module.act = {};
        this->ExpectCalled(this->module);
        EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
        EXPECT_THAT(this->modulesSink.log.Lines(), IsEmpty());
    }

    const OnPurpose usualMistakes{"CALLBACK-THREW"};

private:
    // A collector that has thrown is not asked for its log level; an enforcer was asked before.
    static std::vector<std::string> WithoutLogLevel(std::vector<std::string> notes) {
        std::erase(notes, "GetLogLevel");
        return notes;
    }
};
TYPED_TEST_SUITE(ModuleThrows, AllServices, ServiceNames);

TYPED_TEST(ModuleThrows, WhatIsNotTheAgentsAndFails) {
    const std::function<void()> throwing[] = {
        [] { throw 42; },
        [] { throw std::bad_alloc(); },
        [] { throw std::runtime_error("a reason of its own"); },
    };
    for (const auto& doThrow : throwing) {
        this->ExpectFailure(doThrow, TypeParam::askedAndFailed, unknown);
    }
}

TYPED_TEST(ModuleThrows, TheAgentsExceptionAndFailsWithItsCodeWhereTheServiceTellsIt) {
    for (const int32_t code : {77, INT_MIN}) {
        this->ExpectFailure([code] { throw exception(code); }, TypeParam::FailedWith(code), Known(code));
    }
}

TYPED_TEST(ModuleThrows, NamesTheProductInItsOwnLetters) {
    constexpr char id[] = "\xC3\x9C-%s";
    const Product other(id, nullptr, TypeParam::mask);
    this->module.act = [] { throw 42; };
    const RegisteredModule<TypeParam> registration(id, this->module);
    EXPECT_EQ(TypeParam::Ask(id), TypeParam::askedAndFailed);
    EXPECT_EQ(this->sink.log.Lines(), TypeParam::LinesOfFailure(id, unknown));
}

TYPED_TEST(ModuleThrows, WithoutASinkNothingIsLost) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    VsMsgbusExit("PRODUCT9000", nullptr);
    this->module.act = [] { throw exception(77); };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    EXPECT_EQ(TypeParam::Ask(productId), TypeParam::FailedWith(77));
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
}

TYPED_TEST(ModuleThrows, AndSoDoesTheSink) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    ThrowingSink throwing;
    VsMsgbusExit("PRODUCT9000", nullptr);
    const Product other(otherId, &throwing, TypeParam::mask);
    this->module.act = [] { throw exception(77); };
    const RegisteredModule<TypeParam> registration(otherId, this->module);
    EXPECT_EQ(TypeParam::Ask(otherId), TypeParam::FailedWith(77));
    EXPECT_EQ(throwing.calls, TypeParam::LinesOfFailure(otherId, "").size());
}

template <typename Service>
class LogLevelThrows : public ModuleCall<Service> {};
TYPED_TEST_SUITE(LogLevelThrows, ServicesWithLogLevel, ServiceNames);

TYPED_TEST(LogLevelThrows, AndTheRequestFailsButTheNextOneDoesNot) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    const auto usual = this->module.object.getLogLevel;
    const RegisteredModule<TypeParam> registration(productId, this->module, &this->modulesSink);
    const auto expectFailure = [&](std::function<int32_t()> throwing, int32_t code, const std::string& reason) {
        this->module.object.getLogLevel = std::move(throwing);
        EXPECT_EQ(TypeParam::Ask(productId), TypeParam::FailedWith(code) + TypeParam::givenBeforeLogLevel);
        EXPECT_EQ(this->module.object.log.Take(), this->NotesUntilLogLevel());
        EXPECT_EQ(this->sink.log.Take(), TypeParam::LinesOfFailure(productId, reason));
        this->module.object.getLogLevel = usual;
        this->ExpectCalled(this->module);
        EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
        EXPECT_THAT(this->modulesSink.log.Lines(), IsEmpty());
    };
    expectFailure([]() -> int32_t { throw 42; }, 3, unknown);
    expectFailure([]() -> int32_t { throw exception(5); }, 5, Known(5));
}

}  // namespace
