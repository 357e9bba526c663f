// How lines are broken.
#include "tool/output/Wrap.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

TEST(Wrap, LeavesATextAloneThatIsNoLongerThanALine) {
    EXPECT_THAT(Wrap("", 12), ElementsAre(""));
    EXPECT_THAT(Wrap("just so long", 12), ElementsAre("just so long"));
    EXPECT_THAT(Wrap("  just so long", 14), ElementsAre("  just so long"));
}

TEST(Wrap, BreaksAtTheLastSpaceThatFits) {
    EXPECT_THAT(Wrap("one more than long", 12), ElementsAre("one more", "    than", "    long"));
    EXPECT_THAT(Wrap("just so long and more", 12), ElementsAre("just so long", "    and more"));
    EXPECT_THAT(Wrap("  one two three", 11), ElementsAre("  one two", "      three"));
}

TEST(Wrap, BreaksInsideAWordOnlyWhenItIsLongerThanALine) {
    EXPECT_THAT(Wrap("abcdefghijklmno", 10), ElementsAre("abcdefghij", "    klmno"));
    EXPECT_THAT(Wrap("an abcdefghij", 10), ElementsAre("an", "    abcdef", "    ghij"));
    EXPECT_THAT(Wrap("      abcdefgh", 12), ElementsAre("      abcdef", "          gh"));
}

TEST(Wrap, CountsCharactersAndNotBytes) {
    EXPECT_THAT(Wrap("\xC3\xA9\xC3\xA9\xC3\xA9 \xC3\xA9\xC3\xA9", 6),
                ElementsAre("\xC3\xA9\xC3\xA9\xC3\xA9 \xC3\xA9\xC3\xA9"));
    EXPECT_THAT(Wrap("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", 6),
                ElementsAre("\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", "    \xC3\xA9"));
}

}  // namespace
