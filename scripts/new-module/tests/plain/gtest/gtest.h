// As much of GoogleTest as the tests here use, for machines without it.
#pragma once

#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace testing {

class Test {
public:
    virtual ~Test() = default;
    virtual void TearDown() {}
    virtual void TestBody() = 0;
};

struct NamedTest {
    std::string name;
    std::function<std::unique_ptr<Test>()> make;
};

inline std::vector<NamedTest>& Tests() {
    static std::vector<NamedTest> tests;
    return tests;
}

inline bool hasFailed = false;

inline void Fail(const std::string& text) {
    hasFailed = true;
    std::cout << text << '\n';
}

inline bool AddTest(const std::string& name, std::function<std::unique_ptr<Test>()> make) {
    Tests().push_back({name, std::move(make)});
    return true;
}

// Where in the source something is expected, and what.
struct Place {
    const char* condition;
    const char* file;
    int line;
};

inline bool Expect(bool isMet, const Place& place, const std::string& instead = {}) {
    if (!isMet) {
        Fail(std::string(place.file) + ':' + std::to_string(place.line) + ": not met: " + place.condition + instead);
    }
    return isMet;
}

// The value, if it can be written.
template <class Value>
std::string Written(const Value& value) {
    if constexpr (requires(std::ostream & stream) { stream << value; }) {
        std::ostringstream stream;
        stream << value;
        return stream.str();
    }
    return "a value";
}

template <class Left, class Right>
bool ExpectEqual(const Left& left, const Right& right, const Place& place) {
    return Expect(left == right, place, "; they are: " + Written(left) + ", " + Written(right));
}

template <class Exception, class Step>
void ExpectThrow(const Step& step, const Place& place) {
    try {
        step();
    } catch (const Exception&) {
        return;
    }
    Expect(false, place);
}

}  // namespace testing

#define TEST_F(Fixture, Name)                                                                      \
    class Fixture##_##Name : public Fixture {                                                      \
        void TestBody() override;                                                                  \
    };                                                                                             \
    static const bool Fixture##_##Name##_isAdded =                                                 \
        testing::AddTest(#Fixture "." #Name, [] { return std::make_unique<Fixture##_##Name>(); }); \
    void Fixture##_##Name::TestBody()

#define TEST_PLACE(condition) (testing::Place{condition, __FILE__, __LINE__})
#define EXPECT_TRUE(condition) testing::Expect(static_cast<bool>(condition), TEST_PLACE(#condition))
#define EXPECT_FALSE(condition) testing::Expect(!(condition), TEST_PLACE("not " #condition))
#define EXPECT_EQ(a, b) testing::ExpectEqual(a, b, TEST_PLACE(#a " == " #b))
#define EXPECT_NE(a, b) testing::Expect((a) != (b), TEST_PLACE(#a " != " #b))
#define EXPECT_THROW(step, Exception) \
    testing::ExpectThrow<Exception>([&] { static_cast<void>(step); }, TEST_PLACE(#step " throws " #Exception))
#define ASSERT_TRUE(condition)   \
    if (!EXPECT_TRUE(condition)) \
    return
#define ASSERT_EQ(a, b)   \
    if (!EXPECT_EQ(a, b)) \
    return
