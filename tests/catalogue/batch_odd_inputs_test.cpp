// kelmo-batch on the whole catalogue, on structures of up to a million atoms, and on what is no
// file of text at all.
#include "tests/batch/batch_fixture.h"
#include "tests/catalogue/odd_inputs.h"

#include <algorithm>
#include <fstream>

#include <sys/stat.h>

namespace kelmo {

namespace {

constexpr std::size_t megabyte = 1U << 20U;

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t sanitizerFactor = 4; // freed memory is kept for a while
#elif defined(__SANITIZE_THREAD__)
constexpr std::size_t sanitizerFactor = 8;
#else
constexpr std::size_t sanitizerFactor = 1;
#endif

class BatchOddInputs : public cBatchFixture {
  protected:
    /// Writes the catalogue; returns the names of its files.
    std::vector<std::string> writeCatalogue() {
        std::vector<std::string> names;
        for (const sOddInput& input : oddInputs()) {
            names.push_back("odd" + std::to_string(names.size()) + ".pdb");
            directory.write(names.back(), input.bytes);
            if (input.faultyLine != 0 || input.atoms == 0) {
                failures += "Failed: " + names.back() + '\n';
                ++failureCount;
            }
        }
        return names;
    }

    /// Writes a structure of ten atoms to a residue straight to its file, so that this process
    /// stays small.
    void writeLarge(const char* name, std::size_t residues, double atomVolume) const {
        std::ofstream out(directory.path() / name, std::ios::binary);
        writeCloud(out, residues, atomVolume);
    }

    std::string failures; ///< what the summary says of the catalogue
    std::size_t failureCount = 0;
};

/// The last line of what was written.
std::string lastLine(const std::string& text) {
    return text.substr(text.rfind('\n', text.size() - 2) + 1);
}

} // namespace

TEST_F(BatchOddInputs, WholeCatalogueInOneRunOfEachModule) {
    const std::vector<std::string> names = writeCatalogue();
    const std::string summary = failures + std::to_string(names.size() - failureCount) + " of " +
                                std::to_string(names.size()) + " files analysed, " +
                                std::to_string(failureCount) + " failed, 0 reports missing\n";
    std::vector<std::string> arguments = names;
    arguments.insert(arguments.begin(), {"--jobs=3", "--quiet"});
    const sProcessOutcome kev = run("kev", arguments);
    EXPECT_EQ(kev.exitStatus, 1);
    EXPECT_TRUE(kev.err.ends_with(summary)) << kev.err;
    EXPECT_EQ(reports().size(), 4 * (names.size() - failureCount));
    arguments.insert(arguments.begin(), {"--set=contact_criterion=3", "--set=write_contacts=1"});
    const sProcessOutcome vor = run("vor", arguments);
    EXPECT_EQ(vor.exitStatus, 1);
    EXPECT_TRUE(vor.err.ends_with(summary)) << vor.err;
    EXPECT_EQ(reports().size(), (4 + 6) * (names.size() - failureCount));
}

TEST_F(BatchOddInputs, MemoryDoesNotGrowWithTheSpaceBetweenAtoms) {
    for (const sOddInput& input : oddInputs()) {
        if (input.name.find(" at the end") != std::string::npos) {
            directory.write(input.name + ".pdb", input.bytes);
            for (const char* module : {"kev", "vor"}) {
                const sProcessOutcome outcome = run(module, {"--quiet", input.name + ".pdb"});
                EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
                EXPECT_LT(outcome.peakMemory, 100 * megabyte * sanitizerFactor) << input.name;
            }
        }
    }
    EXPECT_EQ(reports().size(), 4 * 10U);
}

TEST_F(BatchOddInputs, MoreThanAHundredThousandAtomsGetEveryAttribute) {
    writeLarge("large.pdb", 12'000, 20.0);
    const sProcessOutcome kev = run("kev", {"large.pdb"});
    EXPECT_EQ(kev.exitStatus, 0) << kev.err;
    EXPECT_LT(kev.peakMemory, 400 * megabyte * sanitizerFactor);
    const sProcessOutcome vor = run("vor", {"--set=contact_criterion=2", "large.pdb"});
    EXPECT_EQ(vor.exitStatus, 0) << vor.err;
    EXPECT_EQ(reports().size(), 10U);
}

TEST_F(BatchOddInputs, MillionAtomsAreReadAndReported) {
    writeLarge("huge.pdb", 100'000, 500.0);
    const sProcessOutcome outcome =
        run("kev",
            {"--set=calc_asa=0", "--set=calc_rasa=0", "--set=calc_dpx=0", "--set=calc_hydro=0",
             "--set=cx_threshold=5", "--set=analyze_unbound=0", "--set=write_xml=0", "huge.pdb"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_LT(outcome.peakMemory, 1000 * megabyte * sanitizerFactor);
    const std::string report = contentOf(directory.path() / "out/huge_200703141530_bound.tbl");
    EXPECT_GT(std::count(report.begin(), report.end(), '\n'), 100'000);
}

TEST_F(BatchOddInputs, WhatIsNoRegularFileIsRefusedThroughLinksToo) {
    ASSERT_EQ(::mkfifo((directory.path() / "pipe").c_str(), 0600), 0);
    const auto link = [&](const char* target, const char* name) {
        std::filesystem::create_symlink(target, directory.path() / name);
        return std::string(name);
    };
    ASSERT_EQ(::mknod((directory.path() / "socket.pdb").c_str(), S_IFSOCK | 0600, 0), 0);
    const std::vector<std::string> names = {link("pipe", "to_pipe.pdb"),
                                            link("/dev/zero", "to_zeros.pdb"),
                                            link("out", "to_directory.pdb"),
                                            link("nothing", "dangling.pdb"),
                                            link("loop.pdb", "loop.pdb"),
                                            "socket.pdb",
                                            "/dev/null",
                                            "pipe/inside.pdb",
                                            std::string(300, 'n') + ".pdb",
                                            std::string(5000, '/') + "p.pdb",
                                            ""};
    std::string refused;
    for (const std::string& name : names) {
        refused += "Could not open file " + name + '\n';
    }
    std::vector<std::string> arguments = names;
    arguments.insert(arguments.begin(), {"--jobs=1", "--quiet"});
    for (const char* module : {"kev", "vor"}) {
        const sProcessOutcome outcome = run(module, arguments);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_TRUE(outcome.err.starts_with(refused)) << outcome.err;
        EXPECT_EQ(lastLine(outcome.err), "0 of 11 files analysed, 11 failed, 0 reports missing\n");
    }
    EXPECT_TRUE(reports().empty());
}

TEST_F(BatchOddInputs, FileThatOpensButCannotBeReadSaysWhy) {
    // The system's own memory file: at address 0 there is nothing to read.
    const sProcessOutcome outcome = run("kev", {"--quiet", "/proc/self/mem"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(
        outcome.err.starts_with("Could not read PDB file /proc/self/mem: Input/output error\n"))
        << outcome.err;
}

} // namespace kelmo
