// The cores of a run: the same reports whatever their number, and no more threads than asked for.
#include "tests/batch/batch_fixture.h"

#include <algorithm>
#include <sstream>

namespace kelmo {

namespace {

/// A thread checker may have a thread of its own in the program.
#ifdef __SANITIZE_THREAD__
constexpr std::size_t checkersThreads = 1;
#else
constexpr std::size_t checkersThreads = 0;
#endif

class BatchJobs : public cBatchFixture {
  protected:
    /// Links that many files, the samples in turn; returns their names.
    std::vector<std::string> linkFiles(int count) const {
        const std::vector<std::string> codes{"2hhb", "1ubq", "1a0q"};
        std::vector<std::string> names;
        for (int i = 0; i < count; ++i) {
            names.push_back("in/file" + std::to_string(i) + ".pdb");
            directory.linkSample(codes[static_cast<std::size_t>(i) % codes.size()], names.back());
        }
        return names;
    }

    std::map<std::string, std::string> reportsWith(const std::string& module, int jobs,
                                                   std::vector<std::string> arguments) {
        const auto out = directory.makeDirectory("out" + std::to_string(++runs));
        arguments.insert(arguments.begin(), {module, "--stamp=200703141530", "--output-dir",
                                             out.string(), "--jobs", std::to_string(jobs)});
        EXPECT_EQ(runAlone(arguments).exitStatus, 0);
        return filesIn(out);
    }

    void expectSameReports(const std::string& module, const std::vector<std::string>& arguments,
                           std::size_t reportCount) {
        const auto expected = reportsWith(module, 1, arguments);
        EXPECT_EQ(expected.size(), reportCount);
        for (const int jobs : {2, 4}) {
            EXPECT_TRUE(reportsWith(module, jobs, arguments) == expected) << module << jobs;
        }
    }

    /// The largest number of threads seen while the program runs.
    std::size_t mostThreads(const std::string& jobs, const std::vector<std::string>& names) const {
        std::vector<std::string> arguments{"kev", "--output-dir=out", "--set=z_slice=0.02",
                                           "--jobs", jobs};
        arguments.insert(arguments.end(), names.begin(), names.end());
        sProcessManner manner;
        manner.directory = directory.path();
        cBatchProcess process(arguments, manner);
        std::size_t most = 0;
        while (!process.hasEnded()) {
            most = std::max(most, process.threadCount());
        }
        EXPECT_EQ(process.finish().exitStatus, 0);
        return most;
    }

