// Small parts of the runner by themselves.
#include "analysis/shipped_tables.h"
#include "base/shown_text.h"
#include "batch/help_text.h"
#include "batch/input_paths.h"
#include "batch/open_files.h"
#include "batch/progress_line.h"
#include "batch/stop_signal.h"
#include "batch/summary.h"
#include "run/file_path.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmo {

namespace {

std::vector<std::string> warningsFor(const cInputPaths& paths) {
    return sameBaseNameWarnings(paths, cSameBaseNames(paths));
}

} // namespace

TEST(ProgressLine, ShowsFilesRateAndTimeLeft) {
    EXPECT_EQ(progressLine({10, 0, 40}, 20.0, 79),
              "[#######.......................] 10/40 files, 0.5 files/s, 1:00 left");
}

TEST(ProgressLine, HasNoRateBeforeTheFirstFile) {
    EXPECT_EQ(progressLine({0, 0, 3}, 5.0, 79), "[..............................] 0/3 files");
}

TEST(ProgressLine, EndsFull) {
    EXPECT_EQ(progressLine({3, 0, 3}, 2.0, 79),
              "[##############################] 3/3 files, 1.5 files/s, 0:00 left");
}

TEST(ProgressLine, ShowsHoursWhenThereAreAny) {
    EXPECT_EQ(progressLine({1, 0, 2}, 3723.0, 30), "1/2 files, 0.000269 files/s, 1");
    EXPECT_NE(progressLine({1, 0, 2}, 3723.0, 79).find(" 1:02:03 left"), std::string::npos);
    EXPECT_NE(progressLine({1, 0, 2}, 1e12, 79).find(" 99:59:59 left"), std::string::npos);
}

TEST(ProgressLine, FilesTakenOverCountAsDoneButNotForTheRate) {
    EXPECT_EQ(progressLine({10, 20, 40}, 20.0, 79),
              "[######################........] 30/40 files, 0.5 files/s, 0:20 left");
    EXPECT_EQ(progressLine({0, 20, 40}, 20.0, 79), "[###############...............] 20/40 files");
}

TEST(ProgressLine, NeverExceedsTheColumns) {
    for (int columns = -1; columns < 100; ++columns) {
        EXPECT_LE(static_cast<int>(progressLine({123, 0, 456}, 7.0, columns).size()),
                  std::max(columns, 0));
    }
}

TEST(ShownText, ControlCharactersCannotBreakALine) {
    EXPECT_EQ(shownText("a\nb\033[31mc\td\x7f"), "a?b?[31mc?d?");
    EXPECT_EQ(shownText("\xc2\x9b"), "?");
    EXPECT_EQ(shownText("gr\xc3\xb6\xc3\x9f"
                        "e"),
              "gr\xc3\xb6\xc3\x9f"
              "e");
    EXPECT_EQ(shownText("f\xfcr\n"), "f\xef\xbf\xbdr?");
}

TEST(ShownText, HasNumbersForCharactersThatOneCannotSee) {
    for (const auto& [bytes, text] : std::vector<std::pair<std::string, std::string>>{
             {"\xE2\x80\xAE", "<U+202E>"}, // what follows runs from right to left
             {"\xE2\x81\xA6", "<U+2066>"},
             {"\xD8\x9C", "<U+061C>"},
             {"\xE2\x80\x8B", "<U+200B>"},
             {"\xC2\xAD", "<U+00AD>"},
             {"\xE2\x80\xA8", "<U+2028>"},
             {"\xF3\xA0\x80\x81", "<U+E0001>"},
             {"\xE2\x80\x90", "\xE2\x80\x90"},
             {"\xF0\x9F\xA7\xAC", "\xF0\x9F\xA7\xAC"}}) {
        EXPECT_EQ(shownText("a" + bytes + "b"), "a" + text + "b");
        EXPECT_EQ(displayedText("a" + bytes + "b"), "a" + text + "b");
        EXPECT_EQ(shownText(displayedText(bytes)), text);
    }
}

TEST(ShownText, OfALogHasNoLineEnds) {
    EXPECT_EQ(displayedText("a\nb\rc\td\xC2\x85"
                            "e"),
              "a?b?c\td?e");
}

TEST(ShownText, InOneLineIsWhatItWasButForLineEnds) {
    EXPECT_EQ(inOneLine("a\nb\rc\xFF\xE2\x80\xAE"), "a?b\rc\xFF\xE2\x80\xAE");
    EXPECT_EQ(inOneLine("a\nb\rc\td", "\n\r"), "a?b?c\td");
}

