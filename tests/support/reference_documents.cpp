#include "tests/support/reference_documents.h"

namespace kelmo {

namespace reference {
namespace {

// The element as a part of a document, so many levels below the root.
std::string elementText(const sElement& element, std::size_t level, const std::string& attributes) {
    const std::string indent(2 * level, ' ');
    const std::string start = indent + "<" + element.name + attributes + ">";
    const std::string end = "</" + element.name + ">\n";
    if (element.text) {
        return start + *element.text + end;
    }
    std::string inside;
    for (const sElement& child : element.children) {
        inside += elementText(child, level + 1, "");
    }
    return start + "\n" + inside + indent + end;
}

} // namespace

sElement leaf(const std::string& name, const std::string& text) {
    return {name, text, {}};
}

sElement branch(const std::string& name, const std::vector<sElement>& children) {
    return {name, std::nullopt, children};
}

std::string documentText(const sElement& root) {
    const std::string namespaces = R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
                                   R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
                                   R"( xmlns="http://kelmo.example/krb/namespaces/PDB")";
    return R"(<?xml version="1.0" encoding="us-ascii"?>)"
           "\n" +
           elementText(root, 0, namespaces);
}

std::string fieldText(const std::string& text, std::size_t width) {
    std::string field = text;
    while (field.size() < width) {
        field.insert(field.begin(), ' ');
    }
    return field;
}

} // namespace reference

} // namespace kelmo