  private:
    int runs = 0;
};

} // namespace

TEST_F(BatchJobs, ReportsDoNotDependOnTheNumber) {
    const auto names = linkFiles(12);
    for (const std::string module : {"kev", "vor"}) {
        const auto expected = reportsWith(module, 1, names);
        EXPECT_EQ(expected.size(), names.size() * (module == "kev" ? 4U : 6U));
        for (const int jobs : {2, 4, 16}) {
            EXPECT_TRUE(reportsWith(module, jobs, names) == expected) << module << jobs;
        }
    }
}

TEST_F(BatchJobs, SingleFileIsTheSameOnSeveralCores) {
    for (const std::string& sample : {ubiquitin, antibody, haemoglobin}) {
        SCOPED_TRACE(sample);
        expectSameReports("kev", {sample}, 4U);
        // The criterion that computes areas; the others have no work to share.
        expectSameReports("vor", {"--set=contact_criterion=3", "--set=write_contacts=1", sample},
                          6U);
    }
}

TEST_F(BatchJobs, EveryCriterionIsTheSameOnSeveralCores) {
    for (const std::string criterion : {"1", "2", "3", "4"}) {
        SCOPED_TRACE(criterion);
        expectSameReports("vor",
                          {"--set=contact_criterion=" + criterion, "--set=write_contacts=1",
                           ubiquitin, haemoglobin, antibody},
                          18U);
    }
}

TEST_F(BatchJobs, OfFilesWithTheSameBaseNameTheLastOneRemains) {
    // The first is by far the slowest: worked on at the same time, it would end last.
    const std::vector<std::string> names{"a/x.pdb", "b/x.pdb", "c/x.pdb", "d/y.pdb", "e/z.pdb"};
    directory.linkSample("2hhb", names[0]);
    directory.linkSample("1a0q", names[1]);
    for (std::size_t i = 2; i < names.size(); ++i) {
        directory.linkSample("1ubq", names[i]);
    }
    const auto expected = reportsWith("kev", 1, names);
    EXPECT_TRUE(contains(expected.at("x_200703141530_bound.tbl"), "pdb_id: 1UBQ"));
    for (const int jobs : {2, 4, 8}) {
        EXPECT_TRUE(reportsWith("kev", jobs, names) == expected) << jobs;
    }
}

TEST_F(BatchJobs, NoResultIsLostHoweverManyComeAtTheSameTime) {
    constexpr int fileCount = 20'000;
    std::string list;
    for (int i = 0; i < fileCount; ++i) {
        list += "m" + std::to_string(i) + '\n';
    }
    directory.write("missing.fls", list);
    for (int round = 0; round < 3; ++round) {
        const sProcessOutcome outcome = run("kev", {"--quiet", "--jobs=8", "--list=missing.fls"});
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_TRUE(outcome.err.ends_with("0 of 20000 files analysed, 20000 failed, "
                                          "0 reports missing\n"))
            << outcome.err.substr(outcome.err.size() -
                                  std::min<std::size_t>(200, outcome.err.size()));
        // Every one once, in the order of the files.
        std::size_t at = outcome.err.find("Failed: ");
        for (int i = 0; i < fileCount && at != std::string::npos; ++i) {
            const std::string line = "Failed: m" + std::to_string(i) + '\n';
            ASSERT_EQ(outcome.err.compare(at, line.size(), line), 0) << i;
            at += line.size();
        }
    }
}

TEST_F(BatchJobs, MoreJobsThanCoresAreNoReasonForAMessage) {
    auto names = linkFiles(3);
    names.insert(names.begin(), {"--jobs=64", "--quiet"});
    const sProcessOutcome outcome = run("kev", names);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST_F(BatchJobs, MessagesOfAFileStayTogether) {
    auto names = linkFiles(12);
    names.insert(names.begin(), "--jobs=4");
    const sProcessOutcome outcome = run("kev", names);
    EXPECT_EQ(outcome.exitStatus, 0);
    std::istringstream in(outcome.err);
    const std::string begin = "Analysing structure of peptide from ";
    int pairs = 0;
    for (std::string line; std::getline(in, line);) {
        if (!line.starts_with(begin)) {
            continue;
        }
        const std::string name = line.substr(begin.size(), line.size() - begin.size() - 3);
        std::getline(in, line);
        EXPECT_TRUE(line.starts_with("Not analysed in " + name.substr(name.rfind('/') + 1)));
        std::getline(in, line);
        EXPECT_EQ(line, "Structure of peptide from " + name + " analyzed");
        ++pairs;
    }
    EXPECT_EQ(pairs, 12);
    EXPECT_TRUE(outcome.err.ends_with("12 of 12 files analysed, 0 failed, 0 reports missing\n"));
}

TEST_F(BatchJobs, OneJobIsOneThread) {
    const auto names = linkFiles(6);
    const std::size_t threads = mostThreads("1", names);
    EXPECT_GE(threads, 1U);
    EXPECT_LE(threads, 1U + checkersThreads);
}

TEST_F(BatchJobs, NJobsAreAtMostNThreads) {
    const auto names = linkFiles(6);
    const std::size_t threads = mostThreads("3", names);
    EXPECT_GT(threads, 1U);
    EXPECT_LE(threads, 3U + checkersThreads);
}

TEST_F(BatchJobs, MoreJobsThanFilesHelpWithinAFile) {
    const std::size_t threads = mostThreads("2", {haemoglobin});
    EXPECT_GE(threads, 2U);
    EXPECT_LE(threads, 2U + checkersThreads);
}

} // namespace kelmo
