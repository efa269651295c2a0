// The command line: what each option does to the options, and what is refused.
#include "base/usage_error.h"
#include "batch/options.h"
#include "tests/batch/batch_process.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

namespace kelmo {

namespace {

sOptions parsed(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "kelmo-batch");
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    return parseOptions(static_cast<int>(arguments.size()), argv.data());
}

/// The first line of the message; empty when the arguments are good.
std::string faultOf(std::vector<std::string> arguments) {
    try {
        parsed(std::move(arguments));
    } catch (const cUsageError& error) {
        const std::string text = error.what();
        return text.substr(0, text.find('\n'));
    }
    return {};
}

std::string described(const std::vector<sInputSource>& inputs) {
    std::string text;
    for (const sInputSource& input : inputs) {
        text += input.kind == sInputSource::eKind::listFile ? "list:" : "file:";
        text += input.path + ' ';
    }
    return text;
}

} // namespace

TEST(BatchOptions, DefaultsOfAModule) {
    const sOptions options = parsed({"kev"});
    EXPECT_EQ(options.request, eRequest::analysis);
    EXPECT_EQ(options.module, eModule::kev);
    EXPECT_FALSE(options.configuration.has_value());
    EXPECT_FALSE(options.outputDirectory.has_value());
    EXPECT_FALSE(options.jobs.has_value());
    EXPECT_FALSE(options.timeStamp.has_value());
    EXPECT_FALSE(options.isResumed);
    EXPECT_FALSE(options.isQuiet);
    EXPECT_TRUE(options.isProgressWanted);
    EXPECT_TRUE(options.inputs.empty());
}

TEST(BatchOptions, EveryOptionIsTaken) {
    const sOptions options = parsed({"vor",          "--config",      "a.cfg",
                                     "--set",        "k=v",           "--set=l=w",
                                     "--output-dir", "out",           "--contact-rules",
                                     "rules.txt",    "--jobs",        "3",
                                     "--stamp",      "200703141530",  "--resume",
                                     "--quiet",      "--no-progress", "--list",
                                     "a.fls",        "x.pdb"});
    EXPECT_EQ(options.module, eModule::vor);
    EXPECT_EQ(options.configuration, "a.cfg");
    EXPECT_EQ(options.overrides, (std::vector<std::string>{"k=v", "l=w"}));
    EXPECT_EQ(options.outputDirectory, "out");
    EXPECT_EQ(options.contactRules, "rules.txt");
    EXPECT_EQ(options.jobs, 3);
    EXPECT_EQ(options.timeStamp, "200703141530");
    EXPECT_TRUE(options.isResumed);
    EXPECT_TRUE(options.isQuiet);
    EXPECT_FALSE(options.isProgressWanted);
    EXPECT_EQ(described(options.inputs), "list:a.fls file:x.pdb ");
}

TEST(BatchOptions, ListsAndFilesKeepTheirOrder) {
    EXPECT_EQ(described(parsed({"kev", "a.pdb", "--list", "b.fls", "--quiet", "c.pdb",
                                "--list=d.fls", "e.pdb", "--", "--list", "-f.pdb"})
                            .inputs),
              "file:a.pdb list:b.fls file:c.pdb list:d.fls file:e.pdb file:--list file:-f.pdb ");
}

TEST(BatchOptions, NamesAreBytes) {
    EXPECT_EQ(described(parsed({"kev", "a b\n\xff.pdb", "[x,y]", "-", "./-"}).inputs),
              "file:a b\n\xff.pdb file:[x,y] file:/dev/stdin file:./- ");
}

TEST(BatchOptions, OrderDoesNotDependOnTheEnvironment) {
    ::setenv("POSIXLY_CORRECT", "1", 1);
    const sOptions options = parsed({"kev", "a.pdb", "--quiet", "b.pdb"});
    ::unsetenv("POSIXLY_CORRECT");
    EXPECT_TRUE(options.isQuiet);
    EXPECT_EQ(described(options.inputs), "file:a.pdb file:b.pdb ");
}

TEST(BatchOptions, ValueMayBeginWithADash) {
    EXPECT_EQ(parsed({"kev", "--output-dir", "-out"}).outputDirectory, "-out");
    EXPECT_EQ(parsed({"kev", "--output-dir="}).outputDirectory, "");
}

TEST(BatchOptions, FirstArgumentMustBeAModule) {
    EXPECT_EQ(faultOf({}), "Say what to do: kelmo-batch kev or kelmo-batch vor");
    EXPECT_EQ(faultOf({"KEV"}),
              "The first argument must be kev, vor, merge or export, not \"KEV\"");
    EXPECT_EQ(faultOf({"--quiet", "kev"}),
              "The first argument must be kev, vor, merge or export, not \"--quiet\"");
}

TEST(BatchOptions, UnknownOptionsAreRefused) {
    EXPECT_EQ(faultOf({"kev", "--colour"}), "Unknown option --colour");
    EXPECT_EQ(faultOf({"kev", "--colour=1"}), "Unknown option --colour=1");
    EXPECT_EQ(faultOf({"kev", "-q"}), "Unknown option -q");
    EXPECT_EQ(faultOf({"kev", "-quiet"}), "Unknown option -quiet");
}

