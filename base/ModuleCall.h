// The bridge calls modules only here, whichever compiler built them. It keeps a module's interface in a ModulePointer,
// which lets nothing call the module in another way.
#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>

#include "base/ForeignFrame.h"

namespace bridge {

// Thrown in place of an exception that g++'s `catch` does not see.
class ForeignException final {};

// Throws in place of an exception that a frame has taken: a Coded when that exception carried the agent's code and
// Coded is not void, else a ForeignException.
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

// A function that takes one can be called only inside PassThrough, which alone makes them.
class InsidePassage {
    InsidePassage() = default;

    template <class Coded, class Body, class Release>
    friend void PassThrough(const Body& body, const Release& release);
};

// Runs `body(inside)`, which calls a module that is itself calling the bridge. The module's `catch` gets what the body
// throws. Only the agent exception does not pass: a Coded is thrown in its place.
//
// In the Windows build of g++ an exception that leaves the body may run no destructors in it. There `release()` is
// called before the `catch` runs. It must give back all that the body holds, and do no harm when that was given back
// already. Other builds run the destructors, and do not call `release()`.
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
