// The shapes of all reports of the slow reference implementation: documents as trees, tables as
// lists of columns.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelmo {

namespace reference {

// One element of a document: a leaf with a text, or a branch that holds elements, maybe none.
struct sElement {
    std::string name;
    std::optional<std::string> text;
    std::vector<sElement> children;
};

sElement leaf(const std::string& name, const std::string& text);
sElement branch(const std::string& name, const std::vector<sElement>& children);

// A whole document with its declaration and the namespaces of the root. Every element is indented
// by two blanks for each element around it; every end tag ends its line, the root's too.
std::string documentText(const sElement& root);

// One field of a line: at the right of so many characters, never cut.
std::string fieldText(const std::string& text, std::size_t width);

// One column of a table whose lines are about items of one kind. Widths are in characters.
template <typename tItem>
struct sColumn {
    std::string title;
    std::size_t titleWidth;
    std::size_t width;
    std::function<std::string(const tItem&)> text;
};

template <typename tItem>
std::string titleLine(const std::vector<sColumn<tItem>>& columns) {
    std::string line;
    for (const sColumn<tItem>& column : columns) {
        line += fieldText(column.title, column.titleWidth);
    }
    return line + "\n";
}

// The lines of a table, one for each item.
template <typename tItem>
std::string lines(const std::vector<sColumn<tItem>>& columns, const std::vector<tItem>& items) {
    std::string text;
    for (const tItem& item : items) {
        for (const sColumn<tItem>& column : columns) {
            text += fieldText(column.text(item), column.width);
        }
        text += "\n";
    }
    return text;
}

} // namespace reference

} // namespace kelmo
