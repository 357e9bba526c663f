// Another library that does nothing. It imports the first one, as the bridge imports the log of its host.
#include <stdexcept>
#include <string>

extern "C" __declspec(dllimport) size_t LengthOfText(const char* text);
extern "C" __declspec(dllexport) size_t LengthOfTwice(const char* text);

extern "C" size_t LengthOfTwice(const char* text) {
    try {
        return LengthOfText((std::string(text) + text).c_str());
    } catch (const std::exception&) {
        return 0;
    }
}
