// The one place that knows every service object.
#include "msgbus/instance/ServiceFactory.h"

#include <gmock/gmock.h>

namespace {

constexpr int32_t kinds[] = {IoKindUpdate, IoKindTask, IoKindPolicy, IoKindProperty};
constexpr int32_t kindOfNoService = 1;

TEST(ServiceFactory, MakesOneServiceOfEachKind) {
    for (const int32_t kind : kinds) {
        const VsMsgbusIoPointer made = MakeService(kind, nullptr);
        ASSERT_NE(made, nullptr) << kind;
        for (const int32_t asked : kinds) {
            EXPECT_EQ(IsServiceOfKind(asked, *made), asked == kind) << asked << " " << kind;
        }
        EXPECT_FALSE(IsServiceOfKind(kindOfNoService, *made));
    }
}

TEST(ServiceFactory, MakesNothingOfAnUnknownKind) {
    EXPECT_EQ(MakeService(kindOfNoService, nullptr), nullptr);
    EXPECT_EQ(MakeService(0, nullptr), nullptr);
}

// The base class has empty bodies for the functions that a kind of service may leave out.
TEST(ServiceFactory, IsNotNeededForAServiceThatRegistersNothing) {
    class Plain final : public VsMsgbusIo {};
    Plain io;
    EXPECT_NO_THROW(io.RegisterProduct("PRODUCT1000"));
    EXPECT_NO_THROW(io.UnregisterProduct("PRODUCT1000"));
    EXPECT_NO_THROW(io.UnregisterAll());
}

}  // namespace
