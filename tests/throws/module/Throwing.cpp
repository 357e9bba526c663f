#include "Throwing.h"

#include <atomic>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "SystemExceptions.h"
#include "values/AgentException.h"

namespace {

constexpr int number = 42;
constexpr int32_t agentCode = 77;

struct Order {
    Place place = Place::Nowhere;
    Thrown thrown = Thrown::Number;
    Catcher catcher = Catcher::Bridge;
};

Order order;
ThrowingModuleTell tellTest = nullptr;
void* tellUserData = nullptr;
std::atomic<int32_t> throws{0};

std::atomic<int32_t> made{0};
std::atomic<int32_t> destroyed{0};
std::atomic<int32_t> damaged{0};

// Copied as bytes, it would know the address of another.
class Self {
public:
    Self() : self(this) { ++made; }
    Self(const Self& other) : self(this) {
        other.Look();
        ++made;
    }
    Self& operator=(const Self&) = delete;
    ~Self() {
        Look();
        self = nullptr;
        ++destroyed;
    }

    void Look() const {
        if (self != this) {
            ++damaged;
        }
    }

private:
    const Self* self;
};

void ThrowAgain() {
    try {
        throw Self();
    } catch (const Self& thrown) {
        thrown.Look();
        throw;
    }
}

[[noreturn]] void Throw(Thrown thrown) {
    ++throws;
    switch (thrown) {
        case Thrown::Number: throw number;
        case Thrown::RuntimeError:
            throw std::runtime_error("a text that is too long to be kept in an object of a few bytes");
        case Thrown::Self: throw Self();
        case Thrown::SelfAgain: ThrowAgain(); break;
        case Thrown::AgentException: throw corvane::ny::utils::exception(agentCode);
        case Thrown::AccessViolation:
        case Thrown::Breakpoint:
        case Thrown::StackOverflow: RaiseSystemException(thrown); break;
    }
    std::abort();
}

// Its destructor runs on the way of what is thrown from here.
class OnTheWay {
public:
    OnTheWay() = default;
    OnTheWay(const OnTheWay&) = delete;
    OnTheWay& operator=(const OnTheWay&) = delete;
    ~OnTheWay() { Tell("passed the module's own function"); }
};

}  // namespace

void ThrowIfAt(Place place) {
    if (order.place == place) {
        const OnTheWay onTheWay;
        Throw(order.thrown);
    }
}

void Catch(void (*body)(void* argument), void* argument) {
#if defined(_MSC_VER)
    if (CatchSystemException(order.thrown, body, argument)) {
        return;
    }
#endif
    try {
        body(argument);
    } catch (int caught) {
        Tell(("caught the number " + std::to_string(caught)).c_str());
    } catch (const std::runtime_error& caught) {
        Tell((std::string("caught an error: ") + caught.what()).c_str());
    } catch (const Self& caught) {
        caught.Look();
        Tell("caught the object");
    }
}

Catcher CurrentCatcher() {
    return order.catcher;
}

bool IsAt(Place place) {
    return order.place == place;
}

void Tell(const char* line) {
    if (tellTest != nullptr) {
        tellTest(line, tellUserData);
    }
}

void ThrowingModuleTellTo(ThrowingModuleTell tell, void* userData) {
    tellTest = tell;
    tellUserData = userData;
}

void ThrowAt(Place place, Thrown thrown, Catcher catcher) {
    order = {place, thrown, catcher};
    throws = 0;
}

int32_t CountThrows() {
    return throws;
}

ThrownObjects CountThrownObjects() {
    return {made, destroyed, damaged};
}
