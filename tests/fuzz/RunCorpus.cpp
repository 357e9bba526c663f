// Runs a target once over every input of a folder, for builds that the fuzzer itself is not part of.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "one folder of inputs is wanted\n");
        return 2;
    }
    size_t inputs = 0;
    for (const auto& file : std::filesystem::directory_iterator(arguments[1])) {
        std::ifstream stream(file.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        ++inputs;
    }
    std::printf("%zu inputs\n", inputs);
    return inputs != 0 ? 0 : 1;
}
