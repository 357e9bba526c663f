// Mistakes made on purpose, one for each run: whether the sanitizers see what they are there for. The mistakes that
// concern threads are made through the Win32 layer, which must not hide them by ordering what nobody ordered.
#include <windows.h>

#include <climits>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

namespace {

int shared = 0;
// A value that the optimiser cannot know.
volatile int one = 1;

int UseAfterFree() {
    auto number = std::make_unique<int>(one);
    const int* const dangling = number.get();
    number.reset();
    return *dangling;
}

int Overflow() {
    return INT_MAX + one;
}

int Leak() {
    auto* volatile lost = new int(one);
    lost = nullptr;
    return lost == nullptr ? 0 : 1;
}

// A thread that waits for an event of its own and sets it, as if it had nothing to do with any other.
class Thread {
public:
    Thread() : thread(::CreateThread(nullptr, 0, Increment, event, 0, nullptr)) {}
    ~Thread() {
        ::WaitForSingleObject(thread, INFINITE);
        ::CloseHandle(thread);
        ::CloseHandle(event);
    }
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

private:
    static DWORD WINAPI Increment(LPVOID parameter) {
        ::WaitForSingleObject(parameter, INFINITE);
        ++shared;
        ::SetEvent(parameter);
        return 0;
    }

    const HANDLE event = ::CreateEventA(nullptr, TRUE, TRUE, nullptr);
    const HANDLE thread;
};

// However the threads take turns, nothing orders them.
int Race() {
    const Thread threads[2];
    return 0;
}

// The end of the first thread orders them.
int NoRace() {
    for (int turn = 0; turn < 2; ++turn) {
        const Thread thread;
    }
    return shared == 2 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, int (*)()> mistakes = {
        {"UseAfterFree", UseAfterFree}, {"Overflow", Overflow}, {"Leak", Leak}, {"Race", Race}, {"NoRace", NoRace}};
    const auto found = mistakes.find(argc > 1 ? argv[1] : "");
    return found != mistakes.end() ? found->second() : EXIT_FAILURE;
}
