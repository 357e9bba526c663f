// What the frame costs that is around each call of a module, and the one around a walk, beside the bare call.
#include "bench/inner/Measurements.h"
#include "values/ModuleInterface.h"

using namespace bridge;

namespace bench {

namespace {

class Interface {
public:
    virtual int32_t Add(const wchar_t* text, int32_t number) = 0;

protected:
    ~Interface() = default;
};

class Module final : public Interface {
public:
    // In a function of its own, as a module's is.
    [[gnu::noinline]] int32_t Add(const wchar_t* /*text*/, int32_t number) override { return sum += number; }

private:
    int32_t sum = 0;
};

// Not to be seen through by the compiler.
Interface* volatile module;

template <class Call>
Contender Way(const char* name, const Call& call) {
    return {name, [call](size_t count) {
                return SecondsOf([&] {
                    for (size_t i = 0; i < count; ++i) {
                        call();
                    }
                });
            }};
}

}  // namespace

void MeasureModuleCalls(Session& session) {
    static Module instance;
    module = &instance;
    const auto bare = [] { module->Add(L"text", 1); };
    const auto framed = [] { ModuleInterface<Interface>(module).Call(&Interface::Add, L"text", 1); };
    const auto passed = [] {
        using corvane::ny::utils::exception;
        PassThrough<exception>(
            [](InsidePassage inside) { ModuleInterface<Interface>(module).Call(inside, &Interface::Add, L"text", 1); },
            [] {});
    };
    session.Race({"module call", "one call", 0, 1, {Way("ours", framed), Way("floor", bare)}, std::nullopt});
    session.Race({"module call", "a walk of one call", 0, 1, {Way("ours", passed), Way("floor", bare)}, std::nullopt});
}

}  // namespace bench
