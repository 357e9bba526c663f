#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include "support/LineLog.h"

// Another handle of a thread, for waiting for its end when the owner of the first one is gone.
class ThreadCopy {
public:
    explicit ThreadCopy(HANDLE thread) {
        EXPECT_TRUE(
            ::DuplicateHandle(::GetCurrentProcess(), thread, ::GetCurrentProcess(), &copy, SYNCHRONIZE, FALSE, 0));
    }
    ~ThreadCopy() { ::CloseHandle(copy); }
    ThreadCopy(const ThreadCopy&) = delete;
    ThreadCopy& operator=(const ThreadCopy&) = delete;

    void WaitForEnd() const { EXPECT_EQ(::WaitForSingleObject(copy, static_cast<DWORD>(soon.count())), WAIT_OBJECT_0); }

private:
    HANDLE copy = nullptr;
};
