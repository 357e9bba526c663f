#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include "fuzz/FuzzInput.h"
#include "fuzz/FuzzedHandles.h"

// Behind a client handler: what was registered with it, by product.
struct ny_client : FuzzedObject {
    template <class Callback>
    struct Registration {
        Callback callback{};
        void* userData = nullptr;
    };
    template <class Callback>
    using Registrations = std::map<std::string, Registration<Callback>>;

    Registrations<ny_property_provider_t> properties;
    Registrations<ny_policy_callback_t> policies;
    Registrations<ny_task_callbacks_t> tasks;
    Registrations<ny_updater_callbacks_t> updates;
    Registration<ny_log_callback_t> log;
    ny_msgbus* bus = nullptr;
};

// The agent of one input, which stands where the agent's libraries are: any function may answer any code, any text is
// whatever the input says, lengths are not those of their texts, and success may come with nothing. It keeps to what
// the bridge cannot check: a text has a terminator, and the memory that a length speaks of is there.
class FuzzedAgent {
public:
    explicit FuzzedAgent(FuzzInput& agentInput);
    ~FuzzedAgent();
    FuzzedAgent(const FuzzedAgent&) = delete;
    FuzzedAgent& operator=(const FuzzedAgent&) = delete;

    static FuzzedAgent& Current() noexcept { return *current; }

    // The client handler that is alive, or null.
    ny_client* Client() const noexcept { return client; }

    // A new value as the input says: texts, narrow and wide, and tables. The caller keeps it.
    std::unique_ptr<ny_variant> MakeVariant();

    // The path that a library was last opened by, and what that is answered.
    std::string openedPath;
    bool hasLibraries = true;

    FuzzInput& input;
    FuzzedHandles handles;
    ny_client* client = nullptr;

private:
    static HMODULE WINAPI Load(LPCSTR path, HANDLE reserved, DWORD flags);
    static FARPROC WINAPI Resolve(HMODULE library, LPCSTR name);
    static BOOL WINAPI Free(HMODULE library);

    // Once for the process: there is nothing else that opens libraries.
    static void TakeOverLibraries();

    static inline FuzzedAgent* current = nullptr;
};

// The body of an agent's function: the input's code without doing anything, or else what the body does.
template <class Body>
int32_t Answer(Body&& body) noexcept {
    if (const int32_t code = FuzzedAgent::Current().input.Code(); code != NY_OK) {
        return code;
    }
    try {
        std::forward<Body>(body)(FuzzedAgent::Current());
        return NY_OK;
    } catch (const Refusal& refusal) {
        return refusal.code;
    }
}

// The body of a function that takes a handle back: whatever it answers, the handle is gone.
inline int32_t LetGo(FuzzedObject* object) noexcept {
    if (object == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    FuzzedAgent::Current().handles.Release(object);
    return FuzzedAgent::Current().input.Code();
}

// Hands out an owned object; now and then success comes with none.
template <class Object, class Handle>
void Give(FuzzedAgent& agent, std::unique_ptr<Object> object, Handle** out) {
    *out = agent.input.Rarely() ? nullptr : agent.handles.Own(std::move(object));
}

// Hands out a text and a length: the whole text, less of it, or no text for such a length. `canBeTooLong`: a length
// that no memory holds, for code that makes a string of the text and must notice that.
template <class Character>
void GiveText(FuzzInput& input, const Character* text, size_t size, const Character** out, size_t* length,
              bool canBeTooLong = true) {
    *out = text;
    *length = size;
    const uint8_t how = input.Byte();
    if (how >= 0xF8 && canBeTooLong) {
        *length = SIZE_MAX - input.Byte();
    } else if (how >= 0xF0) {
        *out = nullptr;
        *length = input.Byte() % (size + 1);
    } else if (how >= 0xE0) {
        *length = input.Byte() % (size + 1);
    }
}

// The agent's functions by name; null for one that it lacks.
FARPROC FuzzedFunction(const std::string& name) noexcept;
