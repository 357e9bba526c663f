// The container of service objects.
#include "msgbus/instance/VsMsgbusIoContainer.h"

#include <gmock/gmock.h>

#include "msgbus/instance/FakeIo.h"
#include "values/AgentException.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

class VsMsgbusIoContainerTest : public testing::Test {
protected:
    std::shared_ptr<FakeIo> Make(const std::string& name) { return std::make_shared<FakeIo>(log, name); }

    LineLog log;
    VsMsgbusIoContainer container;
};

// The code of the agent exception that AddIo raises; 0 when it raises none.
int32_t CodeOfAdding(VsMsgbusIoContainer& container, int32_t kind, VsMsgbusIoPointer io) {
    try {
        container.AddIo(kind, std::move(io));
    } catch (const corvane::ny::utils::exception& thrown) {
        return thrown.Code();
    }
    return 0;
}

TEST_F(VsMsgbusIoContainerTest, FindsNothingWhenItIsEmpty) {
    EXPECT_EQ(container.FindIo(IoKindUpdate), nullptr);
    EXPECT_EQ(container.FindIo(0), nullptr);
}

TEST_F(VsMsgbusIoContainerTest, FindsWhatWasAddedByItsKind) {
    const auto first = Make("first");
    const auto second = Make("second");
    container.AddIo(IoKindPolicy, first);
    container.AddIo(IoKindTask, second);
    EXPECT_EQ(container.FindIo(IoKindPolicy), first.get());
    EXPECT_EQ(container.FindIo(IoKindTask), second.get());
    EXPECT_EQ(container.FindIo(IoKindProperty), nullptr);
}

TEST_F(VsMsgbusIoContainerTest, KeepsTheFirstOfAKindAndRefusesTheSecond) {
    const auto first = Make("first");
    container.AddIo(IoKindPolicy, first);
    EXPECT_EQ(CodeOfAdding(container, IoKindPolicy, Make("second")), 18);
    EXPECT_EQ(container.FindIo(IoKindPolicy), first.get());
    EXPECT_THAT(log.Lines(), ElementsAre("second destroyed"));
}

TEST_F(VsMsgbusIoContainerTest, OverwritesAnEntryWithoutAnObject) {
    container.AddIo(IoKindPolicy, nullptr);
    EXPECT_EQ(container.FindIo(IoKindPolicy), nullptr);
    EXPECT_THAT(container.CopyIos(), ElementsAre(Key(IoKindPolicy)));
    const auto io = Make("io");
    EXPECT_EQ(CodeOfAdding(container, IoKindPolicy, io), 0);
    EXPECT_EQ(container.FindIo(IoKindPolicy), io.get());
}

TEST_F(VsMsgbusIoContainerTest, AsksItsOwnFindIoBeforeItAdds) {
    class Full : public VsMsgbusIoContainer {
    public:
        VsMsgbusIo* FindIo(int32_t /*kind*/) override { return &io; }
        VsMsgbusIo io;
    };
    Full full;
    EXPECT_EQ(CodeOfAdding(full, IoKindPolicy, Make("io")), 18);
    EXPECT_THAT(full.CopyIos(), IsEmpty());
}

TEST_F(VsMsgbusIoContainerTest, KeepsItsEntriesInAscendingOrder) {
    for (const int32_t kind : {IoKindPolicy, IoKindProperty, IoKindTask, IoKindUpdate}) {
        container.AddIo(kind, Make("io"));
    }
    EXPECT_THAT(container.CopyIos(), ElementsAre(Key(256), Key(2048), Key(4096), Key(8192)));
}

TEST_F(VsMsgbusIoContainerTest, IsLeftEmptyByTakingAndTakesTheSameKindsAgain) {
    container.AddIo(IoKindPolicy, Make("first"));
    EXPECT_THAT(container.TakeIos(), ElementsAre(Key(IoKindPolicy)));
    EXPECT_EQ(container.FindIo(IoKindPolicy), nullptr);
    EXPECT_EQ(CodeOfAdding(container, IoKindPolicy, Make("second")), 0);
}

TEST_F(VsMsgbusIoContainerTest, CopyOutlivesWhatIsTaken) {
    container.AddIo(IoKindPolicy, Make("io"));
    const VsMsgbusIoMap copy = container.CopyIos();
    container.TakeIos();
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_THAT(copy, ElementsAre(Key(IoKindPolicy)));
}

}  // namespace