TEST(InputPaths, ArePackedAndComeBackAsTheyWere) {
    const cInputPaths paths{"a/x.pdb", "", "f\xfcr \n.pdb", "y"};
    ASSERT_EQ(paths.size(), 4U);
    EXPECT_EQ(paths[0], "a/x.pdb");
    EXPECT_EQ(paths[1], "");
    EXPECT_EQ(paths[2], "f\xfcr \n.pdb");
    EXPECT_EQ(paths[3], "y");
    EXPECT_TRUE(cInputPaths().empty());
}

TEST(SameBaseName, BothFilesAreNamed) {
    const std::vector<std::string> warnings =
        warningsFor({"a/x.pdb", "y.pdb", "b/x.model1.ent", "z.pdb", "y", "c/x"});
    ASSERT_EQ(warnings.size(), 3U);
    EXPECT_TRUE(warnings[0].starts_with("a/x.pdb and b/x.model1.ent have the same base name"));
    EXPECT_TRUE(warnings[1].starts_with("y.pdb and y have the same base name"));
    EXPECT_TRUE(warnings[2].starts_with("a/x.pdb and c/x have the same base name"));
}

TEST(SameBaseName, CaseMakesADifference) {
    EXPECT_TRUE(warningsFor({"x.pdb", "X.pdb", "xx.pdb"}).empty());
}

TEST(SameBaseName, GroupsHoldTheirFilesInOrder) {
    const cInputPaths paths{"b.pdb", "a.pdb", "x/b.ent", "c.pdb", "b"};
    const cSameBaseNames sameNames(paths);
    const std::vector<std::size_t> expected{0, 2, 4};
    for (const std::size_t file : expected) {
        ASSERT_NE(sameNames.groupOf(file), nullptr);
        EXPECT_EQ(*sameNames.groupOf(file), expected);
    }
    EXPECT_EQ(sameNames.groupOf(1), nullptr);
    EXPECT_EQ(sameNames.groupOf(3), nullptr);
}

TEST(SameBaseName, OrderOfManyIsThatOfTheFiles) {
    cInputPaths paths;
    std::vector<std::size_t> expected;
    for (std::size_t file = 0; file < 400; ++file) {
        paths.append(std::to_string(file) + (file % 3 == 0 ? "/y.pdb" : "/x.pdb"));
        if (file % 3 != 0) {
            expected.push_back(file);
        }
    }
    EXPECT_EQ(*cSameBaseNames(paths).groupOf(1), expected);
}

TEST(SameBaseName, IsTheNameThatTheReportsGet) {
    for (const std::string_view path :
         {"1abc.pdb", "a/1abc.model1.pdb", "/a.b/c", "a/", "..", "a/..", ".hidden", "a/.hidden.pdb",
          "", "/", ".", "a//b.pdb", "back\\slash.pdb", ":/colon.pdb", "f\xfcr.pdb",
          "\xef\xbb\xbf.x", "gr\xc3\xbc\xc3\x9f.pdb"}) {
        const std::string twin = pathToBytes(baseNameOf(pathFromBytes(path)));
        const cInputPaths paths{path, "other/" + twin + ".ent", twin + "x"};
        const cSameBaseNames sameNames(paths);
        EXPECT_NE(sameNames.groupOf(0), nullptr) << path;
        EXPECT_EQ(sameNames.groupOf(2), nullptr) << path;
    }
}

TEST(Summary, CountsAndNamesInTheOrderOfTheFiles) {
    const cInputPaths paths{"a", "b", "c\nd"};
    const sBatchResult result{3, 2, 0, 1, {{1, false, {"b.xml", "b.tbl"}}, {2, true, {}}}};
    const auto messages = summaryMessages(paths, result, false);
    ASSERT_EQ(messages.size(), 4U);
    EXPECT_EQ(messages[0].text, "Report missing: b.xml");
    EXPECT_EQ(messages[1].text, "Report missing: b.tbl");
    EXPECT_EQ(messages[2].text, "Failed: c?d");
    EXPECT_EQ(messages[3].text, "2 of 3 files analysed, 1 failed, 2 reports missing");
    EXPECT_EQ(messages[3].severity, eSeverity::error);
    EXPECT_EQ(static_cast<int>(exitStatus(result)), 1);
}

