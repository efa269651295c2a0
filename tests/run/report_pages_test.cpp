// The pages on the report formats: their excerpts are lines of real reports, and they name every
// element and column in its order.
#include "tests/run/run_test_tools.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

using enum eInteractionCriterion;

namespace {

using tLines = std::vector<std::string>;

std::string pageText(const std::string& name) {
    return sourceText("docs/formats/" + name);
}

/// The part of a page from a heading to the next of the same level.
std::string section(const std::string& page, const std::string& heading) {
    const std::size_t begin = page.find("\n## " + heading + "\n");
    EXPECT_NE(begin, std::string::npos) << heading;
    return begin == std::string::npos ? ""
                                      : page.substr(begin, page.find("\n## ", begin + 1) - begin);
}

void expectExcerptsOf(const std::string& page, const tLines& reports) {
    const tLines excerpts = fencedBlocks(page);
    ASSERT_EQ(excerpts.size(), reports.size());
    for (std::size_t i = 0; i < excerpts.size(); ++i) {
        EXPECT_NE(reports[i].find(excerpts[i]), std::string::npos) << excerpts[i];
    }
}

void expectNamedInOrder(const std::string& text, const tLines& names) {
    std::size_t at = 0;
    for (const std::string& name : names) {
        const std::size_t found = text.find("`" + name + "`", at);
        EXPECT_NE(found, std::string::npos) << name << " is missing or stands elsewhere";
        at = found == std::string::npos ? at : found;
    }
}

/// The names of the elements with this indentation, each once, in the order of their beginning.
tLines elementsAt(std::size_t indent, const std::string& xml) {
    tLines names;
    for (const std::string& line : linesOf(xml)) {
        if (line.find('<') == indent && line[indent + 1] != '/' && line[indent + 1] != '?') {
            const std::string name =
                line.substr(indent + 1, line.find_first_of(" >", indent) - indent - 1);
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

std::string kevReport(cRunKEV& run, const std::string& suffix) {
    const cScratchDirectory output;
    run.setOutputDirectoryName(QString::fromStdString(output.path().string()));
    run.analyseFile(QString::fromStdString(samplePath("1ubq").string()), fixedStamp);
    return contentOf(output.file("1ubq_" + fixedStamp.toStdString() + suffix));
}

std::string vorReport(eInteractionCriterion criterion, const std::string& suffix) {
    const cScratchDirectory output;
    cRunVOR run;
    switchEverythingOn(run, criterion);
    run.outputDirectory = QString::fromStdString(output.path().string());
    run.analyseFile(QString::fromStdString(samplePath("1a0q").string()), fixedStamp);
    return contentOf(output.file("1a0q_" + fixedStamp.toStdString() + suffix));
}

} // namespace

TEST(ReportPages, KevXml) {
    const std::string page = pageText("kev-xml.md");
    cRunKEV run;
    switchEverythingOn(run);
    const std::string xml = kevReport(run, "_bound.xml");
    expectExcerptsOf(page, {xml});
    const std::string elements = section(page, "Elements, in their order");
    const tLines root = elementsAt(2, xml);
    const tLines chain = elementsAt(6, xml);
    const tLines residue = elementsAt(10, xml);
    EXPECT_EQ(root.size() + chain.size() + residue.size(), 11U + 3U + 7U);
    const std::size_t chainTable = elements.find("A `chain` holds");
    const std::size_t residueTable = elements.find("A `residue` holds");
    expectNamedInOrder(elements.substr(0, chainTable), root);
    expectNamedInOrder(elements.substr(chainTable, residueTable - chainTable), chain);
    expectNamedInOrder(elements.substr(residueTable), residue);
    const tLines values = elementsAt(12, xml);
    EXPECT_EQ(values.size(), 5U + 6U);
    expectNamedInOrder(elements.substr(elements.find("The areas in")), values);
}

TEST(ReportPages, KevTable) {
    const std::string page = pageText("kev-table.md");
    cRunKEV run;
    switchEverythingOn(run);
    const tLines lines = linesOf(kevReport(run, "_bound.tbl"));
    tLines labels;
    std::size_t i = 0;
    for (; i < lines.size() && !lines[i].empty(); ++i) {
        labels.push_back(lines[i].substr(0, lines[i].find(':') + 1));
    }
    EXPECT_EQ(labels.size(), 14U);
    expectNamedInOrder(section(page, "Header"), labels);
    tLines titles;
    std::istringstream in(lines.at(i + 1));
    for (std::string title; std::getline(in, title, '|');) {
        titles.push_back(title.substr(title.find_first_not_of(' ')));
    }
    EXPECT_EQ(titles.size(), 3U + 5U + 5U + 5U + 6U + 6U + 1U);
    expectNamedInOrder(section(page, "Columns"), titles);

    run.setASAAttributes(true, 1.4, 0.25, false);
    run.setRASAAttributes(false, {});
    run.setCXAttributes(false, 10.0, 20.1);
    run.setHydrophobicityAttributes(false, {});
    expectExcerptsOf(page, {kevReport(run, "_bound.tbl")});
}

TEST(ReportPages, VorXml) {
    const std::string page = pageText("vor-xml.md");
    const std::string contacts = vorReport(vorda, "_contacts.xml");
    const std::string residues = vorReport(vorda, "_binding_residues.xml");
    const std::string status = vorReport(vorda, "_binding_status.xml");
    expectExcerptsOf(page, {contacts, residues, status});
    for (const eInteractionCriterion criterion : {maximumDistance, prism, dovreth}) {
        tLines header = elementsAt(2, vorReport(criterion, "_contacts.xml"));
        EXPECT_EQ(header.back(), "contacts");
        header.pop_back();
        expectNamedInOrder(section(page, "Header"), header);
    }
    expectNamedInOrder(section(page, "Contacts"), elementsAt(6, contacts));
    expectNamedInOrder(section(page, "Binding residues"), elementsAt(6, residues));
    EXPECT_EQ(elementsAt(6, status).back(), "binding_status");
    expectNamedInOrder(section(page, "Binding status"), {"residues", "residue", "binding_status"});
}

TEST(ReportPages, VorTable) {
    const std::string page = pageText("vor-table.md");
    expectExcerptsOf(page, {vorReport(vorda, "_contacts.tbl"),
                            vorReport(maximumDistance, "_binding_residues.tbl"),
                            vorReport(dovreth, "_binding_status.tbl")});
    for (const char* label : {"pdb_id:", "radii_filename:", "MD_threshold:", "PRISM_threshold:",
                              "TH_delta_asa:", "TH_z_slice:", "TH_r_solvent:"}) {
        EXPECT_NE(page.find("`" + std::string(label) + "`"), std::string::npos) << label;
    }
}

} // namespace kelmo
