// What the surroundings of kelmo-batch may lack: standard streams, readers, threads.
#include "tests/batch/batch_fixture.h"

namespace kelmo {

namespace {

class BatchSurroundings : public cBatchFixture {
  protected:
    BatchSurroundings() {
        for (int i = 0; i < fileCount; ++i) {
            directory.linkSample("1ubq", "f" + std::to_string(i) + ".pdb");
        }
        directory.makeDirectory("whole");
    }

    /// Analyses twenty copies of a sample by a line of the shell, in which "$@" is the program with
    /// its arguments.
    sProcessOutcome runInShell(const std::string& line, const char* jobs) const {
        std::vector<std::string> arguments{"-c",
                                           line,
                                           "sh",
                                           batchProgram().string(),
                                           "kev",
                                           "--output-dir=out",
                                           "--jobs",
                                           jobs,
                                           "--stamp=200703141530"};
        for (int i = 0; i < fileCount; ++i) {
            arguments.push_back("f" + std::to_string(i) + ".pdb");
        }
        sProcessManner manner;
        manner.program = "/bin/sh";
        return runAlone(arguments, manner);
    }

    /// Every report must be that of the same structure analysed alone.
    void expectAllReportsWhole() const {
        const auto found = reports();
        EXPECT_EQ(found.size(), 4U * fileCount);
        ASSERT_EQ(
            runAlone({"kev", "--output-dir=whole", "--stamp=200703141530", ubiquitin}).exitStatus,
            0);
        const auto expected = filesIn(directory.path() / "whole");
        for (const auto& [name, content] : found) {
            const auto same = expected.find("1ubq" + name.substr(name.find('_')));
            ASSERT_TRUE(same != expected.end()) << name;
            EXPECT_TRUE(content == same->second) << name;
        }
    }

    static constexpr int fileCount = 20;
};

} // namespace

TEST_F(BatchSurroundings, MessagesNeverGoIntoReportsWhenStreamsAreClosed) {
    // Which file gets the number of a closed stream is a matter of chance.
    EXPECT_EQ(runInShell("\"$@\" 0<&- 1>&- 2>&-", "6").exitStatus, 0);
    expectAllReportsWhole();
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(runInShell("\"$@\" 2>&-", "6").exitStatus, 0);
        expectAllReportsWhole();
    }
}

TEST_F(BatchSurroundings, RunGoesOnWhenNobodyReadsItsMessages) {
    EXPECT_EQ(runInShell("\"$@\" 2>&1 | true", "1").exitStatus, 0);
    expectAllReportsWhole();
}

TEST_F(BatchSurroundings, NoMessageIsLostWhenTheirReaderIsSlow) {
    // The pipe does not wait; dd makes it so for the program, too, since they share it.
    const sProcessOutcome outcome = runInShell(
        "{ dd oflag=nonblock count=0 2>/dev/null; yes '' | head -c 65536; \"$@\" 2>&1; } |"
        "{ sleep 1; grep -c analyzed >&2; }",
        "2");
    EXPECT_EQ(outcome.err, std::to_string(fileCount) + "\n");
    expectAllReportsWhole();
}

TEST_F(BatchSurroundings, FewerThreadsThanJobsAreSaidAndEnough) {
    // The limit is none for the superuser, who therefore becomes somebody else by name. Somebody
    // else may not look for leaks.
    const sProcessOutcome outcome =
        runInShell("if [ $(id -u) = 0 ]; then"
                   "  set -- setpriv --ruid 64321 --bounding-set=-sys_resource,-sys_admin \"$@\";"
                   "fi;"
                   "ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 exec prlimit --nproc=20 \"$@\"",
                   "200");
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_TRUE(outcome.err.starts_with("The system allows no more than ")) << outcome.err;
    expectAllReportsWhole();
}

} // namespace kelmo
