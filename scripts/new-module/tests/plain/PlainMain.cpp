// Runs all tests, one after the other.
#include <gtest/gtest.h>

namespace {

template <class Step>
void Run(const Step& step) {
    try {
        step();
    } catch (const std::exception& failure) {
        testing::Fail(failure.what());
    }
}

bool Passes(const testing::NamedTest& named) {
    testing::hasFailed = false;
    Run([&] {
        const auto test = named.make();
        Run([&] { test->TestBody(); });
        test->TearDown();
    });
    std::cout << (testing::hasFailed ? "FAILED " : "ok     ") << named.name << '\n';
    return !testing::hasFailed;
}

}  // namespace

int main() {
    size_t failed = 0;
    for (const testing::NamedTest& test : testing::Tests()) {
        failed += Passes(test) ? 0U : 1U;
    }
    std::cout << testing::Tests().size() << " tests, " << failed << " failed\n";
    return failed == 0 ? 0 : 1;
}
