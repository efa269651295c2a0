// Small parts of the runner by themselves.
#include "batch/help_text.h"
#include "batch/input_paths.h"
#include "batch/progress_line.h"
#include "batch/shipped_data.h"
#include "batch/shown_text.h"
#include "batch/stop_signal.h"
#include "batch/summary.h"

#include <gtest/gtest.h>

#include <csignal>

TEST(ProgressLine, ShowsFilesRateAndTimeLeft) {
    EXPECT_EQ(progressLine(10, 40, 20.0, 79),
              "[#######.......................] 10/40 files, 0.5 files/s, 1:00 left");
}

TEST(ProgressLine, HasNoRateBeforeTheFirstFile) {
    EXPECT_EQ(progressLine(0, 3, 5.0, 79), "[..............................] 0/3 files");
}

TEST(ProgressLine, EndsFull) {
    EXPECT_EQ(progressLine(3, 3, 2.0, 79),
              "[##############################] 3/3 files, 1.5 files/s, 0:00 left");
}

TEST(ProgressLine, ShowsHoursWhenThereAreAny) {
    EXPECT_EQ(progressLine(1, 2, 3723.0, 30), "1/2 files, 0.000269 files/s, 1");
    EXPECT_NE(progressLine(1, 2, 3723.0, 79).find(" 1:02:03 left"), std::string::npos);
    EXPECT_NE(progressLine(1, 2, 1e12, 79).find(" 99:59:59 left"), std::string::npos);
}

TEST(ProgressLine, NeverExceedsTheColumns) {
    for (int columns = -1; columns < 100; ++columns) {
        EXPECT_LE(static_cast<int>(progressLine(123, 456, 7.0, columns).size()),
                  std::max(columns, 0));
    }
}

TEST(ShownText, ControlCharactersCannotBreakALine) {
    EXPECT_EQ(onOneLine("a\nb\033[31mc\td\x7f"), QString("a?b?[31mc?d?"));
    EXPECT_EQ(onOneLine(QString(QChar(0x9B))), QString("?"));
    EXPECT_EQ(onOneLine(QStringLiteral("größe")), QStringLiteral("größe"));
    EXPECT_EQ(shownPath(std::string_view("f\xfcr\n")), QStringLiteral("f\uFFFDr?"));
}

TEST(SameBaseName, BothFilesAreNamed) {
    const QStringList warnings =
        sameBaseNameWarnings({"a/x.pdb", "y.pdb", "b/x.model1.ent", "z.pdb", "c/x"});
    ASSERT_EQ(warnings.size(), 2);
    EXPECT_TRUE(warnings[0].startsWith("a/x.pdb and b/x.model1.ent have the same base name"));
    EXPECT_TRUE(warnings[1].startsWith("a/x.pdb and c/x have the same base name"));
}

TEST(SameBaseName, CaseMakesADifference) {
    EXPECT_TRUE(sameBaseNameWarnings({"x.pdb", "X.pdb", "xx.pdb"}).isEmpty());
}

TEST(Summary, CountsAndNamesInTheOrderOfTheFiles) {
    const QStringList paths{"a", "b", "c\nd"};
    const std::vector<sFileResult> results{{eFileOutcome::analysed, {}},
                                           {eFileOutcome::analysed, {"b.xml", "b.tbl"}},
                                           {eFileOutcome::failed, {}}};
    const auto messages = summaryMessages(paths, results);
    ASSERT_EQ(messages.size(), 4U);
    EXPECT_EQ(messages[0].text, "Report missing: b.xml");
    EXPECT_EQ(messages[1].text, "Report missing: b.tbl");
    EXPECT_EQ(messages[2].text, "Failed: c?d");
    EXPECT_EQ(messages[3].text, "2 of 3 files analysed, 1 failed, 2 reports missing");
    EXPECT_EQ(messages[3].colour, QColor(Qt::red));
    EXPECT_EQ(exitStatus(results), 1);
}

TEST(Summary, OfARunWithoutFaultIsBlack) {
    const std::vector<sFileResult> results{{eFileOutcome::analysed, {}}};
    const auto messages = summaryMessages({"a"}, results);
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, "1 of 1 file analysed, 0 failed, 0 reports missing");
    EXPECT_EQ(messages[0].colour, QColor(Qt::black));
    EXPECT_EQ(exitStatus(results), 0);
}

TEST(Summary, MissingReportAloneIsAFailure) {
    EXPECT_EQ(exitStatus({{eFileOutcome::analysed, {"a.xml"}}}), 1);
}

TEST(Summary, OfAStoppedRunSaysSo) {
    const std::vector<sFileResult> results{
        {eFileOutcome::analysed, {}}, {eFileOutcome::stopped, {}}, {eFileOutcome::failed, {}}};
    EXPECT_EQ(summaryMessages({"a", "b", "c"}, results).back().text,
              "Stopped: 1 of 3 files analysed, 1 failed, 0 reports missing");
    EXPECT_EQ(exitStatus(results), 130);
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
    EXPECT_TRUE(std::filesystem::equivalent(shippedDataDirectories().front(),
                                            std::filesystem::path(KELMO_SOURCE_DIR) / "data"));
    EXPECT_EQ(shippedDataDirectories().size(), 3U);
    EXPECT_TRUE(shippedTable("protor.radii").endsWith("/data/protor.radii"));
}
