// Notifications of changes in the registry.
#include "RegistryFixture.h"

namespace {

constexpr DWORD changeName = REG_NOTIFY_CHANGE_NAME;
constexpr DWORD lastSet = REG_NOTIFY_CHANGE_LAST_SET;

class Notification : public RegistryFixture {
protected:
    Notification() { Touch(key, "A\\B"); }
    ~Notification() override { ::CloseHandle(event); }

    LSTATUS Watch(HKEY watched, DWORD filter, BOOL subtree = TRUE) {
        return ::RegNotifyChangeKeyValue(watched, subtree, filter, event, TRUE);
    }

    bool IsTold() { return ::WaitForSingleObject(event, 0) == WAIT_OBJECT_0; }

    void WriteBelow() {
        const HKEY below = Create(key, "A\\B");
        Write(below, "x", "y");
        ::RegCloseKey(below);
    }

    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
};

TEST_F(Notification, ComesForAValueThatIsWrittenOrDeleted) {
    ASSERT_EQ(Watch(key, lastSet), ERROR_SUCCESS);
    EXPECT_FALSE(IsTold());
    Write(key, "x", "y");
    EXPECT_TRUE(IsTold());
    Watch(key, lastSet);
    EXPECT_EQ(::RegDeleteValueA(key, "none"), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(IsTold());
    EXPECT_EQ(::RegDeleteValueA(key, "X"), ERROR_SUCCESS);
    EXPECT_TRUE(IsTold());
}

TEST_F(Notification, ComesOnce) {
    Watch(key, lastSet);
    Write(key, "x", "y");
    ::ResetEvent(event);
    Write(key, "x", "z");
    EXPECT_FALSE(IsTold());
}

TEST_F(Notification, ResetsItsEventWhenItIsAskedFor) {
    ::SetEvent(event);
    ASSERT_EQ(::RegNotifyChangeKeyValue(key, TRUE, lastSet, event, TRUE), ERROR_SUCCESS);
    EXPECT_FALSE(IsTold());
    Write(key, "x", "y");
    EXPECT_TRUE(IsTold());
}

TEST_F(Notification, AskedForTwiceComesOnce) {
    Watch(key, lastSet);
    Watch(key, lastSet);
    Write(key, "x", "y");
    EXPECT_TRUE(IsTold());
    ::ResetEvent(event);
    Write(key, "x", "z");
    EXPECT_FALSE(IsTold());
}

TEST_F(Notification, ComesForAKeyThatIsMadeOrDeleted) {
    Watch(key, changeName);
    Touch(key, "A\\B");
    EXPECT_FALSE(IsTold()) << "it was there";
    Touch(key, "A\\C");
    EXPECT_TRUE(IsTold());
    Watch(key, changeName);
    ::RegDeleteKeyExA(key, "A\\C", 0, 0);
    EXPECT_TRUE(IsTold());
}

TEST_F(Notification, ComesForWhatTheFilterNames) {
    Watch(key, changeName);
    WriteBelow();
    EXPECT_FALSE(IsTold());
    ::RegDeleteTreeA(key, "A");
    EXPECT_TRUE(IsTold());
    const HKEY other = Create(HKEY_CURRENT_USER, path.c_str());
    Watch(other, lastSet);
    Touch(key, "A\\B");
    EXPECT_FALSE(IsTold());
    WriteBelow();
    EXPECT_TRUE(IsTold());
    ::RegCloseKey(other);
}

TEST_F(Notification, KeepsTheFilterThatTheOpenKeyWasFirstAskedFor) {
    Watch(key, lastSet, FALSE);
    Write(key, "x", "y");
    EXPECT_TRUE(IsTold());
    ASSERT_EQ(Watch(key, changeName, TRUE), ERROR_SUCCESS);
    Touch(key, "A\\C");
    WriteBelow();
    EXPECT_FALSE(IsTold());
    Write(key, "x", "z");
    EXPECT_TRUE(IsTold());
}

TEST_F(Notification, OfAKeyAloneComesForNothingBelowIt) {
    Watch(key, changeName | lastSet, FALSE);
    WriteBelow();
    Touch(key, "A\\C");
    EXPECT_FALSE(IsTold());
    Touch(key, "C");
    EXPECT_TRUE(IsTold());
}

TEST_F(Notification, ComesForNothingAboveOrBeside) {
    const HKEY watched = Create(key, "A");
    Watch(watched, changeName | lastSet);
    Write(key, "x", "y");
    Touch(key, "C\\D");
    EXPECT_FALSE(IsTold());
    ::RegCloseKey(watched);
}

TEST_F(Notification, ComesWhenTheKeyIsClosed) {
    const HKEY watched = Create(key, "A");
    Watch(watched, lastSet);
    ::RegCloseKey(watched);
    EXPECT_TRUE(IsTold());
}

TEST_F(Notification, NeedsAnEventAndTheAccess) {
    EXPECT_EQ(::RegNotifyChangeKeyValue(key, TRUE, changeName, nullptr, TRUE), ERROR_INVALID_HANDLE);
    const HKEY writable = Create(key, "A", KEY_SET_VALUE);
    EXPECT_EQ(Watch(writable, changeName), ERROR_ACCESS_DENIED);
    ::RegCloseKey(writable);
}

TEST_F(Notification, WakesAnotherThread) {
    Watch(key, lastSet);
    const HANDLE thread = ::CreateThread(
        nullptr, 0, [](LPVOID waited) { return ::WaitForSingleObject(waited, 10000); }, event, 0, nullptr);
    Write(key, "x", "y");
    EXPECT_EQ(::WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    EXPECT_TRUE(IsTold());
    ::CloseHandle(thread);
}

}  // namespace
