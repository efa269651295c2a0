// Fuzzes what kelmo-batch reads but for tables and structures; the first byte chooses: a
// configuration of kev ("k") or vor ("v"), assignments for kev ("K") or vor ("V") and the arguments
// of the command line ("o"), one a line, an input list ("l"). Any bytes are taken or refused with a
// message that shows no control character.
#include "batch/configuration.h"
#include "batch/input_paths.h"
#include "batch/options.h"
#include "batch/usage_error.h"
#include "run/file_path.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/xml/scratch_directory.h"

#include <algorithm>
#include <sstream>
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

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

void requireShowable(const cUsageError& error) {
    const QString text = error.text();
    require(!text.isEmpty(), "a message");
    require(std::all_of(text.begin(), text.end(),
                        [](QChar c) { return c == u'\n' || c.category() != QChar::Other_Control; }),
            "a message without control characters");
}

void requireNumber(const cConfiguration& configuration, const char* key, double minimum,
                   double maximum) {
    const double number = configuration.number(key, minimum);
    require(number >= minimum && number <= maximum, "numbers within their range");
}

void requireValues(const cConfiguration& configuration) {
    requireNumber(configuration, "z_slice", 0.01, 1.0);
    requireNumber(configuration, "r_solvent", 0.0, 2.0);
    requireNumber(configuration, "cx_threshold", 5.0, 15.0);
    requireNumber(configuration, "cx_volume", 15.0, 25.0);
    requireNumber(configuration, "threshold", 0.0, 10.0);
    requireNumber(configuration, "delta_asa", 0.05, 100.0);
    for (const char* key : {"write_xml", "write_table", "calc_asa", "write_contacts"}) {
        const sSetting* setting = configuration.find(key);
        require(setting == nullptr ||
                    setting->value == (configuration.flag(key, false) ? "1" : "0"),
                "flags of 1 and 0");
    }
    for (const char* key : {"output_dir", "radii_filename"}) {
        const sSetting* setting = configuration.find(key);
        require(setting == nullptr || pathToBytes(setting->path()) == setting->value,
                "paths byte for byte");
    }
}

void readConfigurationFile(eModule module, const std::string& text) {
    const std::string& file = inputFile(text);
    cConfiguration configuration(module);
    try {
        configuration.readFile(QString::fromStdString(file));
    } catch (const cUsageError& error) {
        requireShowable(error);
        const QString place = QString::fromStdString(file) + ':';
        require(error.text().startsWith(place), "a message that names the file");
        const int line = error.text().mid(place.size()).section(u':', 0, 0).toInt();
        require(line >= 1 && line <= static_cast<int>(linesOf(text).size()),
                "a message that names the line");
        return;
    }
    requireValues(configuration);
}

void readAssignments(eModule module, const std::string& text) {
    cConfiguration configuration(module);
    for (const std::string& line : linesOf(text)) {
        try {
            configuration.assign(line);
        } catch (const cUsageError& error) {
            requireShowable(error);
        }
    }
    requireValues(configuration);
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
        require(paths.bytes(i) == expected[i], "paths byte for byte");
    }
    for (const QString& warning : sameBaseNameWarnings(paths, cSameBaseNames(paths))) {
        require(!warning.isEmpty(), "a warning");
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
