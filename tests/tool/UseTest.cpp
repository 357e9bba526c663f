// How vsmsgbus.exe is used, whatever the sub-command.
#include <gmock/gmock.h>

#include "tool/RunProgram.h"

using testing::HasSubstr;

namespace {

TEST(Program, SaysItsVersion) {
    const ProgramRun run = RunVsMsgbus({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, testing::MatchesRegex("vsmsgbus \\d+\\.\\d+\\.\\d+\r?\n"));
}

TEST(Program, RefusesWrongUseWithTwo) {
    EXPECT_EQ(RunVsMsgbus({"nonsense"}).status, 2);
    const ProgramRun run = RunVsMsgbus({});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("Run with --help for more information."));
}

}  // namespace
