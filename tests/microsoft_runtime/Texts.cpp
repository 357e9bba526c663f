// std::string and std::wstring, and numbers as such.
#include <string>
#include <type_traits>

namespace {

template <class Text, class Number>
Text TextOf(Number number) {
    using Magnitude = std::make_unsigned_t<Number>;
    const bool isNegative = number < 0;
    Magnitude rest = static_cast<Magnitude>(number);
    if (isNegative) {
        rest = Magnitude{0} - rest;
    }
    Text text;
    do {
        text.insert(text.begin(), static_cast<typename Text::value_type>('0' + rest % 10));
        rest /= 10;
    } while (rest != 0);
    if (isNegative) {
        text.insert(text.begin(), static_cast<typename Text::value_type>('-'));
    }
    return text;
}

}  // namespace

namespace std {

inline namespace __1 {

template class basic_string<char>;
template class basic_string<wchar_t>;
template string operator+(const char* left, const string& right);

string to_string(int number) {
    return TextOf<string>(number);
}
string to_string(unsigned number) {
    return TextOf<string>(number);
}
string to_string(long number) {
    return TextOf<string>(number);
}
string to_string(unsigned long number) {
    return TextOf<string>(number);
}
string to_string(long long number) {
    return TextOf<string>(number);
}
string to_string(unsigned long long number) {
    return TextOf<string>(number);
}
wstring to_wstring(int number) {
    return TextOf<wstring>(number);
}
wstring to_wstring(unsigned number) {
    return TextOf<wstring>(number);
}
wstring to_wstring(long number) {
    return TextOf<wstring>(number);
}
wstring to_wstring(unsigned long number) {
    return TextOf<wstring>(number);
}
wstring to_wstring(long long number) {
    return TextOf<wstring>(number);
}
wstring to_wstring(unsigned long long number) {
    return TextOf<wstring>(number);
}

}  // namespace __1

}  // namespace std
