// A library with one export.
extern "C" __declspec(dllexport) int SampleAnswer() {
    return 42;
}
