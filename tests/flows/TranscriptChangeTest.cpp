// Changes of transcripts, as the tables of outcomes have them.
#include <gmock/gmock.h>
#include <windows.h>

#include "flows/FaultCase.h"
#include "flows/OutcomeTable.h"
#include "flows/TranscriptChange.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(TranscriptChange, IsOfAsFewLinesAsPossible) {
    EXPECT_THAT(ChangeOf({"a", "b", "c"}, {"a", "b", "c"}), IsEmpty());
    EXPECT_THAT(ChangeOf({"a", "b", "c"}, {"a", "x", "c", "d"}), ElementsAre("-2 b", "+2 x", "+3 d"));
    EXPECT_THAT(ChangeOf({"a", "b"}, {}), ElementsAre("-1 a", "-2 b"));
    EXPECT_THAT(ChangeOf({}, {"a", ""}), ElementsAre("+0 a", "+0 "));
}

TEST(TranscriptChange, GivesTheOtherTranscriptBack) {
    const Lines good = {"a", "b", "b", "c d", "e"};
    for (const Lines& other : {Lines{}, Lines{"b", "c d", "b"}, Lines{"", "a", "x y", "e", "e"}}) {
        EXPECT_EQ(Changed(good, ChangeOf(good, other)), other);
    }
    EXPECT_THROW(Changed(good, {"-1 b"}), std::runtime_error);
    EXPECT_THROW(Changed(good, {"-6 e"}), std::runtime_error);
}

TEST(OutcomeTable, IsReadAsItWasWritten) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("outcomes-" + std::to_string(::GetCurrentProcessId()));
    OutcomeTable table;
    table.good = {"one", "two"};
    Lines order;
    for (const FaultCase& fault : CasesOf({"f", "g", "f"})) {
        order.push_back(fault.Name());
        table.changes[fault.Name()] = fault.nth == 2 ? Lines{"+1 x"} : Lines{};
    }
    EXPECT_THAT(order, ElementsAre("once f 1", "from-then-on f 1", "once g 1", "from-then-on g 1", "once f 2",
                                   "from-then-on f 2", "missing f", "missing g"));
    table.Write(file, order);
    const OutcomeTable read = OutcomeTable::Read(file);
    EXPECT_EQ(read.good, table.good);
    EXPECT_EQ(read.changes, table.changes);
    std::filesystem::remove(file);
    EXPECT_THROW(OutcomeTable::Read(file), std::runtime_error);
}

}  // namespace
