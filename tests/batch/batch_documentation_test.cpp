// What the pages on kelmo-batch show is what it does.
#include "tests/batch/batch_fixture.h"

#include <QRegularExpression>

#include <cstdlib>
#include <set>
#include <sstream>

namespace kelmo {

namespace {

class BatchDocumentation : public cBatchFixture {
  protected:
    /// Runs a command as a reader would paste it, in the directory of the test.
    int pasted(const std::string& command) const {
        const std::string script = "cd '" + directory.path().string() + "' && PATH='" +
                                   batchProgram().parent_path().string() + "':\"$PATH\" && { " +
                                   command + "; } 2>messages";
        return std::system(script.c_str());
    }
};

const std::string page = sourceText("docs/kelmo-batch.md");

/// What the first group of the pattern matches in a text, in order.
std::vector<std::string> matchesIn(const std::string& text, const char* pattern) {
    std::vector<std::string> found;
    auto match = QRegularExpression(pattern, QRegularExpression::MultilineOption)
                     .globalMatch(QString::fromStdString(text));
    while (match.hasNext()) {
        found.push_back(match.next().captured(1).toStdString());
    }
    return found;
}

/// The names of the options in a text, such as "--jobs".
std::set<std::string> optionsIn(const std::string& text) {
    const auto names = matchesIn(text, R"((?<![-\w])(--[a-z][a-z-]+))");
    return {names.begin(), names.end()};
}

} // namespace

TEST_F(BatchDocumentation, HelpOnThePageIsTheHelpOfTheProgram) {
    const auto blocks = fencedBlocks(page);
    ASSERT_EQ(blocks.size(), 1U);
    EXPECT_EQ(runBatch({"--help"}).out, blocks[0]);
}

TEST_F(BatchDocumentation, CommandsOnThePageWork) {
    for (const char* code : {"1ubq", "1a0q", "2hhb"}) {
        directory.linkSample(code, std::string("structures/") + code + ".pdb");
    }
    directory.linkSample("1ubq", "-odd-name.pdb");
    directory.makeDirectory("reports");
    directory.write("run.cfg", "write_xml:\t0\n");
    directory.write("set1.fls", "structures/1ubq.pdb\n");
    std::size_t commands = 0;
    for (const std::string& block : fencedBlocks(page, "sh")) {
        std::istringstream in(block);
        for (std::string command; std::getline(in, command); ++commands) {
            std::filesystem::remove_all(directory.path() / "reports");
            directory.makeDirectory("reports");
            EXPECT_EQ(pasted(command), 0) << command << '\n'
                                          << contentOf(directory.path() / "messages");
            EXPECT_FALSE(filesIn(directory.path() / "reports").empty()) << command;
        }
    }
    EXPECT_GT(commands, 5U);
}

TEST_F(BatchDocumentation, ManualPageHasTheOptionsOfTheHelp) {
    std::string manual = sourceText("packaging/kelmo-batch.1");
    for (auto at = manual.find("\\-"); at != std::string::npos; at = manual.find("\\-")) {
        manual.erase(at, 1);
    }
    const auto expected = optionsIn(runBatch({"--help"}).out);
    EXPECT_EQ(expected.size(), 20U);
    EXPECT_EQ(optionsIn(manual), expected);
}

TEST_F(BatchDocumentation, ExampleOfAnInputListIsRead) {
    const auto blocks = fencedBlocks(sourceText("docs/formats/input-list.md"));
    ASSERT_EQ(blocks.size(), 1U);
    directory.write("set1.fls", blocks[0]);
    directory.linkSample("1ubq", "structures/1ubq.pdb");
    directory.linkSample("1ubq", "structures/a name with blanks.pdb");
    directory.linkSample("2hhb", "structures/2hhb.pdb");
    const sProcessOutcome outcome = run("kev", {"--list=set1.fls"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    EXPECT_EQ(reports().size(), 12U);
}

TEST_F(BatchDocumentation, EveryDocumentedKeyIsTaken) {
    // Rows of the two tables: the keys stand in backquotes in the first column.
    const std::string text = sourceText("docs/formats/configuration.md");
    const auto vorBegins = text.find("## Keys of the interaction module");
    const auto bothBegin = text.find("## Keys of both modules");
    ASSERT_NE(vorBegins, std::string::npos);
    ASSERT_NE(bothBegin, std::string::npos);
    const auto expectKeysAreTaken = [&](const std::string& module, const std::string& table) {
        std::size_t keys = 0;
        for (const std::string& cell : matchesIn(table, R"(^\| (`[^|]+) \|)")) {
            for (const std::string& key : matchesIn(cell, "`([a-z_]+)`")) {
                // A value that every kind but a path refuses; nothing is started for lack of files.
                const auto outcome = runAlone({module, "--set=" + key + "=?"});
                EXPECT_EQ(outcome.exitStatus, 2);
                EXPECT_FALSE(contains(outcome.err, "is no key")) << outcome.err;
                ++keys;
            }
        }
        return keys;
    };
    EXPECT_EQ(expectKeysAreTaken("kev", text.substr(0, vorBegins)), 20U);
    EXPECT_EQ(expectKeysAreTaken("vor", text.substr(vorBegins, bothBegin - vorBegins)), 15U);
    for (const char* module : {"kev", "vor"}) {
        EXPECT_EQ(expectKeysAreTaken(module, text.substr(bothBegin)), 7U);
    }
}

} // namespace kelmo
