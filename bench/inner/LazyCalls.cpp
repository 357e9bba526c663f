// A warm call of a lazy entry point, against a bare pointer and against what a module's author would write.
#include <algorithm>
#include <array>
#include <mutex>

#include "base/Attributes.h"
#include "bench/floor/AgentPointers.h"
#include "bench/harness/Stage.h"
#include "bench/inner/CallsGroup.h"
#include "bench/inner/Measurements.h"
#include "dispatcher/Dispatcher.h"

using namespace bridge;

namespace bench {

namespace {

HMODULE callsLibrary = nullptr;

// Each way of calling is a function object that takes the arguments.
template <auto function>
struct Bare {
    template <class... Arguments>
    int32_t operator()(Arguments... arguments) const {
        return pointerTo<function>(arguments...);
    }
};

// The function's name as C wants it.
template <auto function>
constexpr auto nameText = [] {
    constexpr std::string_view name = entrypoint::NameOf<function>();
    std::array<char, name.size() + 1> text{};
    std::copy(name.begin(), name.end(), text.begin());
    return text;
}();

template <auto function>
struct LookedUpEachTime {
    template <class... Arguments>
    int32_t operator()(Arguments... arguments) const {
        return reinterpret_cast<decltype(function)>(AddressIn(callsLibrary, nameText<function>.data()))(arguments...);
    }
};

template <auto function>
struct FunctionStatic {
    template <class... Arguments>
    int32_t operator()(Arguments... arguments) const {
        static const auto pointer =
            reinterpret_cast<decltype(function)>(AddressIn(callsLibrary, nameText<function>.data()));
        return pointer(arguments...);
    }
};

template <auto function>
struct CalledOnce {
    template <class... Arguments>
    int32_t operator()(Arguments... arguments) const {
        static std::once_flag once;
        static constinit decltype(function) pointer = nullptr;
        std::call_once(once, [] {
            pointer = reinterpret_cast<decltype(function)>(AddressIn(callsLibrary, nameText<function>.data()));
        });
        return pointer(arguments...);
    }
};

// Linked against the library through an import library that loads it at the first call.
template <auto function>
struct DelayLoaded {
    template <class... Arguments>
    int32_t operator()(Arguments... arguments) const {
        return function(arguments...);
    }
};

template <class Call, class... Arguments>
NEVER_INLINED void CallOften(size_t count, const Call& call, Arguments... arguments) {
    int32_t failures = 0;
    for (size_t i = 0; i < count; ++i) {
        failures |= call(arguments...);
    }
    Require(failures);
}

template <class Call, class... Arguments>
Contender Way(const char* name, size_t threads, const Call& call, Arguments... arguments) {
    CallOften(1, call, arguments...);
    return {name, [=](size_t count) {
                return SecondsOnThreads(threads, count,
                                        [&](size_t /*thread*/, size_t mine) { CallOften(mine, call, arguments...); });
            }};
}

template <auto function, class Ours, class... Arguments>
void Race(Session& session, const Ours& ours, Arguments... arguments) {
    for (const size_t threads : {size_t{1}, size_t{2}}) {
        session.Race(
            {"lazy call",
             std::to_string(sizeof...(arguments)) + " arguments, " + std::to_string(threads) +
                 (threads == 1 ? " thread" : " threads"),
             0,
             1,
             {Way("ours", threads, ours, arguments...), Way("bare pointer", threads, Bare<function>{}, arguments...),
              Way("GetProcAddress", threads, LookedUpEachTime<function>{}, arguments...),
              Way("function static", threads, FunctionStatic<function>{}, arguments...),
              Way("call_once", threads, CalledOnce<function>{}, arguments...),
              Way("delay load", threads, DelayLoaded<function>{}, arguments...)},
             1.1,
             true});
    }
}

}  // namespace

void MeasureLazyCalls(Session& session) {
    const Stage stage;
    callsLibrary = LoadedLibrary((stage.Folder() / "ny_calls.dll").string());
    Resolve<&::bench_call0, &::bench_call2, &::bench_call5>(callsLibrary);
    Dispatcher* dispatcher = nullptr;
    Require(DispatcherCreate(nullptr, &dispatcher));
    void* out = nullptr;
    Race<&::bench_call0>(session, agent::bench_call0);
    Race<&::bench_call2>(session, agent::bench_call2, static_cast<void*>(&out), uint32_t{7});
    Race<&::bench_call5>(session, agent::bench_call5, static_cast<void*>(&out), "first", "second", uint64_t{9}, &out);
    DispatcherRelease(dispatcher);
}

}  // namespace bench
