// The memory and the descriptors of a run do not follow the number of its files, and a file that is
// too large for the memory is an error of that file. Not for sanitizers, which have a memory of
// their own.
#include "tests/batch/batch_fixture.h"
#include "tests/support/pdb_lines.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <thread>

namespace kelmo {

namespace {

std::string alphaCarbon(unsigned serial, double x) {
    return atomLine("CA", "GLY", 'A', std::to_string(serial % 10'000), x, 0, 0, serial);
}

struct sUse {
    std::size_t peakMemory = 0; ///< bytes
    std::size_t mostDescriptors = 0;
    std::size_t peakAddressSpace = 0;
};

class BatchMemory : public cBatchFixture {
  protected:
    /// What a run over that many tiny files uses.
    sUse useOf(int fileCount, const std::string& jobs) const {
        directory.write("tiny.pdb", alphaCarbon(1, 0.0) + alphaCarbon(2, 4.0) + "END\n");
        std::string list;
        for (int i = 0; i < fileCount; ++i) {
            const std::string name =
                "in/a_long_enough_name_of_a_file_" + std::to_string(i) + ".pdb";
            const auto link = directory.path() / name;
            std::filesystem::create_directories(link.parent_path());
            if (!std::filesystem::exists(link)) {
                std::filesystem::create_symlink(directory.path() / "tiny.pdb", link);
            }
            list += name + '\n';
        }
        directory.write("all.fls", list);
        sProcessManner manner;
        manner.directory = directory.path();
        std::vector<std::string> arguments{"kev",    "--quiet", "--output-dir=out",
                                           "--jobs", jobs,      "--list=all.fls"};
        for (const char* key :
             {"calc_rasa", "calc_dpx", "calc_cx", "calc_hydro", "analyze_unbound", "write_xml"}) {
            arguments.push_back(std::string("--set=") + key + "=0");
        }
        cBatchProcess process(arguments, manner);
        sUse use;
        while (!process.hasEnded()) {
            use.mostDescriptors = std::max(use.mostDescriptors, process.descriptorCount());
            use.peakAddressSpace = std::max(use.peakAddressSpace, process.peakAddressSpace());
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        const sProcessOutcome outcome = process.finish();
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        use.peakMemory = outcome.peakMemory;
        return use;
    }

    void expectReportsOfSmallFiles() const {
        const auto left = reports();
        for (const char* kind : {"bound.xml", "bound.tbl", "unbound.xml", "unbound.tbl"}) {
            EXPECT_EQ(left.count(std::string("1a0q_200703141530_") + kind), 1U) << kind;
            EXPECT_EQ(left.count(std::string("small_200703141530_") + kind), 1U) << kind;
            EXPECT_EQ(left.count(std::string("huge_200703141530_") + kind), 0U) << kind;
        }
    }

    /// The peak memory of an analysis of contacts between so many residues, each a chain of its
    /// own, along a line; fills in how many contacts there are.
    std::size_t memoryOfContacts(int residues, double spacing, bool isXml,
                                 std::size_t& contacts) const {
        std::string text;
        for (int i = 0; i < residues; ++i) {
            const char chain = i % 2 == 0 ? 'A' : 'B';
            const std::string number = std::to_string(i + 1);
            const double x = i % 100 * spacing;
            const double y = i / 100 * spacing;
            text += atomLine("N", "GLY", chain, number, x, y, 0);
            text += atomLine("CA", "GLY", chain, number, x, y, 1);
        }
        directory.write("contacts.pdb", text);
        const sProcessOutcome outcome =
            run("vor", {"--quiet", "--jobs=2", "--set=threshold=10",
                        "--set=write_xml=" + std::to_string(isXml ? 1 : 0),
                        "--set=write_table=" + std::to_string(isXml ? 0 : 1), "contacts.pdb"});
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
        const std::string report =
            contentOf(directory.path() / "out" /
                      (std::string("contacts_200703141530_contacts.") + (isXml ? "xml" : "tbl")));
        contacts = 0;
        const std::string sign = isXml ? "<contact>" : "MaximumDistance";
        for (auto at = report.find(sign); at != std::string::npos; at = report.find(sign, at + 1)) {
            ++contacts;
        }
        return outcome.peakMemory;
    }

    /// With everything that goes along with a contact, and reports far larger than that.
    void expectNoMoreThan64BytesAContact(int residues, bool isXml) const {
        constexpr std::size_t most = 64;
        std::size_t none = 0;
        std::size_t contacts = 0;
        const std::size_t without = memoryOfContacts(residues, 20.0, isXml, none);
        const std::size_t with = memoryOfContacts(residues, 0.01, isXml, contacts);
        EXPECT_EQ(none, 0U);
        EXPECT_EQ(contacts,
                  static_cast<std::size_t>(residues) * static_cast<std::size_t>(residues - 1));
        EXPECT_LT(with, without + most * contacts) << contacts << " contacts";
    }

    /// Room beside what a small run uses: plenty for one, too little for the huge one.
    static constexpr std::size_t spareMemory = std::size_t{48} << 20;

    static std::string hugeStructure() {
        constexpr unsigned atoms = 500'000;
        std::string text;
        for (unsigned i = 0; i < atoms; ++i) {
            text += alphaCarbon(i, i % 2000 * 4.0);
        }
        return text + "END\n";
    }
};

} // namespace

TEST_F(BatchMemory, DoesNotFollowTheNumberOfFiles) {
    for (const char* jobs : {"1", "2"}) {
        const std::size_t few = useOf(100, jobs).peakMemory;
        const std::size_t many = useOf(5000, jobs).peakMemory;
        EXPECT_LT(static_cast<double>(many), 1.05 * static_cast<double>(few)) << jobs;
    }
}

TEST_F(BatchMemory, DescriptorsDoNotFollowTheNumberOfFiles) {
    // Standard streams, the message pipe, and for each core the structure and the report that is
    // being written, with its second descriptor; the rest is for the libraries.
    constexpr std::size_t most = 16;
    EXPECT_LE(useOf(50, "2").mostDescriptors, most);
    EXPECT_LE(useOf(2000, "2").mostDescriptors, most);
}

TEST_F(BatchMemory, ContactTakesAtMost64Bytes) {
    expectNoMoreThan64BytesAContact(1400, false);
}

TEST_F(BatchMemory, ReportsOfContactsAreNotHeldInMemory) {
    expectNoMoreThan64BytesAContact(500, true); // of which XML takes seven times as much
}

TEST_F(BatchMemory, MoreJobsThanHandlesAreNoFault) {
    std::vector<std::string> arguments{"--jobs=40", "--quiet"};
    for (int i = 0; i < 200; ++i) {
        arguments.push_back("f" + std::to_string(i) + ".pdb");
        directory.linkSample("1ubq", arguments.back());
    }
    sProcessManner manner;
    manner.openFileLimit = 80;
    const sProcessOutcome outcome = run("vor", arguments, manner);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(reports().size(), 200U * 6U);
}

TEST_F(BatchMemory, FileThatIsTooLargeFailsAndTheOthersAreAnalysed) {
    directory.write("huge.pdb", hugeStructure());
    directory.linkSample("1ubq", "small.pdb");
    sProcessManner manner;
    manner.memoryLimit = useOf(300, "1").peakAddressSpace + spareMemory;
    const sProcessOutcome outcome =
        run("kev", {"--jobs=1", antibody, "huge.pdb", "small.pdb"}, manner);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(contains(outcome.err, "Not enough memory for PDB file huge.pdb\n")) << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("Failed: huge.pdb\n"
                                      "2 of 3 files analysed, 1 failed, 0 reports missing\n"))
        << outcome.err;
    expectReportsOfSmallFiles();
}

TEST_F(BatchMemory, RoomIsNeededForWhatIsReadOnly) {
    // One model, and behind its end as much as a trajectory holds.
    directory.write("long.pdb", sampleText("1ubq"));
    std::filesystem::resize_file(directory.path() / "long.pdb", std::uintmax_t{4} << 30);
    sProcessManner manner;
    manner.memoryLimit = useOf(300, "1").peakAddressSpace + spareMemory;
    const sProcessOutcome outcome = run("kev", {"--jobs=1", "--quiet", "long.pdb"}, manner);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST_F(BatchMemory, FilesThatFailedBesideATooLargeOneAreMadeUpForByResuming) {
    directory.write("huge.pdb", hugeStructure());
    directory.linkSample("1ubq", "small.pdb");
    sProcessManner manner;
    manner.memoryLimit = useOf(300, "2").peakAddressSpace + spareMemory;
    // Whether the small ones get their memory beside the huge one depends on the moment.
    const sProcessOutcome both =
        run("kev", {"--jobs=2", antibody, "huge.pdb", "small.pdb"}, manner);
    EXPECT_EQ(both.exitStatus, 1);
    EXPECT_TRUE(contains(both.err, "Not enough memory for PDB file huge.pdb\n")) << both.err;
    const sProcessOutcome resumed =
        run("kev", {"--resume", "--jobs=1", antibody, "huge.pdb", "small.pdb"}, manner);
    EXPECT_EQ(resumed.exitStatus, 1);
    EXPECT_TRUE(resumed.err.ends_with(", 1 failed, 0 reports missing\n")) << resumed.err;
    expectReportsOfSmallFiles();
}

} // namespace kelmo
