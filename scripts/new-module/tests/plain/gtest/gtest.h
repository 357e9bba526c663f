// As much of GoogleTest as the tests here use, for machines without it.
#pragma once

#include <exception>
#include <functional>
#include <iostream>
#include <memory>
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

inline void Expect(bool isMet, const char* condition, const char* file, int line) {
    if (!isMet) {
        Fail(std::string(file) + ':' + std::to_string(line) + ": not met: " + condition);
    }
}

}  // namespace testing

#define TEST_F(Fixture, Name)                                                                      \
    class Fixture##_##Name : public Fixture {                                                      \
        void TestBody() override;                                                                  \
    };                                                                                             \
    static const bool Fixture##_##Name##_isAdded =                                                 \
        testing::AddTest(#Fixture "." #Name, [] { return std::make_unique<Fixture##_##Name>(); }); \
    void Fixture##_##Name::TestBody()

#define EXPECT_TRUE(condition) testing::Expect(static_cast<bool>(condition), #condition, __FILE__, __LINE__)
#define EXPECT_EQ(a, b) testing::Expect((a) == (b), #a " == " #b, __FILE__, __LINE__)
