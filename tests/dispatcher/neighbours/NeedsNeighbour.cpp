// A library that cannot be loaded without the one beside it.
extern "C" __declspec(dllimport) int NeighbourAnswer();

extern "C" __declspec(dllexport) int AnswerOfTheNeighbour() {
    return NeighbourAnswer();
}
