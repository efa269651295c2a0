// kelmo-batch with odd parameter tables, input lists and configurations.
#include "tests/batch/batch_fixture.h"
#include "tests/catalogue/odd_inputs.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <tuple>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

using namespace std::string_literals;

namespace {

const std::string megabyte(1U << 20U, 'x');
const std::string byteOrderMark = "\xEF\xBB\xBF";
const std::string replacement = "\xEF\xBF\xBD"; // as which it is shown

std::string shipped(const char* name) {
    return sourceText(std::string("data/") + name);
}

/// How a run with an odd text ends: the exit status and what stands in its messages.
struct sOddText {
    const char* name; ///< what is odd
    std::string bytes;
    int exitStatus;
    std::string message = {}; ///< empty: the run goes well
};

class BatchOddTexts : public cBatchFixture {
  protected:
    BatchOddTexts() {
        // A structure of few atoms: the runs that go well are to be short.
        const std::string sample = sampleText("1ubq");
        directory.write("a.pdb", sample.substr(0, sample.find("ATOM     30")));
    }

    void expectOutcomes(const std::string& module, const std::vector<std::string>& arguments,
                        const std::vector<sOddText>& cases) const {
        for (const sOddText& oddText : cases) {
            SCOPED_TRACE(oddText.name);
            directory.write("odd", oddText.bytes);
            const sProcessOutcome outcome = run(module, arguments);
            EXPECT_EQ(outcome.exitStatus, oddText.exitStatus);
            EXPECT_TRUE(contains(outcome.err, oddText.message)) << outcome.err.substr(0, 1000);
        }
    }
};

std::string badLine(const std::string& table, int line) {
    return "odd: " + table +
           " file not properly formatted!\nError in line: " + std::to_string(line) + '\n';
}

/// Cases of a table with one entry a line. `good` is whole; `entry` is one of its lines without the
/// line feed.
std::vector<sOddText> casesOfTable(const std::string& table, const std::string& good,
                                   const std::string& entry) {
    const auto last = static_cast<int>(std::count(good.begin(), good.end(), '\n')) + 1;
    const auto withLine = [&](const char* name, const std::string& line) {
        return sOddText{name, good + line + '\n', 2, badLine(table, last)};
    };
    return {
        {"last line without line feed", good.substr(0, good.size() - 1), 0},
        {"empty lines and comments at the end", good + "\n\n#\n# " + entry + "\n\n", 0},
        {"entry that comes twice", good + entry + '\n', 0},
        {"comment of a megabyte", '#' + megabyte + '\n' + good, 0},
        {"byte order mark", byteOrderMark + good, 2, badLine(table, 1)},
        {"UTF-16", utf16(good), 2, badLine(table, 1)},
        {"gzip", "\x1F\x8B\x08\0\0"s, 2, badLine(table, 1)},
        {"NUL bytes and nothing else", std::string(1000, '\0'), 2, badLine(table, 1)},
        {"line of a megabyte", megabyte, 2, badLine(table, 1)},
        withLine("line that ends in CR LF", entry + '\r'),
        withLine("NUL byte behind a number", entry + '\0'),
        withLine("blank behind a number", entry + ' '),
        withLine("blanks and nothing else", "   "),
        withLine("name in lower case", 'a' + entry.substr(1)),
        withLine("trailing point", entry + "5."),
        withLine("exponent", entry + "e5"),
        withLine("decimal comma", entry + ",5"),
        withLine("name without a number", entry.substr(0, 3)),
    };
}

} // namespace

TEST_F(BatchOddTexts, RadiiTables) {
    const std::string good = shipped("protor.radii");
    const std::vector<std::string> arguments{"--set=radii_filename=odd", "a.pdb"};
    expectOutcomes("kev", arguments, casesOfTable("Radii", good, "ALA_CA  1.88"));
    const std::string unknown = "The following radii were not found in radii file: ";
    const std::string tooLarge = "The radius of ALA_CA in radii file is larger than 100 ";
    expectOutcomes(
        "kev", arguments,
        {{"empty file", "", 0, unknown},
         {"comments and nothing else", "#\n#", 0, unknown},
         {"key that runs into the number", "ALANIN123 1.88\n", 2, badLine("Radii", 1)},
         {"radii of no known atom", "ZZZ_ZZ  1.88\n", 0, unknown},
         {"no number", "ALA_CA  nan\n", 2, badLine("Radii", 1)},
         {"infinite number", "ALA_CA  inf\n", 2, badLine("Radii", 1)},
         {"largest radius", "ALA_CA  100\n", 0},
         {"radius beyond the largest", "ALA_CA  100.1\n", 2, tooLarge},
         {"radius of many digits", "ALA_CA  " + std::string(400, '9') + '\n', 2, tooLarge},
         {"negative radius of many digits", "ALA_CA  -" + std::string(400, '9') + '\n', 0},
         {"radius of a megabyte of zeros", "ALA_CA  " + std::string(1U << 20U, '0') + '\n', 0}});
}

