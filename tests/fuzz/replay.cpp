// Runs a fuzz target without libFuzzer: over its seeds and mutations of them, the same every time,
// or over files, such as a finding.
//   fuzz_TARGET COUNT      the seeds and COUNT mutations
//   fuzz_TARGET FILE...    the files
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/seeds.h"
#include "tests/fuzz/text_mutator.h"
#include "tests/support/test_files.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace kelmo {

namespace {

/// An input that takes longer hangs; generous, for slow machines and sanitizers.
constexpr unsigned longestSeconds = 120;

// Plain data for the handler below, which may run in any state of the process.
const char* currentBytes = nullptr;
std::size_t currentSize = 0;
char reproducer[4096];

/// Writes the input at fault to a file and tells its name.
void keepCurrentInput() {
    const int file = ::open(reproducer, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    const bool isKept =
        file >= 0 && ::write(file, currentBytes, currentSize) == static_cast<ssize_t>(currentSize);
    const std::string_view text = isKept ? "The input at fault was written to "
                                         : "The input at fault could not be written to ";
    for (const std::string_view part :
         {text, std::string_view(reproducer), std::string_view("\n")}) {
        if (::write(STDERR_FILENO, part.data(), part.size()) < 0) {
            break;
        }
    }
}

void endFaulty(int signalNumber) {
    keepCurrentInput();
    std::signal(signalNumber, SIG_DFL);
    std::raise(signalNumber);
}

void watchFaults() {
    const auto place = std::filesystem::current_path() / ("reproducer-" KELMO_FUZZ_TARGET);
    std::snprintf(reproducer, sizeof reproducer, "%s", place.c_str());
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(keepCurrentInput);
#endif
    for (const int signalNumber : {SIGABRT, SIGALRM, SIGFPE, SIGILL}) {
        std::signal(signalNumber, endFaulty);
    }
#ifndef __SANITIZE_ADDRESS__
    std::signal(SIGSEGV, endFaulty); // else the sanitizer's, with a trace
#endif
}

void run(const std::string& input) {
    currentBytes = input.data();
    currentSize = input.size();
    ::alarm(longestSeconds);
    // In a block of its own size, so that reading past its end is seen.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    ::alarm(0);
}

std::size_t replaySeeds(std::size_t mutations) {
    const std::vector<std::string> seeds = seedsOf(KELMO_FUZZ_TARGET);
    for (const std::string& seed : seeds) {
        run(seed);
    }
    for (std::size_t i = 0; i < mutations && !seeds.empty(); ++i) {
        cTextMutator mutator(static_cast<unsigned>(i));
        const std::string& seed = mutator.oneOf(seeds);
        run(mutator.mutated(seed, mutator.oneOf(seeds)));
    }
    return seeds.empty() ? 0 : seeds.size() + mutations;
}

} // namespace

} // namespace kelmo

using namespace kelmo;

int main(int argc, char** argv) {
    watchFaults();
    std::size_t count = 0;
    std::size_t mutations = 0;
    const std::string_view argument = argc > 1 ? argv[1] : "0";
    const char* const end = argument.data() + argument.size();
    const auto [stop, error] = std::from_chars(argument.data(), end, mutations);
    if (error == std::errc() && stop == end) {
        count = replaySeeds(mutations);
    } else {
        // Read before any runs: a target may go to a directory of its own.
        std::vector<std::string> inputs;
        std::transform(argv + 1, argv + argc, std::back_inserter(inputs), contentOf);
        for (const std::string& input : inputs) {
            run(input);
        }
        count = inputs.size();
    }
    std::printf("%zu inputs, none at fault\n", count);
    return count > 0 ? 0 : 1;
}
