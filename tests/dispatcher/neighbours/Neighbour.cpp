// The library that the other one needs.
extern "C" __declspec(dllexport) int NeighbourAnswer() {
    return 42;
}