TEST_F(BatchOddTexts, StandardAreas) {
    const std::string good = shipped("ala-x-ala.asa");
    const std::vector<std::string> arguments{"--set=standard_asa=odd", "a.pdb"};
    expectOutcomes("kev", arguments, casesOfTable("Standard ASA", good, "ALA 1 2 3 4 5"));
    const std::string incomplete = "Did not find entries for all 20 standard amino acids in "
                                   "standard asa file! Missing: ALA ARG ";
    const std::string zeros = "MET 0 0 0 0 0\n";
    const std::string many(400, '9');
    expectOutcomes(
        "kev", arguments,
        {{"empty file", "", 2, incomplete},
         {"areas of zero", zeros + good, 0},
         {"negative areas", "MET -1 -1 -1 -1 -1\n" + good, 0},
         {"areas of many digits", "MET " + many + " -" + many + " 1 1 " + many + '\n' + good, 0},
         {"areas between tabs", "MET\t1\t2\t3\t4\t5\n" + good, 0},
         {"six areas", "MET 1 2 3 4 5 6\n" + good, 2, badLine("Standard ASA", 1)},
         {"four areas", "MET 1 2 3 4\n" + good, 2, badLine("Standard ASA", 1)}});
}

TEST_F(BatchOddTexts, Hydrophobicities) {
    const std::string good = shipped("kyte-doolittle.hpb");
    const std::vector<std::string> arguments{"--set=hydro_file=odd", "a.pdb"};
    expectOutcomes("kev", arguments, casesOfTable("Hydrophobicity", good, "ALA 1.8"));
    expectOutcomes("kev", arguments,
                   {{"empty file", "", 2,
                     "Did not find entries for all 20 standard amino acids in hydrophobicity file "
                     "file! Missing: ALA ARG "},
                    {"number of many digits", "MET " + std::string(400, '9') + '\n' + good, 0},
                    {"number behind a tab", "MET\t-1\n" + good, 0}});
}

TEST_F(BatchOddTexts, ContactRules) {
    const std::string rule = "ASP   6  OD1  ARG   9  NH1   4.00     3";
    const std::vector<std::string> arguments{"--set=contact_criterion=4", "--contact-rules=odd",
                                             haemoglobin};
    expectOutcomes(
        "vor", arguments,
        {{"empty file", "", 0},
         {"header and nothing else", "header", 0},
         {"header of a megabyte", megabyte + '\n' + rule, 0},
         {"line of a megabyte", "header\n" + rule + megabyte, 0},
         {"lines that end in CR LF", "header\r\n" + rule + "\r\n", 0},
         {"lines that end in CR are one line, the header", "header\r" + rule + '\r', 0},
         {"empty line at the end", "header\n" + rule + "\n\n", 2, badLine("Contact rules", 3)},
         {"line of 34 columns", "header\n" + rule.substr(0, 34), 2, badLine("Contact rules", 2)},
         {"line of 35 columns", "header\n" + rule.substr(0, 35), 0},
         {"UTF-16", utf16("header\n" + rule), 0},
         {"NUL bytes and nothing else", std::string(1000, '\0'), 0},
         {"line of NUL bytes", "header\n" + std::string(1000, '\0') + '\n', 0},
         {"bytes of every value in a rule",
          "header\n" + std::string("\xFF\x01\x80  \xE4  \x7F\t", 10) + rule, 0},
         {"negative positions",
          "header\n"
          "ASP  -1  ALL  ARG  -9  ALL   4.00     3",
          0},
         {"positions that are no numbers",
          "header\n"
          "ASP   x  ALL  ARG  **  ALL   4.00     3",
          0},
         {"distance that is no number",
          "header\n"
          "ASP   0  ALL  ARG   0  ALL    nan     3",
          0},
         {"distance without end",
          "header\n"
          "ASP   0  ALL  ARG   0  ALL    inf     3",
          0},
         {"negative distance",
          "header\n"
          "ASP   0  ALL  ARG   0  ALL  -9999     3",
          0},
         {"type beyond all types",
          "header\n"
          "ASP   0  ALL  ARG   0  ALL   9.00  9999",
          0}});
}

