// Lines that cannot be written to the file, and paths that cannot be chosen.
#include <gmock/gmock.h>

#include "loglib/LogDestination.h"
#include "support/DebuggerOutput.h"
#include "support/FailingMemory.h"
#include "support/LogFile.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LogDestinationFailure : public testing::Test {
protected:
    LogDestinationFailure() { destination.Choose(file.path.wstring().c_str()); }

    LogFile file;
    DebuggerOutput debugger;
    LogDestination destination;
};

TEST_F(LogDestinationFailure, ToOpenTheFileGivesTheLineToTheDebugger) {
    destination.Choose((file.folder / "missing" / "host.log").wstring().c_str());
    destination.Write(L"no folder\r\n");
    destination.Choose(file.folder.wstring().c_str());
    destination.Write(L"is a folder\r\n");
    EXPECT_THAT(debugger.log.Lines(), ElementsAre("no folder\r\n", "is a folder\r\n"));
}

WINBOOL WINAPI FindDiskFull(HANDLE /*file*/, const void* /*data*/, DWORD /*size*/, DWORD* written,
                            LPOVERLAPPED /*overlapped*/) {
    *written = 0;
    ::SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

WINBOOL WINAPI WriteAByteLess(HANDLE /*file*/, const void* /*data*/, DWORD size, DWORD* written,
                              LPOVERLAPPED /*overlapped*/) {
    *written = size - 1;
    return TRUE;
}

TEST_F(LogDestinationFailure, OfAFullDiskGivesTheLineToTheDebugger) {
    {
        const SystemFunction<decltype(::WriteFile)> full(&::WriteFile, &FindDiskFull);
        destination.Write(L"none of it\r\n");
    }
    {
        const SystemFunction<decltype(::WriteFile)> nearlyFull(&::WriteFile, &WriteAByteLess);
        destination.Write(L"not all of it\r\n");
    }
    EXPECT_THAT(debugger.log.Take(), ElementsAre("none of it\r\n", "not all of it\r\n"));
    destination.Write(L"room again\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("room again"));
    EXPECT_THAT(debugger.log.Lines(), IsEmpty());
}

TEST_F(LogDestinationFailure, ToChooseAPathThatIsTooLongChangesNothing) {
    const std::wstring longest(LogDestination::pathCapacity - 1, L'x');
    EXPECT_FALSE(destination.Choose((longest + L'x').c_str()));
    destination.Write(L"still here\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("still here"));
    // The longest path is taken. The system opens no such file, so that the line goes to the debugger.
    EXPECT_TRUE(destination.Choose(longest.c_str()));
    destination.Write(L"line\r\n");
    EXPECT_THAT(debugger.log.Lines(), ElementsAre("line\r\n"));
}

TEST_F(LogDestinationFailure, OfMemoryIsThrown) {
    const std::wstring line = L"a line that is not short\r\n";
    {
        const FailingMemory memory;
        EXPECT_THROW(destination.Write(line), std::bad_alloc);
    }
    EXPECT_FALSE(file.Exists());
}

TEST_F(LogDestinationFailure, OfTextThatIsMalformedReplacesIt) {
    destination.Write(L"\xD800 half\r\n");
    EXPECT_THAT(file.Lines(), ElementsAre("\xEF\xBF\xBD half"));
}

}  // namespace