TEST(BatchOptions, AbbreviationsAreRefused) {
    EXPECT_EQ(faultOf({"kev", "--qui"}), "Unknown option --qui");
    EXPECT_EQ(faultOf({"kev", "a.pdb", "--out=x"}), "Unknown option --out=x");
    EXPECT_EQ(faultOf({"kev", "--output", "x"}), "Unknown option --output");
    EXPECT_EQ(faultOf({"kev", "--s", "x=1"}), "Unknown option --s");
}

TEST(BatchOptions, MissingAndSuperfluousValuesAreRefused) {
    for (const char* name : {"--config", "--set", "--output-dir", "--list", "--jobs", "--stamp"}) {
        EXPECT_EQ(faultOf({"kev", name}), std::string("Option ") + name + " needs a value");
    }
    EXPECT_EQ(faultOf({"vor", "--contact-rules"}), "Option --contact-rules needs a value");
    EXPECT_EQ(faultOf({"kev", "--quiet=1"}), "Option --quiet=1 takes no value");
}

TEST(BatchOptions, RepeatedSingleOptionsAreRefused) {
    EXPECT_EQ(faultOf({"kev", "--config", "a", "--config", "b"}), "Option --config is given twice");
    EXPECT_EQ(faultOf({"kev", "--output-dir=a", "--output-dir=a"}),
              "Option --output-dir is given twice");
    EXPECT_EQ(faultOf({"kev", "--jobs", "1", "--jobs", "1"}), "Option --jobs is given twice");
    EXPECT_EQ(faultOf({"kev", "--stamp=200703141530", "--stamp=200703141530"}),
              "Option --stamp is given twice");
    EXPECT_EQ(faultOf({"vor", "--contact-rules=a", "--contact-rules=a"}),
              "Option --contact-rules is given twice");
}

TEST(BatchOptions, ContactRulesBelongToVor) {
    EXPECT_EQ(faultOf({"kev", "--contact-rules", "x"}), "Option --contact-rules belongs to vor");
}

TEST(BatchOptions, JobsAreWholeNumbersFromOne) {
    EXPECT_EQ(parsed({"kev", "--jobs", "1024"}).jobs, 1024);
    for (const char* value : {"0", "-1", "1025", "", "two", "1.5", "1 ", "99999999999999999999"}) {
        EXPECT_EQ(faultOf({"kev", "--jobs", value}),
                  std::string("Option --jobs needs a whole number from 1 to 1024, not \"") + value +
                      '"');
    }
}

TEST(BatchOptions, StampIsTwelveDigits) {
    EXPECT_EQ(parsed({"kev", "--stamp", "000000000000"}).timeStamp, "000000000000");
    for (const char* value : {"", "20070314153", "2007031415300", "20070314153x", " 20070314153"}) {
        EXPECT_EQ(faultOf({"kev", "--stamp", value}),
                  std::string("Option --stamp needs 12 digits, YYYYMMDDHHMM, not \"") + value +
                      '"');
    }
}

TEST(BatchOptions, ResumeNeedsAStamp) {
    EXPECT_EQ(faultOf({"kev", "--resume", "a.pdb"}),
              "Option --resume needs --stamp with the time stamp of the interrupted run");
    EXPECT_EQ(faultOf({"kev", "--resume", "--stamp=200703141530"}), "");
    EXPECT_EQ(faultOf({"kev", "--resume=1", "--stamp=200703141530"}),
              "Option --resume=1 takes no value");
    EXPECT_EQ(parsed({"kev", "--resume", "--help"}).request, eRequest::help);
}

TEST(BatchOptions, HelpAndVersionEndTheReading) {
    EXPECT_EQ(parsed({"--help"}).request, eRequest::help);
    EXPECT_EQ(parsed({"--version"}).request, eRequest::version);
    EXPECT_EQ(parsed({"kev", "--help", "--unknown"}).request, eRequest::help);
    EXPECT_EQ(parsed({"vor", "a.pdb", "--version"}).request, eRequest::version);
}

TEST(BatchProgram, HelpGoesToStandardOutputIn80Columns) {
    for (const auto& arguments :
         {std::vector<std::string>{"--help"}, {"kev", "--help"}, {"vor", "--help"}}) {
        const sProcessOutcome outcome = runBatch(arguments);
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_TRUE(outcome.out.starts_with("Usage: kelmo-batch kev ")) << outcome.out;
        std::size_t column = 0;
        for (const char character : outcome.out) {
            column = character == '\n' ? 0 : column + 1;
            EXPECT_LE(column, 80U);
        }
    }
}

TEST(BatchProgram, VersionGoesToStandardOutput) {
    const sProcessOutcome outcome = runBatch({"--version"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(outcome.out.starts_with("kelmo-batch 1.")) << outcome.out;
    EXPECT_EQ(outcome.out.find('\n'), outcome.out.size() - 1);
}

TEST(BatchProgram, UsageErrorsExitWithTwoAndSayWhereToLook) {
    const sProcessOutcome outcome = runBatch({"kev", "--colour"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "Unknown option --colour\nkelmo-batch --help lists the options.\n");
}

} // namespace kelmo
