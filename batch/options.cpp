#include "batch/options.h"

#include "base/shown_text.h"
#include "base/standard_input.h"
#include "base/usage_error.h"
#include "batch/export_command.h"
#include "batch/report_choice.h"
#include "results/result_formats.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include <getopt.h>

namespace kelmo {

// The arguments are taken apart by getopt_long() of the C library. It is the one parser at hand
// that keeps options and paths in the order in which they stand and leaves their bytes alone: the
// toolkit's parser collects the paths apart from the options, and CLI11 would split a file named
// "[a,b]" in two.

namespace {

enum eOptionCode : int {
    pathCode = 1, // given by getopt_long() itself
    configCode = 256,
    setCode,
    prepareCode,
    outputDirCode,
    listCode,
    contactRulesCode,
    jobsCode,
    stampCode,
    resumeCode,
    shardCode,
    allowFailedCode,
    quietCode,
    noProgressCode,
    resultsCode,
    reportsCode,
    helpCode,
    versionCode
};

constexpr std::array<option, 18> longOptions{{
    {"config", required_argument, nullptr, configCode},
    {"set", required_argument, nullptr, setCode},
    {"prepare", required_argument, nullptr, prepareCode},
    {"output-dir", required_argument, nullptr, outputDirCode},
    {"list", required_argument, nullptr, listCode},
    {"contact-rules", required_argument, nullptr, contactRulesCode},
    {"jobs", required_argument, nullptr, jobsCode},
    {"stamp", required_argument, nullptr, stampCode},
    {"resume", no_argument, nullptr, resumeCode},
    {"results", required_argument, nullptr, resultsCode},
    {"reports", required_argument, nullptr, reportsCode},
    {"shard", required_argument, nullptr, shardCode},
    {"allow-failed", no_argument, nullptr, allowFailedCode},
    {"quiet", no_argument, nullptr, quietCode},
    {"no-progress", no_argument, nullptr, noProgressCode},
    {"help", no_argument, nullptr, helpCode},
    {"version", no_argument, nullptr, versionCode},
    {nullptr, 0, nullptr, 0},
}};

[[noreturn]] void refuse(const std::string& text) {
    throw cUsageError(text + "\nkelmo-batch --help lists the options.");
}

void setOnce(std::optional<std::string>& place, const char* name) {
    if (place.has_value()) {
        refuse("Option --" + std::string(name) + " is given twice");
    }
    place = optarg;
}

int jobsFrom(std::string_view text) {
    int jobs = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
    if (error != std::errc() || end != text.data() + text.size() || jobs < 1 ||
        jobs > maximumJobs) {
        refuse("Option --jobs needs a whole number from 1 to " + std::to_string(maximumJobs) +
               ", not \"" + shownText(text) + '"');
    }
    return jobs;
}

void checkTimeStamp(std::string_view text) {
    constexpr std::size_t stampLength = 12;
    const bool isDigits =
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isDigits || text.size() != stampLength) {
        refuse("Option --stamp needs 12 digits, YYYYMMDDHHMM, not \"" + shownText(text) + '"');
    }
}

void takeJobs(sOptions& options) {
    if (options.jobs.has_value()) {
        refuse("Option --jobs is given twice");
    }
    options.jobs = jobsFrom(optarg);
}

/// "K/N".
void takeShard(sOptions& options) {
    if (options.shard.has_value()) {
        refuse("Option --shard is given twice");
    }
    const std::string_view text = optarg;
    const std::size_t slash = std::min(text.find('/'), text.size());
    sShard shard{0, 0};
    const auto isNumber = [](std::string_view digits, std::size_t& number) {
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        return error == std::errc() && end == digits.data() + digits.size();
    };
    if (slash == text.size() || !isNumber(text.substr(0, slash), shard.number) ||
        !isNumber(text.substr(slash + 1), shard.count) || shard.number < 1 ||
        shard.number > shard.count) {
        refuse("Option --shard needs K/N, whole numbers with K from 1 to N, not \"" +
               shownText(text) + '"');
    }
    options.shard = shard;
}

void takeContactRules(sOptions& options) {
    if (options.module != eModule::vor) {
        refuse("Option --contact-rules belongs to vor");
    }
    setOnce(options.contactRules, "contact-rules");
}

void takeResults(sOptions& options) {
    if (findResultFormat(optarg) == nullptr) {
        refuse("Option --results needs a file whose name ends in " + resultSuffixes() + ", not \"" +
               shownText(optarg) + '"');
    }
    options.resultFiles.emplace_back(optarg);
}

/// Names of formats with commas between them, or "none".
void takeReports(sOptions& options) {
    if (options.reports.has_value()) {
        refuse("Option --reports is given twice");
    }
    const std::string_view text = optarg;
    std::vector<std::string>& names = options.reports.emplace();
    for (std::size_t begin = 0; text != "none" && begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        names.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    const std::vector<std::string> known = reportFormatNames();
    for (const std::string& name : names) {
        if (std::ranges::find(known, name) == known.end()) {
            std::string all = "none";
            for (const std::string& one : known) {
                all += ", " + one;
            }
            refuse("Option --reports needs one or more of " + all + ", not \"" + shownText(text) +
                   '"');
        }
    }
}

/// "-" is standard input; a file of that name is "./-".
std::string inputPath(std::string_view argument) {
    return std::string(argument == "-" ? standardInputPath : argument);
}

/// What getopt_long() just returned, its value in `optarg`.
void take(int code, sOptions& options) {
    switch (code) {
    case pathCode:
        options.inputs.push_back({sInputSource::eKind::pdbFile, inputPath(optarg)});
        break;
    case listCode:
        options.inputs.push_back({sInputSource::eKind::listFile, optarg});
        break;
    case configCode:
        setOnce(options.configuration, "config");
        break;
    case setCode:
        options.overrides.emplace_back(optarg);
        break;
    case prepareCode:
        setOnce(options.preparation, "prepare");
        break;
    case outputDirCode:
        setOnce(options.outputDirectory, "output-dir");
        break;
    case contactRulesCode:
        takeContactRules(options);
        break;
    case jobsCode:
        takeJobs(options);
        break;
    case stampCode:
        setOnce(options.timeStamp, "stamp");
        checkTimeStamp(optarg);
        break;
    case resultsCode:
        takeResults(options);
        break;
    case reportsCode:
        takeReports(options);
        break;
    case resumeCode:
        options.isResumed = true;
        break;
    case shardCode:
        takeShard(options);
        break;
    case allowFailedCode:
        options.mayFilesFail = true;
        break;
    case quietCode:
        options.isQuiet = true;
        break;
    case noProgressCode:
        options.isProgressWanted = false;
        break;
    case helpCode:
        options.request = eRequest::help;
        break;
    case versionCode:
        options.request = eRequest::version;
        break;
    default:
        break;
    }
}

/// getopt_long() takes every unambiguous beginning of a name, which would make each new option a
/// risk for old scripts.
void refuseAbbreviation(std::string_view argument, int index) {
    const std::string_view name = longOptions[static_cast<std::size_t>(index)].name;
    if (argument.substr(2, argument.find('=') - 2) != name) {
        refuse("Unknown option " + shownText(argument));
    }
}

void refuseIfFaulty(int code, std::string_view argument) {
    if (code == ':') {
        refuse("Option " + shownText(argument) + " needs a value");
    }
    if (code == '?') {
        // The parser names an option that it knows: then the value was too much.
        refuse(optopt >= configCode ? "Option " + shownText(argument) + " takes no value"
                                    : "Unknown option " + shownText(argument));
    }
}

/// `argv[0]` is passed over, as always.
void readArguments(int argc, char** argv, sOptions& options) {
    optind = 0; // starts the parser anew
    while (options.request == eRequest::analysis) {
        const int position = std::max(optind, 1);
        int index = -1;
        // "-" keeps paths and options in order, ":" leaves the messages to us.
        const int code = ::getopt_long(argc, argv, "-:", longOptions.data(), &index);
        if (code == -1) {
            break;
        }
        refuseIfFaulty(code, argv[position]);
        if (code != pathCode) {
            refuseAbbreviation(argv[position], index);
        }
        take(code, options);
    }
    for (; options.request == eRequest::analysis && optind < argc; ++optind) {
        options.inputs.push_back({sInputSource::eKind::pdbFile, inputPath(argv[optind])});
    }
}

void checkResume(const sOptions& options) {
    if (options.request != eRequest::analysis || !options.isResumed) {
        return;
    }
    for (const std::string& file : options.resultFiles) {
        if (!findResultFormat(file)->isResumable) {
            refuse("Option --resume cannot continue " + shownText(file) +
                   "; kelmo-batch export makes such a file of an .sqlite one");
        }
    }
    const bool isByResults = options.areReportsOff() && !options.resultFiles.empty();
    if (!options.timeStamp && !isByResults) {
        refuse("Option --resume needs --stamp with the time stamp of the interrupted run");
    }
}

} // namespace

sOptions parseOptions(int argc, char** argv) {
    sOptions options;
    if (argc < 2) {
        refuse("Say what to do: kelmo-batch kev or kelmo-batch vor");
    }
    const std::string_view first = argv[1];
    if (first == "--help") {
        options.request = eRequest::help;
    } else if (first == "--version") {
        options.request = eRequest::version;
    } else if (first == "kev" || first == "vor") {
        options.module = first == "kev" ? eModule::kev : eModule::vor;
        readArguments(argc - 1, argv + 1, options);
        checkResume(options);
    } else if (first == "merge") {
        options.request = eRequest::merge;
        for (int i = 2; i < argc; ++i) {
            options.inputs.push_back({sInputSource::eKind::pdbFile, argv[i]});
        }
        if (options.inputs.size() < 2) {
            refuse("kelmo-batch merge needs the file to make and those to make it of");
        }
    } else if (first == "export") {
        options.request = eRequest::exportation;
        options.wantedExport = parseExport({argv + 2, argv + argc});
    } else {
        refuse("The first argument must be kev, vor, merge or export, not \"" + shownText(first) +
               '"');
    }
    return options;
}

} // namespace kelmo
