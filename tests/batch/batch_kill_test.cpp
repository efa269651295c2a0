// Processes that are killed at any moment: under final names there are whole reports only, and a
// resumed run completes them.
#include "tests/batch/batch_fixture.h"

#include <chrono>
#include <csignal>
#include <random>

namespace kelmo {

namespace {

class BatchKill : public cBatchFixture {
  protected:
    static constexpr int fileCount = 20;

    /// Long enough for a kill in the middle of it.
    std::vector<std::string> command(const std::string& module, const std::string& out) const {
        std::vector<std::string> arguments{module, "--output-dir=" + out, "--stamp=200703141530",
                                           "--jobs=2"};
        if (module == "vor") {
            arguments.emplace_back("--set=contact_criterion=3");
        }
        for (int i = 0; i < fileCount; ++i) {
            arguments.push_back("in/f" + std::to_string(i) + ".pdb");
        }
        return arguments;
    }

    /// Kills a run after so much work since it has told of the file.
    void kill(const std::string& module, int file, tProcessorTime work) const {
        sProcessManner manner;
        manner.directory = directory.path();
        cBatchProcess process(command(module, "out"), manner);
        ASSERT_TRUE(process.waitForMessage("f" + std::to_string(file) + ".pdb analyzed"));
        waitForWork(
            work, [&] { return process.processorTime(); }, [&] { return process.hasEnded(); });
        process.sendSignal(SIGKILL);
        process.finish();
    }

    void expectKillsLoseNothing(const std::string& module) {
        for (int i = 0; i < fileCount; ++i) {
            directory.linkSample(i % 3 == 0 ? "1a0q" : "1ubq", "in/f" + std::to_string(i) + ".pdb");
        }
        const auto wholeDirectory = directory.makeDirectory("whole");
        EXPECT_EQ(runAlone(command(module, "whole")).exitStatus, 0);
        const auto whole = filesIn(wholeDirectory);
        std::mt19937 random(20070314); // NOLINT: the same moments every time
        std::uniform_int_distribution<int> file(0, fileCount / 2);
        std::uniform_int_distribution<int> microseconds(0, 40'000); // of two cores
        bool wasInterrupted = false;
        for (int i = 0; i < killCount; ++i) {
            kill(module, file(random), std::chrono::microseconds(microseconds(random)));
            const auto left = reports();
            wasInterrupted = wasInterrupted || left.size() < whole.size();
            for (const auto& [name, content] : left) {
                if (!name.starts_with(".kelmo-")) {
                    ASSERT_TRUE(whole.contains(name)) << name;
                    EXPECT_TRUE(content == whole.at(name)) << name << " is not whole";
                }
            }
            auto resumed = command(module, "out");
            resumed.insert(resumed.begin() + 1, "--resume");
            EXPECT_EQ(runAlone(resumed).exitStatus, 0);
            EXPECT_TRUE(reports() == whole);
            std::filesystem::remove_all(directory.path() / "out");
            directory.makeDirectory("out");
        }
        EXPECT_TRUE(wasInterrupted) << "every run had ended by then: the test showed nothing";
    }

    static constexpr int killCount = 5;
};

} // namespace

TEST_F(BatchKill, StructureRunsLoseNothing) {
    expectKillsLoseNothing("kev");
}

TEST_F(BatchKill, InteractionRunsLoseNothing) {
    expectKillsLoseNothing("vor");
}

} // namespace kelmo
