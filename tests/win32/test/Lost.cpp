// A library in a folder in which the loader does not look.
extern "C" __declspec(dllexport) int LostAnswer() {
    return 42;
}
