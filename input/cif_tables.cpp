#include "input/cif_tables.h"

#include <algorithm>
#include <utility>

namespace kelmo {

namespace {

/// Tags mean the same in capitals or not.
std::string lowered(std::string_view tag) {
    std::string lower(tag);
    for (char& c : lower) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lower;
}

struct sTag {
    std::string category;
    std::string name;

    explicit sTag(std::string_view tag) {
        const std::size_t point = std::min(tag.find('.'), tag.size());
        category = lowered(tag.substr(1, point - 1));
        name = lowered(tag.substr(std::min(point + 1, tag.size())));
    }
};

} // namespace

const std::string& cCifTable::at(std::size_t row, std::string_view tag) const {
    static const std::string nothing;
    const auto column = std::find(tags.begin(), tags.end(), tag);
    return column == tags.end()
               ? nothing
               : values[row * tags.size() + static_cast<std::size_t>(column - tags.begin())];
}

const std::string& cCifTable::at(std::size_t row, std::string_view tag,
                                 std::string_view otherTag) const {
    const std::string& value = at(row, tag);
    return value.empty() ? at(row, otherTag) : value;
}

cCifTables::cCifTables(std::string streamedCategory, std::set<std::string> keptCategories)
    : streamed(std::move(streamedCategory)), kept(std::move(keptCategories)) {}

void cCifTables::finish() {
    closeBlock();
}

const cCifTable& cCifTables::table(const std::string& category) const {
    static const cCifTable nothing;
    const auto entry = tables.find(category);
    return entry == tables.end() ? nothing : entry->second;
}

void cCifTables::beginBlock(std::string_view name) {
    closeBlock();
    isInBlock = true;
    blockName = name;
}

void cCifTables::beginLoop() {
    closeItems();
    loopTags.clear();
    loopValues = 0;
    isLoopStreamed = false;
    loopTable = nullptr;
}

void cCifTables::loopTag(std::string_view tag) {
    loopTags.emplace_back(tag);
}

void cCifTables::loopValue(std::string_view value) {
    if (loopValues == 0) {
        beginLoopRows();
    }
    if (loopTable != nullptr) {
        loopTable->addValue(value);
    } else if (isLoopStreamed) {
        row[loopValues % loopTags.size()] = value;
    }
    ++loopValues;
    if (isLoopStreamed && loopValues % loopTags.size() == 0) {
        takeRow(row);
    }
}

void cCifTables::endLoop() {
    loopTable = nullptr;
}

void cCifTables::item(std::string_view tag, std::string_view value) {
    sTag parts(tag);
    if (parts.category == streamed) {
        itemTags.push_back(std::move(parts.name));
        itemValues.emplace_back(value);
    } else if (kept.contains(parts.category)) {
        cCifTable& table = tables[parts.category];
        if (table.rows() <= 1) { // a loop of the same category would take no further columns
            table.addTag(std::move(parts.name));
            table.addValue(value);
        }
    }
}

void cCifTables::beginLoopRows() {
    std::vector<std::string> names;
    for (const std::string& tag : loopTags) {
        names.push_back(sTag(tag).name);
    }
    const std::string category = sTag(loopTags.front()).category;
    isLoopStreamed = category == streamed;
    if (isLoopStreamed) {
        row.assign(names.size(), {});
        beginRows(names);
    } else if (kept.contains(category) && !tables.contains(category)) {
        loopTable = &tables[category];
        for (std::string& name : names) {
            loopTable->addTag(std::move(name));
        }
    }
}

/// The single row of the streamed category that stood outside of loops.
void cCifTables::closeItems() {
    if (!itemTags.empty()) {
        beginRows(std::exchange(itemTags, {}));
        takeRow(std::exchange(itemValues, {}));
    }
}

void cCifTables::closeBlock() {
    closeItems();
    if (std::exchange(isInBlock, false)) {
        endBlock(blockName);
    }
    tables.clear();
}

} // namespace kelmo
