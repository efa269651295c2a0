// Writes the seeds of a fuzz target into a directory: write_fuzz_seeds TARGET DIRECTORY
#include "tests/fuzz/seeds.h"
#include "tests/support/test_files.h"

#include <cstdio>
#include <filesystem>

using namespace kelmo;

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("Usage: write_fuzz_seeds TARGET DIRECTORY\n", stderr);
        return 2;
    }
    const std::filesystem::path directory(argv[2]);
    std::filesystem::create_directories(directory);
    const std::vector<std::string> seeds = seedsOf(argv[1]);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        writeContent(directory / ("seed-" + std::to_string(i)), seeds[i]);
    }
    std::printf("%zu seeds of %s\n", seeds.size(), argv[1]);
    return seeds.empty() ? 1 : 0;
}
