// Fuzzes what kelmo-batch reads but for tables and structures; the first byte chooses: a
// configuration of kev ("k") or vor ("v"), assignments for kev ("K") or vor ("V") and the arguments
// of the command line ("o"), one a line, an input list ("l"). Any bytes are taken or refused with a
// message that shows no control character.
#include "analysis/configuration.h"
#include "base/usage_error.h"
#include "batch/input_paths.h"
#include "batch/options.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/test_files.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace kelmo {

namespace {

/// The file that every input is written to in turn.
const std::string& inputFile(const std::string& text) {
    static const cScratchDirectory place;
    static const std::string file = place.file("input");
    writeContent(file, text);
    return file;
}

void requireShowable(const cUsageError& error) {
    const std::string text = error.what();
    require(!text.empty(), "a message");
    require(std::all_of(text.begin(), text.end(),
                        [](char c) {
                            const auto byte = static_cast<unsigned char>(c);
                            return byte == '\n' || (byte >= ' ' && byte != 0x7f);
                        }),
            "a message without control characters");
}

void requireNumber(const cSettings& configuration, const char* key, double minimum,
                   double maximum) {
    if (findSetting(configuration.module(), key) == nullptr) {
        return;
    }
    const double number = configuration.number(key);
    require(number >= minimum && number <= maximum, "numbers within their range");
}

void requireValues(const cSettings& configuration) {
    requireNumber(configuration, "z_slice", 0.01, 1.0);
    requireNumber(configuration, "r_solvent", 0.0, 2.0);
    requireNumber(configuration, "cx_threshold", 5.0, 15.0);
    requireNumber(configuration, "cx_volume", 15.0, 25.0);
    requireNumber(configuration, "threshold", 0.0, 10.0);
    requireNumber(configuration, "delta_asa", 0.05, 100.0);
    for (const char* key : {"write_xml", "write_table", "calc_asa", "write_contacts"}) {
        require(findSetting(configuration.module(), key) == nullptr ||
                    configuration.valueText(key) == (configuration.flag(key) ? "1" : "0"),
                "flags of 1 and 0");
    }
    for (const char* key : {"output_dir", "radii_filename"}) {
        require(configuration.text(key) == configuration.valueText(key), "paths byte for byte");
    }
    cSettings again(configuration.module());
    for (const std::string& line : linesOf(configurationText(configuration))) {
        const std::size_t colon = line.find(":\t");
        if (colon != std::string::npos) {
            again.set(line.substr(0, colon), line.substr(colon + 2), "again");
        }
    }
    require(configurationText(again) == configurationText(configuration) ||
                configuration.text("output_dir").find('\n') != std::string::npos,
            "a configuration that reads back");
}

void readConfigurationFile(eModule module, const std::string& text) {
    const std::string& file = inputFile(text);
    cSettings settings(module);
    try {
        readConfiguration(file, "--config", settings);
    } catch (const cUsageError& error) {
        requireShowable(error);
        const std::string message = error.what();
        require(message.starts_with(file + ':'), "a message that names the file");
        const int line = std::atoi(message.substr(file.size() + 1).c_str());
        require(line >= 1 && line <= static_cast<int>(linesOf(text).size()),
                "a message that names the line");
        return;
    }
    requireValues(settings);
}

void readAssignments(eModule module, const std::string& text) {
    cSettings settings(module);
    for (const std::string& line : linesOf(text)) {
        try {
            assign(line, settings);
        } catch (const cUsageError& error) {
            requireShowable(error);
        }
    }
    requireValues(settings);
}

void readOptions(const std::string& text) {
    std::vector<std::string> arguments = linesOf(text);
    arguments.insert(arguments.begin(), "kelmo-batch");
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    try {
        const sOptions options = parseOptions(static_cast<int>(arguments.size()), pointers.data());
        require(!options.jobs || (*options.jobs >= 1 && *options.jobs <= maximumJobs),
                "cores within their range");
        require(!options.timeStamp || options.timeStamp->size() == 12, "stamps of 12 digits");
        require(options.inputs.size() < arguments.size(), "no inputs but those of the arguments");
    } catch (const cUsageError& error) {
        requireShowable(error);
    }
}

void readList(const std::string& text) {
    const cInputPaths paths = inputPaths({{sInputSource::eKind::listFile, inputFile(text)}});
    std::vector<std::string> expected;
    for (std::string& line : linesOf(text)) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (!line.empty()) {
            expected.push_back(line);
        }
    }
    require(paths.size() == expected.size(), "a path for every line");
    for (std::size_t i = 0; i < expected.size(); ++i) {
        require(paths[i] == expected[i], "paths byte for byte");
    }
    for (const std::string& warning : sameBaseNameWarnings(paths, cSameBaseNames(paths))) {
        require(!warning.empty(), "a warning");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const sChoice choice(textOf(bytes, size));
    switch (choice.reader) {
    case 'k':
    case 'v':
        readConfigurationFile(choice.reader == 'k' ? eModule::kev : eModule::vor, choice.text);
        break;
    case 'K':
    case 'V':
        readAssignments(choice.reader == 'K' ? eModule::kev : eModule::vor, choice.text);
        break;
    case 'o':
        readOptions(choice.text);
        break;
    case 'l':
        readList(choice.text);
        break;
    default:
        break;
    }
    return 0;
}

} // namespace kelmo
