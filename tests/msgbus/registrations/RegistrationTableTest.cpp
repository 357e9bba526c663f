// The table of modules' registrations: the first one of an id wins, and a removal waits for calls on other threads.
#include "msgbus/registrations/RegistrationTable.h"

#include <gmock/gmock.h>

#include <functional>
#include <thread>

#include "support/Event.h"
#include "support/LineLog.h"

namespace {

using testing::ElementsAre;

// Tells when it is destroyed.
class Record {
public:
    Record(LineLog* lineLog, std::string recordName) : log(*lineLog), name(std::move(recordName)) {}
    ~Record() { log.Add(name + " destroyed"); }

    const std::string& Name() const { return name; }

private:
    LineLog& log;
    const std::string name;
};

class RegistrationTableTest : public testing::Test {
protected:
    void Set(const wchar_t* id, const std::string& name) { table.Set(id, &log, name); }

    // The name of the id's record; empty when there is none.
    std::string NameOf(const wchar_t* id) {
        std::string name;
        const bool isThere = table.With(id, [&](Record& record, auto&&) { name = record.Name(); });
        EXPECT_EQ(isThere, !name.empty());
        return name;
    }

    // Leaves a thread inside a call of the record "P" until Leave(); it then notes whether the record was removed.
    void Enter() {
        inside = std::thread([this] {
            table.With(L"P", [this](Record& record, auto&& wasRemoved) {
                isInside.Set();
                EXPECT_TRUE(mayLeave.Wait());
                log.Add(record.Name() + (wasRemoved() ? " was removed" : " is there"));
            });
        });
        ASSERT_TRUE(isInside.Wait());
    }
    void Leave() {
        mayLeave.Set();
        inside.join();
    }

    // Has a second thread wait for its turn with the record "P".
    void StartWaiting() {
        waiting = std::thread([this] {
            table.With(L"P", [this](Record&, auto&&) { isCalled = true; });
            isOut.Set();
        });
        ASSERT_FALSE(isOut.Wait(std::chrono::milliseconds(50)));
    }

