// Exceptions of callbacks: a check reports one, and throws it on as the bridge expects it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/ModuleCall.h"
#include "values/AgentException.h"

namespace checking {

struct ThrownText {
    std::string type;
    std::string what;  // empty when it has none
};

// Describes the exception that is being handled.
ThrownText DescribeCurrentException();
// Describes an exception of a module that Microsoft's compiler built.
ThrownText DescribeForeign(const bridge::ForeignThrow& thrown);

void ReportThrown(std::string_view productId, const char* function, const ThrownText& thrown);

// Takes every exception of such a module, and reports it.
class TellingFrame final : public bridge::CodeFrame {
public:
    TellingFrame(std::string_view id, const char* name) noexcept : productId(id), function(name) {}

private:
    bool Takes(const bridge::ForeignThrow& thrown) noexcept override;

    const std::string_view productId;
    const char* const function;
};

// Runs `call()`, which calls a module and does nothing else, and returns its answer. An exception of the module's is
// reported, and thrown on as bridge::CallModule does.
template <class Call>
auto CallTelling(std::string_view productId, const char* function, const Call& call) {
    using Answer = std::invoke_result_t<const Call&>;
    std::conditional_t<std::is_void_v<Answer>, int, Answer> answer{};
    TellingFrame frame(productId, function);
    bool isTaken = false;
    try {
        isTaken = frame.Run([&] {
            if constexpr (std::is_void_v<Answer>) {
                call();
            } else {
                answer = call();
            }
        });
    } catch (...) {
        ReportThrown(productId, function, DescribeCurrentException());
        throw;
    }
    if (isTaken) {
        bridge::ThrowInstead<bridge::AgentException>(frame.Code());
    }
    if constexpr (!std::is_void_v<Answer>) {
        return answer;
    }
}

}  // namespace checking
