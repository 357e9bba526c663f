// Reading an exception of Microsoft's compiler. The tests lay its description out as that compiler does.
#include "base/ForeignFrame.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int32_t agentCode = 77;

// An object of `baseSize` bytes of std::exception and a code, and the description of its type.
class ThrownException {
public:
    explicit ThrownException(int32_t baseSize, int32_t offset = 0) {
        object.resize(64);
        std::memcpy(&object[static_cast<size_t>(offset + baseSize)], &agentCode, sizeof agentCode);
        PutNumbers(throwInfoAt, {0, 0, 0, listAt});
        PutNumbers(listAt, {2, ownAt, baseAt});
        PutNumbers(ownAt, {0, ownNameAt, offset, -1, 0, baseSize + 8, 0});
        PutNumbers(baseAt, {0, baseNameAt, offset, -1, 0, baseSize, 0});
        PutName(ownNameAt, ".?AVexception@utils@ny@corvane@@");
        PutName(baseNameAt, ".?AVexception@std@@");
    }

    // No part stands at 0, because 0 means none.
    enum At : int32_t { throwInfoAt = 16, listAt = 64, ownAt = 96, baseAt = 160, ownNameAt = 224, baseNameAt = 320 };

    void PutNumbers(int32_t at, const std::vector<int32_t>& numbers) {
        std::memcpy(&image[static_cast<size_t>(at)], numbers.data(), numbers.size() * sizeof(int32_t));
    }
    // The name comes behind two pointers.
    void PutName(int32_t at, const std::string& name) {
        std::memcpy(&image[static_cast<size_t>(at) + 16], name.c_str(), name.size() + 1);
    }

    ForeignThrow Thrown() { return {object.data(), &image[throwInfoAt], image.data()}; }

private:
    std::vector<std::byte> object;
    alignas(8) std::array<std::byte, 512> image{};
};

TEST(ForeignThrow, CarriesTheAgentsCodeWhateverTheSizeOfTheStandardException) {
    EXPECT_EQ(ThrownException(8).Thrown().AgentCode(), agentCode) << "a table alone";
    EXPECT_EQ(ThrownException(24).Thrown().AgentCode(), agentCode) << "a table, a text, and whose that is";
}

TEST(ForeignThrow, CarriesTheCodeOfADerivedClassWhereItsBaseStands) {
    EXPECT_EQ(ThrownException(24, 16).Thrown().AgentCode(), agentCode);
}

TEST(ForeignThrow, OfAnotherTypeCarriesNone) {
    ThrownException other(24);
    other.PutName(ThrownException::ownNameAt, ".?AVexception@utils@ny@others@@");
    EXPECT_EQ(other.Thrown().AgentCode(), std::nullopt);
    ThrownException withoutBase(24);
    withoutBase.PutName(ThrownException::baseNameAt, ".?AVbase@@");
    EXPECT_EQ(withoutBase.Thrown().AgentCode(), std::nullopt);
    ThrownException withoutTypes(24);
    withoutTypes.PutNumbers(ThrownException::throwInfoAt, {0, 0, 0, 0});
    EXPECT_EQ(withoutTypes.Thrown().AgentCode(), std::nullopt);
}

// A virtual base has its place noted in the object, which AgentCode does not read.
TEST(ForeignThrow, CarriesNoneInAVirtualBase) {
    ThrownException thrown(24);
    thrown.PutNumbers(ThrownException::ownAt, {0, ThrownException::ownNameAt, 0, 8, 4, 32, 0});
    EXPECT_EQ(thrown.Thrown().AgentCode(), std::nullopt);
}

TEST(ForeignThrow, WithoutADescriptionCarriesNoCodeAndDestroysNothing) {
    const ForeignThrow thrown(nullptr, nullptr, nullptr);
    EXPECT_EQ(thrown.AgentCode(), std::nullopt);
    EXPECT_EQ(thrown.FindDestructor(), nullptr);
}

TEST(ForeignThrow, OfATypeWithoutADestructorDestroysNothing) {
    EXPECT_EQ(ThrownException(8).Thrown().FindDestructor(), nullptr);
}

TEST(ForeignThrow, NamesTheDestructorThatItsCompilerNames) {
    ThrownException thrown(8);
    thrown.PutNumbers(ThrownException::throwInfoAt, {0, 8, 0, ThrownException::listAt});
    EXPECT_NE(thrown.Thrown().FindDestructor(), nullptr);
}

}  // namespace
