// A library that stands where nobody looks for it.
extern "C" __declspec(dllexport) int LostAnswer() {
    return 42;
}
