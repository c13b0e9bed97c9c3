// Where there is no fuzzer: a target with each file of the folder that is named, once.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

int main(int argc, char* argv[]) {
    if (argc != 2)
        return 2;
    int played = 0;
    for (const auto& seed : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(seed.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        ++played;
    }
    std::cout << "Played " << played << " seeds\n";
    return played > 0 ? 0 : 1;
}
