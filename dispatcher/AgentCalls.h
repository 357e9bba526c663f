// The table of the functions that the agent may call, and the calls that it is making.
//
// The agent is given a pointer with each function that it may call, its callback data. It may use that pointer late:
// after what it was registered for has ended, or while it ends. So the pointer is only a name here. It is looked up
// before it is believed, and the call shares what it stands for until it returns.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace bridge {

// Callback data as the agent is given it, with its type: an address can be given again for an object of another type.
struct AgentCallData {
    const void* address;
    const void* type;
};

// Its address stands for the type.
template <class Called>
inline constexpr char agentCallType = 0;

template <class Called>
AgentCallData CallData(const void* address) noexcept {
    return {address, &agentCallType<Called>};
}

// From now on the agent may call with this data for this product. An empty one stands for every product that was never
// admitted by its own name: the agent may name any. Each call shares `called`. `group` names what is forgotten
// together. Takes the place of what was admitted under the same name. Raises std::bad_alloc, and nothing changes.
void AdmitAgentCalls(const AgentCallData& data, std::string_view product, std::shared_ptr<void> called,
                     const void* group);

// From now on a call with this data for this product comes too late. Those that are inside go on. The name is kept
// until its group is forgotten, so that it is not taken for any other product.
void EndAgentCalls(const AgentCallData& data, std::string_view product) noexcept;

// From now on every call with the data of this group comes too late.
void ForgetAgentCalls(const void* group) noexcept;

// The object that calls with this data for this product share; null when they come too late.
std::shared_ptr<void> FindAgentCalls(const AgentCallData& data, std::string_view product) noexcept;

// A call from the agent, on its thread, from construction to destruction. The bridge allocates nothing for it.
class AgentCall {
public:
    AgentCall(const AgentCallData& data, std::string_view product) noexcept;
    ~AgentCall();
    AgentCall(const AgentCall&) = delete;
    AgentCall& operator=(const AgentCall&) = delete;

    // Test it first: a call that comes too late, or that there is no memory to count, must touch nothing.
    explicit operator bool() const noexcept { return called != nullptr; }

    // Whether the calling thread is inside such a call. It must not wait for other threads of ours then: they may wait
    // for the agent, and the agent for this call.
    static bool IsUnderWay() noexcept;

private:
    const size_t depthAround;
    const bool isCounted;
    std::shared_ptr<void> called;
};

// Runs `work(argument)`: at once, or on a thread of its own when the calling thread is inside a call from the agent.
// Used to call agent functions that wait until the agent's calls have returned, and to unload a library that such a
// thread returns into. When no thread can be created, the work is not done.
void RunOutsideAgentCalls(void (*work)(void* argument), void* argument) noexcept;

template <class Object>
void DeleteOutsideAgentCalls(Object* object) noexcept {
    RunOutsideAgentCalls([](void* deleted) { delete static_cast<Object*>(deleted); }, object);
}

}  // namespace bridge