TEST(Summary, OfARunWithoutFaultIsProgress) {
    const sBatchResult result{1, 1, 0, 0, {}};
    const auto messages = summaryMessages({"a"}, result, false);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, "1 of 1 file analysed, 0 failed, 0 reports missing");
    EXPECT_EQ(messages[0].severity, eSeverity::progress);
    EXPECT_EQ(static_cast<int>(exitStatus(result)), 0);
}

TEST(Summary, OfAResumedRunCountsTheFilesTakenOver) {
    const sBatchResult result{5, 2, 3, 0, {}};
    EXPECT_EQ(summaryMessages({"a", "b", "c", "d", "e"}, result, true).back().text,
              "2 of 5 files analysed, 3 taken over, 0 failed, 0 reports missing");
    EXPECT_EQ(static_cast<int>(exitStatus(result)), 0);
    EXPECT_EQ(summaryMessages({"a"}, {1, 1, 0, 0, {}}, true).back().text,
              "1 of 1 file analysed, 0 taken over, 0 failed, 0 reports missing");
}

TEST(Summary, MissingReportAloneIsAFailure) {
    EXPECT_EQ(static_cast<int>(exitStatus({1, 1, 0, 0, {{0, false, {"a.xml"}}}})), 1);
}

TEST(Summary, FilesMayFailWhereThatIsAllowed) {
    const sBatchResult failed{2, 1, 0, 1, {{1, true, {}}}};
    EXPECT_EQ(exitStatus(failed), eExitStatus::someMissing);
    EXPECT_EQ(exitStatus(failed, true), eExitStatus::allDone);
    EXPECT_EQ(exitStatus({2, 2, 0, 0, {{1, false, {"a.xml"}}}}, true), eExitStatus::someMissing);
    EXPECT_EQ(exitStatus({3, 1, 0, 1, {{1, true, {}}}}, true), eExitStatus::stoppedBySignal);
    sBatchResult lost = failed;
    lost.lostResults = "results file x: full";
    EXPECT_EQ(exitStatus(lost, true), eExitStatus::someMissing);
}

TEST(Summary, OfAStoppedRunSaysSo) {
    const sBatchResult result{3, 1, 0, 1, {{2, true, {}}}};
    EXPECT_EQ(summaryMessages({"a", "b", "c"}, result, false).back().text,
              "Stopped: 1 of 3 files analysed, 1 failed, 0 reports missing");
    EXPECT_EQ(static_cast<int>(exitStatus(result)), 130);
}

TEST(OpenFiles, StructureAtOnceMayHaveEightHandles) {
    // Its file, the directory of its reports, a document, which is open twice for a moment, and
    // three tables that wait for it.
    for (const rlim_t structures : {1U, 5U, 40U}) {
        const pid_t process = ::fork();
        if (process == 0) {
            const rlimit limit{24 + 8 * structures + 7, 24 + 8 * structures + 7};
            ::setrlimit(RLIMIT_NOFILE, &limit);
            ::_exit(structuresAtOnce() == structures ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_EQ(status, 0) << structures;
    }
}

TEST(StopSignal, FirstSignalRaisesTheFlagAndTheHandlerGoesWithTheObject) {
    const auto handlerOf = [](int signalNumber) {
        struct sigaction action {};
        sigaction(signalNumber, nullptr, &action);
        return action.sa_handler;
    };
    const auto before = std::signal(SIGINT, SIG_DFL);
    {
        const cStopSignal stop;
        EXPECT_FALSE(stop.flag());
        std::raise(SIGINT);
        EXPECT_TRUE(stop.flag());
        EXPECT_EQ(handlerOf(SIGINT), SIG_DFL) << "a second one kills";
    }
    {
        const cStopSignal stop;
        EXPECT_FALSE(stop.flag());
        std::raise(SIGTERM);
        EXPECT_TRUE(stop.flag());
    }
    EXPECT_EQ(handlerOf(SIGINT), SIG_DFL);
    std::signal(SIGINT, before);
}

TEST(StopSignal, IgnoredSignalStaysIgnored) {
    const auto before = std::signal(SIGINT, SIG_IGN);
    {
        const cStopSignal stop;
        std::raise(SIGINT);
        EXPECT_FALSE(stop.flag());
    }
    std::signal(SIGINT, before);
}

TEST(ShippedData, TestsRunInTheBuildTreeAndUseItsSources) {
    EXPECT_TRUE(std::filesystem::equivalent(shippedDataDirectories().front(), sourcePath("data")));
    EXPECT_EQ(shippedDataDirectories().size(), 3U);
    EXPECT_TRUE(shippedTable("protor.radii").native().ends_with("/data/protor.radii"));
}

} // namespace kelmo
