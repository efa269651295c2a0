// Fuzzes the readers of the radii ("r"), standard areas ("a") and hydrophobicity ("h"), chosen by
// the first byte: any bytes give a table, or an empty one and the true number of a faulty line.
#include "analysis/parameter_tables.h"
#include "tests/fuzz/fuzz_target.h"

#include <cmath>
#include <map>
#include <sstream>

namespace kelmo {

namespace {

template <typename Value>
using tReader = int (*)(std::istream&, std::map<std::string, Value>&);
template <typename Value>
using tMessenger = std::string (*)(std::istream&, std::map<std::string, Value>&);

bool isNumber(double value) {
    return !std::isnan(value);
}

bool isNumber(const sAsa& areas) {
    return isNumber(areas.total) && isNumber(areas.sideChain) && isNumber(areas.backbone) &&
           isNumber(areas.polar) && isNumber(areas.nonPolar);
}

/// The line counted from 1; what is before it in `before`.
std::string lineOf(const std::string& text, int number, std::string& before) {
    std::size_t begin = 0;
    for (int line = 1; line < number; ++line) {
        const std::size_t end = text.find('\n', begin);
        require(end != std::string::npos, "a faulty line that is in the table");
        begin = end + 1;
    }
    before = text.substr(0, begin);
    return text.substr(begin, text.find('\n', begin) - begin);
}

template <typename Value>
int readText(const std::string& text, tReader<Value> read, std::map<std::string, Value>& table) {
    std::istringstream in(text);
    return read(in, table);
}

template <typename Value>
void readTable(const std::string& text, tReader<Value> read, tMessenger<Value> readAndTell) {
    std::map<std::string, Value> table{{"an entry from before", Value()}};
    const int faultyLine = readText(text, read, table);
    std::istringstream in(text);
    std::map<std::string, Value> toldTable;
    const std::string message = readAndTell(in, toldTable);
    require(table.size() == toldTable.size() || (toldTable.empty() && !message.empty()),
            "the same table twice, or none and a message");
    if (faultyLine == 0) {
        for (const auto& [key, value] : table) {
            require(!key.empty() && isNumber(value), "entries of keys and numbers");
        }
        return;
    }
    require(table.empty(), "an empty table after a faulty line");
    require(message.ends_with(std::to_string(faultyLine)), "a message that names the line");
    std::string before;
    const std::string line = lineOf(text, faultyLine, before);
    require(readText(before, read, table) == 0, "nothing faulty before the faulty line");
    require(readText("\n# the line alone\n" + line, read, table) == 3,
            "a line that is faulty wherever it stands");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const sChoice choice(textOf(bytes, size));
    switch (choice.reader) {
    case 'r':
        readTable<double>(choice.text, getVdWrRadii, readRadiiTable);
        break;
    case 'a':
        readTable<sAsa>(choice.text, getStandardAsa, readStandardAsaTable);
        break;
    case 'h':
        readTable<double>(choice.text, getHydrophobicity, readHydrophobicityTable);
        break;
    default:
        break;
    }
    return 0;
}

} // namespace kelmo
