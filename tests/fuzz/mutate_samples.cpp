// Writes mutated pieces of the samples as PDB files: mutate_samples FIRST COUNT DIRECTORY
// File number n is the same on every machine.
#include "tests/fuzz/sample_cuts.h"
#include "tests/fuzz/text_mutator.h"
#include "tests/support/test_files.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

using namespace kelmo;

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("Usage: mutate_samples FIRST COUNT DIRECTORY\n", stderr);
        return 2;
    }
    const unsigned long first = std::strtoul(argv[1], nullptr, 10);
    const unsigned long count = std::strtoul(argv[2], nullptr, 10);
    const std::filesystem::path directory(argv[3]);
    const std::vector<std::string> cuts = sampleCuts(60, 150);
    for (unsigned long number = first; number < first + count; ++number) {
        cTextMutator mutator(static_cast<unsigned>(number));
        const std::string& cut = mutator.oneOf(cuts);
        writeContent(directory / ("mutation" + std::to_string(number) + ".pdb"),
                     mutator.mutated(cut, mutator.oneOf(cuts)));
    }
    return 0;
}
