#include "bench/memory/Memory.h"

int main(int argc, char** argv) {
    return bench::RunProgram(argc, argv, {{"memory", bench::MeasureMemory}});
}
