// Narrow text to wide and back, through the agent's values.
#include "bench/bare/BareAgent.h"
#include "bench/floor/AgentPointers.h"
#include "bench/floor/FloorAgent.h"
#include "bench/harness/Stage.h"
#include "bench/inner/Measurements.h"
#include "dispatcher/Dispatcher.h"
#include "values/AgentTexts.h"

using namespace bridge;

namespace bench {

namespace {

// Runs `convert(text)` so often. What it gives must be as long as the text.
template <class Convert, class Text>
Contender Way(const char* name, Convert convert, const Text& text) {
    return {name, [=](size_t count) {
                return SecondsOf([&] {
                    size_t characters = 0;
                    for (size_t i = 0; i < count; ++i) {
                        characters += convert(text).size();
                    }
                    if (characters != count * text.size()) {
                        throw std::runtime_error("a text got lost");
                    }
                });
            }};
}

}  // namespace

void MeasureConversions(Session& session) {
    const Stage stage;
    OpenFloorAgent(stage.Folder());
    Dispatcher* dispatcher = nullptr;
    Require(DispatcherCreate(nullptr, &dispatcher));
    for (const size_t length : {size_t{0}, size_t{16}, size_t{256}, size_t{4096}, longestBareText}) {
        const std::string narrow(length, 'x');
        const std::wstring wide(length, L'x');
        const auto widen = [](const std::string& text) { return WideFromNarrow(text); };
        const auto widenAtFloor = [](const std::string& text) { return FloorWiden(text); };
        const auto narrowed = [](const std::wstring& text) { return NarrowFromWide(text); };
        const auto narrowedAtFloor = [](const std::wstring& text) { return FloorNarrow(text); };
        const std::string characters = std::to_string(length) + " characters";
        const auto size = static_cast<double>(length);
        session.Race({"conversion",
                      "to wide, " + characters,
                      size,
                      1,
                      {Way("ours", widen, narrow), Way("floor", widenAtFloor, narrow)},
                      1.15});
        session.Race({"conversion",
                      "to narrow, " + characters,
                      size,
                      1,
                      {Way("ours", narrowed, wide), Way("floor", narrowedAtFloor, wide)},
                      1.15});
    }
    DispatcherRelease(dispatcher);
}

}  // namespace bench
