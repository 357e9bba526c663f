// The agent's registry key.
#include "msgbus/client/AgentKey.h"

#include <cstring>

#include "support/AgentEnvironment.h"
#include "support/Event.h"

namespace {

class AgentKeyTest : public AgentTest {
protected:
    bool IsSignalled() const { return ::WaitForSingleObject(event, 0) == WAIT_OBJECT_0; }
    bool WaitForSignal() const {
        return ::WaitForSingleObject(event, static_cast<DWORD>(soon.count())) == WAIT_OBJECT_0;
    }
    void TearDown() override {
        key.Close();
        ::CloseHandle(event);
        AgentTest::TearDown();
    }

    HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    AgentKey key;
    AgentVersion version = {};
};

TEST_F(AgentKeyTest, IsNotOpenWhenItIsNotThere) {
    EXPECT_EQ(key.Open(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(key.IsOpen());
    std::strcpy(version, "before");
    EXPECT_EQ(key.ReadVersion(version), ERROR_INVALID_HANDLE);
    EXPECT_THAT(version, testing::Each('\0'));
}

TEST_F(AgentKeyTest, IsOpenUntilItIsClosed) {
    environment.Installer().WriteVersion("5.7.0");
    EXPECT_EQ(key.Open(), ERROR_SUCCESS);
    EXPECT_TRUE(key.IsOpen());
    EXPECT_EQ(key.ReadVersion(version), ERROR_SUCCESS);
    EXPECT_STREQ(version, "5.7.0");
    key.Close();
    EXPECT_FALSE(key.IsOpen());
    key.Close();
}

TEST_F(AgentKeyTest, IsNotOpenAnyMoreWhenItCannotBeOpenedAgain) {
    environment.Installer().WriteVersion("5.7.0");
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    environment.Installer().DeleteAgentKey();
    EXPECT_EQ(key.Open(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(key.IsOpen());
}

TEST_F(AgentKeyTest, SignalsTheNextChangeOnce) {
    environment.Installer().CreateAgentKey();
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    ASSERT_EQ(key.Watch(event), ERROR_SUCCESS);
    EXPECT_FALSE(IsSignalled());
    environment.Installer().WriteVersion("5.7.0");
    EXPECT_TRUE(WaitForSignal());
    ::ResetEvent(event);
    environment.Installer().WriteVersion("5.8.0");
    EXPECT_FALSE(IsSignalled());
    ASSERT_EQ(key.Watch(event), ERROR_SUCCESS);
    environment.Installer().WriteRuntimePath("C:\\agent");
    EXPECT_TRUE(WaitForSignal()) << "the change was below the key";
}

TEST_F(AgentKeyTest, CannotBeWatchedOnceItIsDeleted) {
    environment.Installer().CreateAgentKey();
    ASSERT_EQ(key.Open(), ERROR_SUCCESS);
    environment.Installer().DeleteAgentKey();
    EXPECT_EQ(key.Watch(event), ERROR_KEY_DELETED);
    EXPECT_EQ(key.ReadVersion(version), ERROR_KEY_DELETED);
}

}  // namespace