TEST_F(BatchOddTexts, InputLists) {
    const std::string cannotOpen = "Could not open file ";
    expectOutcomes(
        "kev", {"--list=odd"},
        {{"last line without line feed", "a.pdb", 0},
         {"line feeds and nothing else", std::string(20'000, '\n'), 2,
          "No files loaded for analysis\n"},
         {"byte order mark, part of the first name", byteOrderMark + "a.pdb\n", 1,
          cannotOpen + replacement + "a.pdb\n"},
         {"UTF-16", utf16("a.pdb\n"), 1, "0 of 2 files analysed, 2 failed"},
         {"NUL byte in a name", "a.pdb\0b\n"s, 1, cannotOpen + "a.pdb?b\n"},
         {"lines that end in CR are one name", "a.pdb\ra.pdb\r", 1, cannotOpen + "a.pdb?a.pdb\n"},
         {"name of a megabyte", megabyte + "\na.pdb\n", 1, "1 of 2 files analysed, 1 failed"},
         {"name of more than a megabyte", "a.pdb\n" + megabyte + megabyte, 2,
          "--list: odd:2: this line is too long for text\n"},
         {"list that names itself", "odd\n", 1, "No atoms found in PDB file odd\n"},
         {"list of directories", "out\n.\n/\n", 1, "0 of 3 files analysed, 3 failed"},
         {"escape sequences in a name", "\x1B[2J\x1B]0;x\x07\n", 1, cannotOpen + "?[2J?]0;x?\n"},
         {"bytes of every value",
          [] {
              std::string bytes;
              for (int i = 0; i < 256; ++i) {
                  bytes += static_cast<char>(i);
              }
              return bytes;
          }(),
          1, "0 of 2 files analysed, 2 failed"}});
}

TEST_F(BatchOddTexts, Configurations) {
    const auto range = [](const std::string& key, const std::string& ends,
                          const std::string& value) {
        return "odd:1: " + key + " must be a number from " + ends + ", not \"" + value + '"';
    };
    std::vector<sOddText> cases = {
        {"empty file", "", 0},
        {"last line without line feed", "calc_cx:\t0", 0},
        {"byte order mark", byteOrderMark + "calc_cx:\t0\n", 2,
         "odd:1: \"" + replacement + "calc_cx\" is no key of a kev configuration\n"},
        {"UTF-16", utf16("calc_cx:\t0\n"), 2, "odd:1: this is not a line of text\n"},
        {"lines that end in CR are one line", "calc_cx:\t0\rcalc_dpx:\t0\r", 2,
         "odd:1: calc_cx must be 1 or 0, not "},
        {"comment of a megabyte", '#' + megabyte.substr(1) + "\n", 0},
        {"line of more than a megabyte", "calc_cx:\t0\n" + megabyte + megabyte, 2,
         "--config: odd:2: this line is too long for text\n"},
        {"path of nearly a megabyte", "radii_filename:\t" + megabyte.substr(100) + '\n', 2,
         "Not a valid radii file path!\n"},
        {"gzip", "\x1F\x8B\x08\0\0"s, 2, "odd:1: this is not a line of text\n"},
    };
    for (const char* value :
         {"0", "-0.25", "nan", "-nan", "inf", "1e-9", "1e999", "0.0099", "1.01", "0,25", ""}) {
        cases.push_back({value, "z_slice:\t"s + value, 2, range("z_slice", "0.01 to 1", value)});
    }
    for (const char* value : {"-1", "2.1", "nan", "inf"}) {
        cases.push_back({value, "r_solvent:\t"s + value, 2, range("r_solvent", "0 to 2", value)});
    }
    expectOutcomes("kev", {"--config=odd", "a.pdb"}, cases);
}

TEST_F(BatchOddTexts, WhatIsNoFileOfTextStartsNothing) {
    ASSERT_EQ(::mkfifo((directory.path() / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("loop", directory.path() / "loop");
    std::filesystem::create_symlink("nothing", directory.path() / "dangling");
    for (const auto& [module, option] : {std::tuple{"kev", "--list="},
                                         {"kev", "--config="},
                                         {"kev", "--set=radii_filename="},
                                         {"kev", "--set=standard_asa="},
                                         {"kev", "--set=hydro_file="},
                                         {"vor", "--contact-rules="}}) {
        for (const char* name : {"pipe", "/dev/zero", "/dev/full", "out", "loop", "dangling"}) {
            std::vector<std::string> arguments{option + std::string(name), "a.pdb"};
            if (module == "vor"s) {
                arguments.insert(arguments.begin(), "--set=contact_criterion=4");
            }
            const sProcessOutcome outcome = run(module, arguments);
            EXPECT_EQ(outcome.exitStatus, 2) << option << name;
            EXPECT_TRUE(contains(outcome.err, ": Could not open file "s + name + '\n'))
                << outcome.err;
        }
    }
    EXPECT_TRUE(reports().empty());
}

TEST_F(BatchOddTexts, ListThroughANamedPipeIsReadWhileSomebodyWrites) {
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int writer = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::write(writer, "a.pdb\na.p", 9), 9);
    sProcessManner manner;
    manner.directory = directory.path();
    cBatchProcess process({"kev", "--output-dir=out", "--list=pipe"}, manner);
    for (int unread = 9; unread > 0 && !process.hasEnded();) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ::ioctl(writer, FIONREAD, &unread);
    }
    EXPECT_EQ(::write(writer, "db\n", 3), 3);
    for (int unread = 3; unread > 0 && !process.hasEnded();) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ::ioctl(writer, FIONREAD, &unread);
    }
    ::close(writer);
    const sProcessOutcome outcome = process.finish();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(contains(outcome.err, "2 of 2 files analysed")) << outcome.err;
}

} // namespace kelmo
