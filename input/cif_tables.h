// The tables of a CIF text: those that are small are kept, the one that is not is handed on row by
// row.
#pragma once

#include "input/gemmi_library.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// A category of a data block. Values that are not given are empty.
class cCifTable {
  public:
    void addTag(std::string tag) { tags.push_back(std::move(tag)); }
    void addValue(std::string_view value) { values.emplace_back(value); }

    std::size_t rows() const { return tags.empty() ? 0 : values.size() / tags.size(); }
    /// The value of a row under a tag in lower case without its category; empty if there is none.
    const std::string& at(std::size_t row, std::string_view tag) const;
    /// The first of two that is given.
    const std::string& at(std::size_t row, std::string_view tag, std::string_view otherTag) const;

  private:
    std::vector<std::string> tags;
    std::vector<std::string> values;
};

/// Puts categories together, whether they stand in loops or, with a single row, as items.
class cCifTables : public cCifVisitor {
  public:
    /// Names of categories are in lower case, without the underscore.
    cCifTables(std::string streamedCategory, std::set<std::string> keptCategories);

    /// To be called when all has been read.
    void finish();

  protected:
    /// Rows of the streamed category follow, under tags in lower case without their category.
    virtual void beginRows(const std::vector<std::string>& tags) = 0;
    /// Values that are not given are empty.
    virtual void takeRow(const std::vector<std::string>& values) = 0;
    /// All of a block has been taken. Its tables go when this is done.
    virtual void endBlock(const std::string& name) = 0;

    /// A kept one; empty if the block has none of that name.
    const cCifTable& table(const std::string& category) const;

  private:
    void beginBlock(std::string_view name) final;
    void beginLoop() final;
    void loopTag(std::string_view tag) final;
    void loopValue(std::string_view value) final;
    void endLoop() final;
    void item(std::string_view tag, std::string_view value) final;

    void beginLoopRows();
    void closeItems();
    void closeBlock();

    const std::string streamed;
    const std::set<std::string> kept;
    bool isInBlock = false;
    std::string blockName;
    std::map<std::string, cCifTable> tables;

    std::vector<std::string> loopTags;
    std::size_t loopValues = 0;
    bool isLoopStreamed = false;
    cCifTable* loopTable = nullptr;
    std::vector<std::string> row;

    std::vector<std::string> itemTags; ///< of the streamed category
    std::vector<std::string> itemValues;
};

} // namespace kelmo
