// The one place where the bridge calls a module, whatever compiler built that. A module's interface is kept in a
// ModulePointer, which nothing else can be done with than calling it this way.
#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>

#include "base/ForeignFrame.h"

namespace bridge {

// Thrown in the place of what g++'s `catch` does not see.
class ForeignException final {};

// Throws in the place of an exception that a frame has taken: a Coded where that one carried the agent's code, unless
// Coded is void, and a ForeignException where it did not.
template <class Coded>
[[noreturn]] void ThrowInstead(std::optional<int32_t> code) {
    if constexpr (!std::is_void_v<Coded>) {
        if (code.has_value()) {
            throw Coded(*code);
        }
    }
    throw ForeignException();
}

// A frame that keeps the agent's code of the exception that it was last asked about.
class CodeFrame : public ForeignFrame {
public:
    std::optional<int32_t> Code() const noexcept { return code; }

protected:
    CodeFrame() noexcept = default;
    ~CodeFrame() = default;

    // Whether the exception carries a code of the agent's.
    bool KeepCode(const ForeignThrow& thrown) noexcept {
        code = thrown.AgentCode();
        return code.has_value();
    }

private:
    std::optional<int32_t> code;
};

// The frame around one call of a module: takes every exception.
class CallFrame final : public CodeFrame {
    bool Takes(const ForeignThrow& thrown) noexcept override {
        KeepCode(thrown);
        return true;
    }
};

// Runs `call()` in a frame and returns its answer. `call` calls a module and does nothing else: it may hold nothing
// that needs a destructor. An exception of the module's is thrown on, or replaced as ThrowInstead says.
template <class Coded = void, class Call>
auto CallModule(const Call& call) {
    using Answer = std::invoke_result_t<const Call&>;
    CallFrame frame;
    if constexpr (std::is_void_v<Answer>) {
        if (frame.Run(call)) [[unlikely]] {
            ThrowInstead<Coded>(frame.Code());
        }
    } else {
        static_assert(std::is_trivially_copyable_v<Answer>);
        Answer answer{};
        if (frame.Run([&] { answer = call(); })) [[unlikely]] {
            ThrowInstead<Coded>(frame.Code());
        }
        return answer;
    }
}

// Says that a frame is around which exceptions of modules pass: only PassThrough makes it.
class InsidePassage {
    InsidePassage() = default;

    template <class Coded, class Body, class Release>
    friend void PassThrough(const Body& body, const Release& release);
};

// Runs `body(inside)`, which calls a module that called the bridge: what it throws passes on to that module's own
// `catch`, but for the agent exception, in whose place a Coded is thrown. Whatever passes, `release()` has been called
// by then: it must give back all that the body holds, and do no harm when that was given back already. Where
// destructors run, as everywhere but in the Windows build of g++, it is not called.
template <class Coded, class Body, class Release>
void PassThrough(const Body& body, const Release& release) {
    class Passage final : public CodeFrame {
    public:
        explicit Passage(const Release& whatToRelease) noexcept : releaseHeld(whatToRelease) {}

    private:
        bool Takes(const ForeignThrow& thrown) noexcept override { return KeepCode(thrown); }
        void Leave() noexcept override { releaseHeld(); }

        const Release& releaseHeld;
    };
    Passage passage(release);
    if (passage.Run([&] { body(InsidePassage()); })) {
        ThrowInstead<Coded>(passage.Code());
    }
}

// A module's interface, not owned; may be null.
template <class Interface, class Coded = void>
class ModulePointer {
public:
    ModulePointer(Interface* moduleInterface) noexcept : pointer(moduleInterface) {}  // NOLINT: as a plain pointer

    explicit operator bool() const noexcept { return pointer != nullptr; }
    // The address, for comparing alone: no operation can be called through it.
    const Interface* Address() const noexcept { return pointer; }
    // The pointer, to be given back to the module that it belongs to, and for nothing else.
    Interface* HandBack() const noexcept { return pointer; }

    // Calls an operation, which is named as &Interface::Operation. Lets out what CallModule does.
    template <class Answer, class... Parameters, class... Arguments>
    Answer Call(Answer (Interface::*operation)(Parameters...), const Arguments&... arguments) const {
        return CallModule<Coded>([&] { return (pointer->*operation)(arguments...); });
    }
    // The same without a frame of its own: lets out what the module throws.
    template <class Answer, class... Parameters, class... Arguments>
    Answer Call(InsidePassage /*inside*/, Answer (Interface::*operation)(Parameters...),
                const Arguments&... arguments) const {
        return (pointer->*operation)(arguments...);
    }

private:
    Interface* pointer;
};

}  // namespace bridge