    LineLog log;
    RegistrationTable<Record, CallGate::Admission::OneThreadAtATime> table;
    Event isInside;
    Event mayLeave;
    std::thread inside;
    std::thread waiting;
    Event isOut;
    bool isCalled = false;
};

TEST_F(RegistrationTableTest, HasNothingAtFirst) {
    EXPECT_EQ(NameOf(L"P"), "");
    table.Remove(L"P");
}

TEST_F(RegistrationTableTest, KeepsTheFirstRegistrationOfAnIdAndDropsTheSecond) {
    Set(L"P", "first");
    Set(L"P", "second");
    EXPECT_THAT(log.Lines(), ElementsAre("second destroyed"));
    EXPECT_EQ(NameOf(L"P"), "first");
}

TEST_F(RegistrationTableTest, NeverFreesTheSecondRegistrationWhereThatIsAskedFor) {
    // Outlives the record that is never freed.
    static LineLog keptLog;
    {
        RegistrationTable<Record, CallGate::Admission::Together, DuplicateRecord::Leaked> leaking;
        leaking.Set(L"P", &keptLog, "first");
        leaking.Set(L"P", &keptLog, "second");
        EXPECT_TRUE(leaking.With(L"P", [](Record& record, auto&&) { EXPECT_EQ(record.Name(), "first"); }));
    }
    EXPECT_THAT(keptLog.Lines(), ElementsAre("first destroyed"));
}

TEST_F(RegistrationTableTest, TellsIdsApart) {
    Set(L"P", "first");
    Set(L"p", "second");
    EXPECT_EQ(NameOf(L"P"), "first");
    EXPECT_EQ(NameOf(L"p"), "second");
    EXPECT_EQ(NameOf(L""), "");
}

TEST_F(RegistrationTableTest, ForgetsWhatIsRemoved) {
    Set(L"P", "first");
    table.Remove(L"P");
    EXPECT_THAT(log.Take(), ElementsAre("first destroyed"));
    EXPECT_EQ(NameOf(L"P"), "");
    Set(L"P", "second");
    EXPECT_EQ(NameOf(L"P"), "second");
}

TEST_F(RegistrationTableTest, LetsOneThreadIntoARecordAtATime) {
    Set(L"P", "first");
    Enter();
    Event isServed;
    std::thread second([&] {
        EXPECT_EQ(NameOf(L"P"), "first");
        isServed.Set();
    });
    EXPECT_FALSE(isServed.Wait(std::chrono::milliseconds(50)));
    Leave();
    second.join();
    EXPECT_TRUE(isServed.IsSet());
}

TEST_F(RegistrationTableTest, LetsSeveralThreadsIntoARecordWhereThatIsAllowed) {
    RegistrationTable<Record, CallGate::Admission::Together> open;
    open.Set(L"P", &log, "first");
    open.With(L"P", [&](Record&, auto&&) {
        std::thread([&] { EXPECT_TRUE(open.With(L"P", [](Record&, auto&&) {})); }).join();
    });
}

TEST_F(RegistrationTableTest, LetsTheThreadInsideARecordInAgain) {
    Set(L"P", "first");
    table.With(L"P", [this](Record&, auto&&) { EXPECT_EQ(NameOf(L"P"), "first"); });
}

TEST_F(RegistrationTableTest, IsOpenToOtherThreadsDuringACall) {
    Set(L"P", "first");
    table.With(L"P", [this](Record&, auto&&) {
        std::thread([this] {
            Set(L"Q", "second");
            EXPECT_EQ(NameOf(L"Q"), "second");
            table.Remove(L"Q");
        }).join();
    });
}

TEST_F(RegistrationTableTest, LeavesTheRecordWhenACallThrows) {
    Set(L"P", "first");
    EXPECT_THROW(table.With(L"P", [](Record&, auto&&) { throw 1; }), int);
    EXPECT_EQ(NameOf(L"P"), "first");
    table.Remove(L"P");
    EXPECT_THAT(log.Lines(), ElementsAre("first destroyed"));
}

TEST_F(RegistrationTableTest, RemovalWaitsForTheCallOnAnotherThread) {
    Set(L"P", "first");
    Enter();
    Event isRemoved;
    std::thread removing([&] {
        table.Remove(L"P");
        log.Add("removed");
        isRemoved.Set();
    });
    EXPECT_FALSE(isRemoved.Wait(std::chrono::milliseconds(50)));
    EXPECT_EQ(NameOf(L"P"), "") << "the record can still be found";
    Leave();
    removing.join();
    EXPECT_EQ(log.Lines().front(), "first was removed");
    EXPECT_THAT(log.Lines(), testing::UnorderedElementsAre("first was removed", "removed", "first destroyed"));
}

TEST_F(RegistrationTableTest, RemovalFromInsideTheCallReturnsAtOnceAndTheRecordLastsUntilItsEnd) {
    Set(L"P", "first");
    table.With(L"P", [this](Record& record, auto&& wasRemoved) {
        table.Remove(L"P");
        log.Add("removed");
        EXPECT_TRUE(wasRemoved());
        EXPECT_EQ(record.Name(), "first");
        EXPECT_EQ(NameOf(L"P"), "");
        Set(L"P", "second");
    });
    EXPECT_THAT(log.Lines(), ElementsAre("removed", "first destroyed"));
    EXPECT_EQ(NameOf(L"P"), "second");
}

// A thread that waits for its turn when the record is removed does not call the module any more, and Remove does not
// wait for it.
TEST_F(RegistrationTableTest, RemovalKeepsOutACallThatWaitsForItsTurn) {
    Set(L"P", "first");
    table.With(L"P", [&](Record&, auto&&) {
        StartWaiting();
        table.Remove(L"P");
        EXPECT_TRUE(isOut.Wait()) << "although the first call is still inside";
    });
    waiting.join();
    EXPECT_FALSE(isCalled);
    EXPECT_THAT(log.Lines(), ElementsAre("first destroyed"));
}

TEST_F(RegistrationTableTest, TurnsAwayACallThatWaitsForAThreadInALongCallOfTheAgent) {
    Set(L"P", "first");
    table.With(L"P", [&](Record&, auto&&) {
        StartWaiting();
        const LongAgentCall longCall;
        EXPECT_TRUE(isOut.Wait());
        EXPECT_EQ(NameOf(L"P"), "first") << "the thread inside is welcome";
    });
    waiting.join();
    EXPECT_FALSE(isCalled);
    EXPECT_EQ(NameOf(L"P"), "first");
}

TEST_F(RegistrationTableTest, TurnsNoCallAwayForAThreadOutside) {
    Set(L"P", "first");
    Enter();
    StartWaiting();
    {
        const LongAgentCall longCall;
        EXPECT_FALSE(isOut.Wait(6 * CallGate::patienceInterval));
    }
    Leave();
    waiting.join();
    EXPECT_TRUE(isCalled);
}

}  // namespace
