// A library that needs the lost one.
extern "C" __declspec(dllimport) int LostAnswer();

extern "C" __declspec(dllexport) int DependentAnswer() {
    return LostAnswer();
}
