// Property requests of an agent that lacks one of its libraries.
#include <filesystem>

#include "property/PropertyTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MissingLibrary : public InstalledAgentTest {
protected:
    MissingLibrary() { std::filesystem::remove(environment.Installer().CurrentFolder() / "ny_variant.dll"); }
};

// Two groups of functions are wanted of it.
TEST_F(MissingLibrary, IsToldInOneLineForEachRequest) {
    const Registration registration(productId, collector);
    Product product(productId, &sink);
    ASSERT_TRUE(product.IsEntered());
    ASSERT_THAT(sink.log.Take(), IsEmpty());
    for (int request = 0; request < 2; ++request) {
        EXPECT_THAT(Ask(productId), ElementsAre("answer 705"));
        EXPECT_THAT(
            sink.log.Take(),
            ElementsAre("3: NY log message, [dispatcher] ny_grouper_add_member library failed <126>",
                        "3: Failed to add property in the property bag for product id PRODUCT1000, exception: [705]"));
    }
    product.Exit();
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

}  // namespace
