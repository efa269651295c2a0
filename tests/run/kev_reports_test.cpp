// The reports of the structure module on a structure put together by hand, byte for byte.
#include "run/crunkev_linux.h"
#include "tests/run/hand_built_structure.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/test_files.h"
#include "tests/support/text_difference.h"

#include <QBuffer>
#include <QString>
#include <QTextStream>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kelmo {

namespace {

/// Which sections a report has.
struct sSections {
    bool asaParameters = false;
    bool areas = false;
    bool relativeAreas = false;
    bool depth = false;
    bool protrusion = false;
    bool hydrophobicity = false;
};

constexpr sSections everySection{true, true, true, true, true, true};

/// All 64 combinations.
std::vector<sSections> allCombinations() {
    std::vector<sSections> all;
    for (unsigned bits = 0; bits < 64; ++bits) {
        all.push_back({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0,
                       (bits & 16) != 0, (bits & 32) != 0});
    }
    return all;
}

void setSections(cRunKEV& run, const sSections& sections) {
    run.setASAAttributes(sections.asaParameters, 1.4, 0.25, sections.areas);
    run.setRASAAttributes(sections.relativeAreas, {});
    run.setDPXAttributes(sections.depth);
    run.setCXAttributes(sections.protrusion, 10.0, 20.1);
    run.setHydrophobicityAttributes(sections.hydrophobicity, {});
    run.setRadiiFilename("my.radii");
    run.setRASAFilename("my.asa");
    run.setHydroFilename("my.hpb");
}

std::string xmlBy(const std::function<void(cXmlWriter&)>& write) {
    const cScratchDirectory scratch;
    const std::string file = scratch.file("report.xml");
    {
        cXmlWriter writer(file.c_str());
        write(writer);
    }
    return contentOf(file);
}

std::string structureXml(cRunKEV& run, cPdbPeptide& peptide, const std::string& type = "bound") {
    return xmlBy([&](cXmlWriter& writer) { run.writePeptideAttributeXml(writer, peptide, type); });
}

std::string chainXml(cRunKEV& run, cProteinChain& chain) {
    return xmlBy([&](cXmlWriter& writer) { run.writeChainAttributeXml(writer, chain, true); });
}

/// The table as it reaches a file.
std::string tableOf(cRunKEV& run, cPdbPeptide& peptide, const std::string& type = "bound") {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    run.writePeptideAttributeTable(stream, peptide, type);
    stream.flush();
    return buffer.data().toStdString();
}

int countOf(const std::string& part, const std::string& text) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

constexpr const char* namespaces = " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
                                   " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                                   " xmlns=\"http://kelmo.example/krb/namespaces/PDB\"";

/// One residue with every section; `blanks` is the indentation of its tags.
constexpr const char* valine = R"(<residue>
  <name>VAL</name>
  <serial_id>12</serial_id>
  <asa>
    <total>101</total>
    <backbone>103</backbone>
    <side_chain>102</side_chain>
    <non_polar>105</non_polar>
    <polar>104</polar>
  </asa>
  <relative_asa>
    <total>111</total>
    <backbone>113</backbone>
    <side_chain>112</side_chain>
    <non_polar>115</non_polar>
    <polar>114</polar>
  </relative_asa>
  <depth_index>
    <average>133</average>
    <average_deviation>134</average_deviation>
    <average_side_chain>135</average_side_chain>
    <average_side_chain_deviation>136</average_side_chain_deviation>
    <maximum>131</maximum>
    <minimum>132</minimum>
  </depth_index>
  <protrusion_index>
    <average>123</average>
    <average_deviation>124</average_deviation>
    <average_side_chain>125</average_side_chain>
    <average_side_chain_deviation>126</average_side_chain_deviation>
    <maximum>121</maximum>
    <minimum>122</minimum>
  </protrusion_index>
  <hydrophobicity>141</hydrophobicity>
</residue>
)";

std::string indented(const std::string& text, std::size_t blanks) {
    std::string out;
    for (const std::string& line : linesOf(text)) {
        out += std::string(blanks, ' ') + line + "\n";
    }
    return out;
}

} // namespace

TEST(KevXml, EverySectionOfOneResidue) {
    cHandBuiltStructure structure;
    structure.peptide.chains.resize(1);
    structure.peptide.chains[0].residueCount = 1;
    cRunKEV run;
    setSections(run, everySection);
    const std::string expected = R"(<?xml version="1.0" encoding="us-ascii"?>
<cPdbPeptide)" + std::string(namespaces) +
                                 R"(>
  <pdb_id>1TST</pdb_id>
  <analysis_type>bound</analysis_type>
  <radii_file>my.radii</radii_file>
  <ASA_zSice>0.25</ASA_zSice>
  <ASA_rSolvent>1.4</ASA_rSolvent>
  <rasa_filename>my.asa</rasa_filename>
  <CX_sRadius>10</CX_sRadius>
  <CX_vAtom>20.1</CX_vAtom>
  <hydrophobicity_filename>my.hpb</hydrophobicity_filename>
  <asa>
    <total>5001</total>
    <backbone>5003</backbone>
    <side_chain>5002</side_chain>
    <non_polar>5005</non_polar>
    <polar>5004</polar>
  </asa>
  <chains>
    <chain>
      <serial_id>A</serial_id>
      <asa>
        <total>1001</total>
        <backbone>1003</backbone>
        <side_chain>1002</side_chain>
        <non_polar>1005</non_polar>
        <polar>1004</polar>
      </asa>
      <residues>
)" + indented(valine, 8) + R"(      </residues>
    </chain>
  </chains>
</cPdbPeptide>)";
    EXPECT_EQ(firstDifference(structureXml(run, structure.peptide), expected), "");
}

TEST(KevXml, NoSectionButAllChainsAndResidues) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, {});
    const std::string expected = R"(<?xml version="1.0" encoding="us-ascii"?>
<cPdbPeptide)" + std::string(namespaces) +
                                 R"(>
  <pdb_id>1TST</pdb_id>
  <analysis_type>unbound</analysis_type>
  <radii_file>my.radii</radii_file>
  <chains>
    <chain>
      <serial_id>A</serial_id>
      <residues>
        <residue>
          <name>VAL</name>
          <serial_id>12</serial_id>
        </residue>
        <residue>
          <name>GLY</name>
          <serial_id>12A</serial_id>
        </residue>
      </residues>
    </chain>
    <chain>
      <serial_id>*</serial_id>
      <residues>
        <residue>
          <name>U</name>
          <serial_id>1</serial_id>
        </residue>
      </residues>
    </chain>
  </chains>
</cPdbPeptide>)";
    EXPECT_EQ(firstDifference(structureXml(run, structure.peptide, "unbound"), expected), "");
}

TEST(KevXml, StandaloneChainIsADocumentOfItsOwn) {
    cHandBuiltStructure structure;
    cProteinChain& chain = structure.peptide.chains[0];
    chain.residueCount = 1;
    cRunKEV run;
    setSections(run, everySection);
    const std::string expected = R"(<?xml version="1.0" encoding="us-ascii"?>
<cProteinChain)" + std::string(namespaces) +
                                 R"(>
  <peptide_id>1TST</peptide_id>
  <ASA_zSice>0.25</ASA_zSice>
  <ASA_rSolvent>1.4</ASA_rSolvent>
  <CX_sRadius>10</CX_sRadius>
  <CX_vAtom>20.1</CX_vAtom>
    <serial_id>A</serial_id>
    <asa>
      <total>1001</total>
      <backbone>1003</backbone>
      <side_chain>1002</side_chain>
      <non_polar>1005</non_polar>
      <polar>1004</polar>
    </asa>
    <residues>
)" + indented(valine, 6) + R"(    </residues>
</cProteinChain>
)";
    EXPECT_EQ(firstDifference(chainXml(run, chain), expected), "");
}

TEST(KevXml, StandaloneChainWithoutSections) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, {});
    const std::string expected = R"(<?xml version="1.0" encoding="us-ascii"?>
<cProteinChain)" + std::string(namespaces) +
                                 R"(>
  <peptide_id>1TST</peptide_id>
    <serial_id>*</serial_id>
    <residues>
      <residue>
        <name>U</name>
        <serial_id>1</serial_id>
      </residue>
    </residues>
</cProteinChain>
)";
    EXPECT_EQ(firstDifference(chainXml(run, structure.peptide.chains[1]), expected), "");
}

TEST(KevXml, StructureWithoutChainsHasAnEmptyList) {
    cPdbPeptide peptide;
    cRunKEV run;
    const std::string expected = R"(<?xml version="1.0" encoding="us-ascii"?>
<cPdbPeptide)" + std::string(namespaces) +
                                 R"(>
  <pdb_id></pdb_id>
  <analysis_type>bound</analysis_type>
  <radii_file></radii_file>
  <chains>
  </chains>
</cPdbPeptide>)";
    EXPECT_EQ(firstDifference(structureXml(run, peptide), expected), "");
}

TEST(KevXml, EachSectionIsThereExactlyWhenAskedFor) {
    cHandBuiltStructure structure;
    constexpr int residues = 3;
    constexpr int chains = 2;
    for (const sSections& on : allCombinations()) {
        cRunKEV run;
        setSections(run, on);
        const std::string xml = structureXml(run, structure.peptide);
        EXPECT_EQ(countOf("<ASA_zSice>", xml), on.asaParameters);
        EXPECT_EQ(countOf("<ASA_rSolvent>", xml), on.asaParameters);
        EXPECT_EQ(countOf("<rasa_filename>", xml), on.relativeAreas);
        EXPECT_EQ(countOf("<CX_sRadius>", xml), on.protrusion);
        EXPECT_EQ(countOf("<CX_vAtom>", xml), on.protrusion);
        EXPECT_EQ(countOf("<hydrophobicity_filename>", xml), on.hydrophobicity);
        EXPECT_EQ(countOf("<asa>", xml), on.areas ? 1 + chains + residues : 0);
        EXPECT_EQ(countOf("<relative_asa>", xml), on.relativeAreas ? residues : 0);
        EXPECT_EQ(countOf("<depth_index>", xml), on.depth ? residues : 0);
        EXPECT_EQ(countOf("<protrusion_index>", xml), on.protrusion ? residues : 0);
        EXPECT_EQ(countOf("<hydrophobicity>", xml), on.hydrophobicity ? residues : 0);
        EXPECT_EQ(countOf("<residue>", xml), residues);
        const int groups = (on.areas ? 1 + chains + residues : 0) +
                           residues * (on.relativeAreas + on.depth + on.protrusion);
        const int headerLines =
            5 + 2 * on.asaParameters + on.relativeAreas + 2 * on.protrusion + on.hydrophobicity;
        const int areaLines =
            5 * (on.areas * (1 + chains + residues) + on.relativeAreas * residues);
        const int statisticsLines = 6 * residues * (on.depth + on.protrusion);
        EXPECT_EQ(countOf("\n", xml), headerLines + 2 + 5 * chains + 4 * residues + 2 * groups +
                                          areaLines + statisticsLines +
                                          on.hydrophobicity * residues);
    }
}

TEST(KevXml, StandaloneChainHasTheParametersThatBelongToIt) {
    cHandBuiltStructure structure;
    for (const sSections& on : allCombinations()) {
        cRunKEV run;
        setSections(run, on);
        const std::string xml = chainXml(run, structure.peptide.chains[0]);
        EXPECT_EQ(countOf("<ASA_zSice>", xml), on.asaParameters);
        EXPECT_EQ(countOf("<ASA_rSolvent>", xml), on.asaParameters);
        EXPECT_EQ(countOf("<CX_sRadius>", xml), on.protrusion);
        EXPECT_EQ(countOf("<CX_vAtom>", xml), on.protrusion);
        EXPECT_EQ(countOf("_filename>", xml), 0);
        EXPECT_EQ(countOf("<asa>", xml), on.areas ? 3 : 0);
        EXPECT_EQ(countOf("<relative_asa>", xml), on.relativeAreas ? 2 : 0);
        EXPECT_EQ(countOf("<depth_index>", xml), on.depth ? 2 : 0);
        EXPECT_EQ(countOf("<protrusion_index>", xml), on.protrusion ? 2 : 0);
        EXPECT_EQ(countOf("<hydrophobicity>", xml), on.hydrophobicity ? 2 : 0);
    }
}

TEST(KevXml, EveryCombinationIsWellFormed) {
    cHandBuiltStructure structure;
    const cScratchDirectory scratch;
    std::vector<std::string> files;
    for (const sSections& on : allCombinations()) {
        cRunKEV run;
        setSections(run, on);
        const std::string number = std::to_string(files.size());
        files.push_back(scratch.file("structure" + number + ".xml"));
        writeContent(files.back(), structureXml(run, structure.peptide));
        files.push_back(scratch.file("chain" + number + ".xml"));
        writeContent(files.back(), chainXml(run, structure.peptide.chains[0]));
    }
    EXPECT_TRUE(areWellFormed(files));
}

TEST(KevXml, TextsAreEscaped) {
    cHandBuiltStructure structure;
    cPdbPeptide& peptide = structure.peptide;
    peptide.name = "<1&>";
    peptide.chains[0].chainId = "&";
    peptide.chains[1].chainId = "\xE9";
    peptide.residues[0].residueName = "<A>";
    peptide.residues[0].residueNumber = "1\x01";
    cRunKEV run;
    setSections(run, everySection);
    run.setRadiiFilename("caf\xC3\xA9.radii");
    run.setRASAFilename("a&b.asa");
    run.setHydroFilename("\xFF.hpb");
    const std::string xml = structureXml(run, peptide, "<bound>");
    for (const char* element :
         {"  <pdb_id>&lt;1&amp;&gt;</pdb_id>\n", "  <analysis_type>&lt;bound&gt;</analysis_type>\n",
          "  <radii_file>caf&#233;.radii</radii_file>\n",
          "  <rasa_filename>a&amp;b.asa</rasa_filename>\n",
          "  <hydrophobicity_filename>&#255;.hpb</hydrophobicity_filename>\n",
          "      <serial_id>&amp;</serial_id>\n", "      <serial_id>&#233;</serial_id>\n",
          "          <name>&lt;A&gt;</name>\n", "          <serial_id>1?</serial_id>\n"}) {
        EXPECT_EQ(countOf(element, xml), 1) << element;
    }
    peptide.chains[0].peptideName = "&";
    const std::string chain = chainXml(run, peptide.chains[0]);
    EXPECT_EQ(countOf("  <peptide_id>&amp;</peptide_id>\n", chain), 1);

    const cScratchDirectory scratch;
    writeContent(scratch.file("a.xml"), xml);
    writeContent(scratch.file("b.xml"), chain);
    EXPECT_TRUE(areWellFormed({scratch.file("a.xml"), scratch.file("b.xml")}));
}

TEST(KevXml, ReportsWithTextsOfAnyBytesAreWellFormed) {
    constexpr int documentCount = 300;
    std::mt19937 generator(9);
    const auto anyText = [&] {
        std::string text;
        for (unsigned long length = generator() % 8; length > 0; --length) {
            text += static_cast<char>(generator() % 256);
        }
        return text;
    };
    const cScratchDirectory scratch;
    std::vector<std::string> files;
    for (int i = 0; i < documentCount; ++i) {
        cHandBuiltStructure structure;
        structure.peptide.name = anyText();
        for (cChainResidue& residue : structure.peptide.residues) {
            residue.residueName = anyText();
            residue.residueNumber = anyText();
        }
        for (cProteinChain& chain : structure.peptide.chains) {
            chain.chainId = anyText();
        }
        cRunKEV run;
        setSections(run, everySection);
        run.setRadiiFilename(anyText());
        run.setRASAFilename(anyText());
        run.setHydroFilename(anyText());
        files.push_back(scratch.file(std::to_string(i) + ".xml"));
        writeContent(files.back(), structureXml(run, structure.peptide, anyText()));
    }
    EXPECT_TRUE(areWellFormed(files));
}

TEST(KevXml, NumbersAreThoseOfTheStream) {
    cHandBuiltStructure structure;
    cChainResidue& residue = structure.peptide.residues[0];
    using limits = std::numeric_limits<double>;
    residue.totalAsa = 0.000123456789;
    residue.backboneAsa = 1234567.0;
    residue.sideChainAsa = -limits::infinity();
    residue.nonPolarAsa = std::copysign(limits::quiet_NaN(), -1.0);
    residue.polarAsa = limits::infinity();
    cRunKEV run;
    setSections(run, {.areas = true});
    EXPECT_EQ(countOf("          <asa>\n"
                      "            <total>0.000123457</total>\n"
                      "            <backbone>1.23457e+06</backbone>\n"
                      "            <side_chain>-inf</side_chain>\n"
                      "            <non_polar>-nan</non_polar>\n"
                      "            <polar>inf</polar>\n"
                      "          </asa>\n",
                      structureXml(run, structure.peptide)),
              1);
}

TEST(KevTable, EverySectionByteForByte) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, everySection);
    const std::string expected =
        "pdb_id: 1TST\n"
        "analysis type: bound\n"
        "radii_file: my.radii\n"
        "ASA_zSice: 0.25\n"
        "ASA_rSolvent: 1.4\n"
        "rasa_file: my.asa\n"
        "CX_sRadius: 10\n"
        "CX_vAtom: 20.1\n"
        "radii_file: my.hpb\n"
        "total ASA: 5001\n"
        "back-bone ASA: 5003\n"
        "side-chain ASA: 5002\n"
        "polar ASA: 5004\n"
        "non-polar ASA: 5005\n"
        "\n"
        "  chain id|   ch total ASA|  ch b-bone ASA| ch s-chain ASA|   ch polar ASA|"
        " ch n-polar ASA|    res id|  res name|      total ASA|     b-bone ASA|    s-chain ASA|"
        "      polar ASA|    n-polar ASA|     total RASA|    b-bone RASA|   s-chain RASA|"
        "     polar RASA|   n-polar RASA|    average DPX|      s_avg DPX|   s-ch avg DPX|"
        " s-ch s_avg DPX|        max DPX|        min DPX|     average CX|       s_avg CX|"
        "    s-ch avg CX|  s-ch s_avg CX|         max CX|         min CX| Hydrophobicity|\n"
        "         A            1001            1003            1002            1004"
        "            1005         12        VAL             101             103             102"
        "             104             105             111             113             112"
        "             114             115             133             134             135"
        "             136             131             132             123             124"
        "             125             126             121             122             141\n"
        "         A            1001            1003            1002            1004"
        "            1005        12A        GLY             201             203             202"
        "             204             205             211             213             212"
        "             214             215             233             234             235"
        "             236             231             232             223             224"
        "             225             226             221             222             241\n"
        "         *            2001            2003            2002            2004"
        "            2005          1          U             301             303             302"
        "             304             305             311             313             312"
        "             314             315             333             334             335"
        "             336             331             332             323             324"
        "             325             326             321             322             341\n";
    EXPECT_EQ(firstDifference(tableOf(run, structure.peptide), expected), "");
}

TEST(KevTable, NoSectionByteForByte) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, {});
    EXPECT_EQ(firstDifference(tableOf(run, structure.peptide, "unbound"),
                              "pdb_id: 1TST\n"
                              "analysis type: unbound\n"
                              "radii_file: my.radii\n"
                              "\n"
                              "  chain id|    res id|  res name|\n"
                              "         A         12        VAL\n"
                              "         A        12A        GLY\n"
                              "         *          1          U\n"),
              "");
}

TEST(KevTable, EachSectionIsThereExactlyWhenAskedFor) {
    cHandBuiltStructure structure;
    for (const sSections& on : allCombinations()) {
        cRunKEV run;
        setSections(run, on);
        const std::vector<std::string> lines = linesOf(tableOf(run, structure.peptide));
        std::vector<std::string> header{"pdb_id: 1TST", "analysis type: bound",
                                        "radii_file: my.radii"};
        const auto addWhen = [&](bool isOn, const std::vector<std::string>& more) {
            header.insert(header.end(), more.begin(), isOn ? more.end() : more.begin());
        };
        addWhen(on.asaParameters, {"ASA_zSice: 0.25", "ASA_rSolvent: 1.4"});
        addWhen(on.relativeAreas, {"rasa_file: my.asa"});
        addWhen(on.protrusion, {"CX_sRadius: 10", "CX_vAtom: 20.1"});
        addWhen(on.hydrophobicity, {"radii_file: my.hpb"});
        addWhen(on.areas, {"total ASA: 5001", "back-bone ASA: 5003", "side-chain ASA: 5002",
                           "polar ASA: 5004", "non-polar ASA: 5005"});
        addWhen(true, {""});
        ASSERT_EQ(lines.size(), header.size() + 4);
        EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.end() - 4), header);

        const int wideColumns = 10 * on.areas + 5 * on.relativeAreas + 6 * on.depth +
                                6 * on.protrusion + on.hydrophobicity;
        const std::string& titles = lines[header.size()];
        EXPECT_EQ(titles.size(), static_cast<std::size_t>(33 + 16 * wideColumns));
        EXPECT_EQ(countOf("|", titles), 3 + wideColumns);
        EXPECT_EQ(countOf("ch total ASA|", titles), on.areas);
        EXPECT_EQ(countOf(" total ASA|", titles), 2 * on.areas);
        EXPECT_EQ(countOf("RASA|", titles), 5 * on.relativeAreas);
        EXPECT_EQ(countOf("DPX|", titles), 6 * on.depth);
        EXPECT_EQ(countOf("CX|", titles), 6 * on.protrusion);
        EXPECT_EQ(countOf("Hydrophobicity|", titles), on.hydrophobicity);
        for (std::size_t i = header.size() + 1; i < lines.size(); ++i) {
            // The chain id is one narrower than its title.
            EXPECT_EQ(lines[i].size(), titles.size() - 1);
        }
    }
}

TEST(KevTable, NumbersHaveFiveDigitsAndNoSignOfNotANumber) {
    cHandBuiltStructure structure;
    structure.peptide.chains.resize(1);
    structure.peptide.chains[0].residueCount = 1;
    cChainResidue& residue = structure.peptide.residues[0];
    using limits = std::numeric_limits<double>;
    residue.relativeTotalAsa = limits::infinity();
    residue.relativeBackboneAsa = -limits::infinity();
    residue.relativeSideChainAsa = std::copysign(limits::quiet_NaN(), -1.0);
    residue.relativePolarAsa = 123.125; // half-way, away from zero
    residue.relativeNonPolarAsa = -0.0;
    residue.hydrophobicity = 0.0000123456;
    cRunKEV run;
    setSections(run, {.relativeAreas = true, .hydrophobicity = true});
    EXPECT_EQ(linesOf(tableOf(run, structure.peptide)).back(),
              "         A         12        VAL"
              "             inf            -inf             nan          123.13               0"
              "      1.2346e-05");
}

TEST(KevTable, ParametersHaveFiveDigits) {
    cHandBuiltStructure structure;
    structure.peptide.totalAsa = 1234567.0;
    structure.peptide.backboneAsa = 10000.5;
    cRunKEV run;
    setSections(run, everySection);
    run.setASAAttributes(true, 1.23456789, -0.0, true);
    run.setCXAttributes(true, 0.0000123456, 99999.95);
    const std::string table = tableOf(run, structure.peptide);
    EXPECT_EQ(countOf("\nASA_zSice: 0\nASA_rSolvent: 1.2346\n", table), 1);
    EXPECT_EQ(countOf("\nCX_sRadius: 1.2346e-05\nCX_vAtom: 1e+05\n", table), 1);
    EXPECT_EQ(countOf("\ntotal ASA: 1.2346e+06\nback-bone ASA: 10001\n", table), 1);
}

TEST(KevTable, LongTextsAreNotCut) {
    cHandBuiltStructure structure;
    cPdbPeptide& peptide = structure.peptide;
    peptide.chains[1].chainId = "a long chain id";
    peptide.residues[2].residueNumber = "123456789012";
    peptide.residues[2].residueName = "RESIDUENAME";
    cRunKEV run;
    setSections(run, {});
    EXPECT_EQ(linesOf(tableOf(run, peptide)).back(), " a long chain id 123456789012 RESIDUENAME");
}

TEST(KevTable, TextsAreWrittenAsTheyAre) {
    cHandBuiltStructure structure;
    structure.peptide.name = "<&>";
    structure.peptide.residues[2].residueName = "\xE9";
    cRunKEV run;
    setSections(run, {});
    run.setRadiiFilename("caf\xC3\xA9 \xFF.radii");
    const std::string table = tableOf(run, structure.peptide);
    EXPECT_EQ(countOf("pdb_id: <&>\n", table), 1);
    EXPECT_EQ(countOf("radii_file: caf\xC3\xA9 \xFF.radii\n", table), 1);
    EXPECT_EQ(countOf("         *          1          \xE9\n", table), 1) << "one byte, one column";
}

TEST(KevTable, PathsMakeNoLinesOfTheHeader) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, everySection);
    run.setRadiiFilename("a\ntotal ASA: 9\rb");
    run.setHydroFilename("c\ntotal ASA: 9\n");
    const std::string table = tableOf(run, structure.peptide);
    EXPECT_EQ(countOf("\nradii_file: a?total ASA: 9?b\n", table), 1);
    EXPECT_EQ(countOf("\nradii_file: c?total ASA: 9?\n", table), 1);
}

TEST(KevTable, StreamKeepsItsOrderAndReceivesThePrecision) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, everySection);
    const std::string table = tableOf(run, structure.peptide);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    stream << "before ";
    run.writePeptideAttributeTable(stream, structure.peptide, "bound");
    stream << "after " << 1.23456789;
    stream.flush();
    EXPECT_EQ(firstDifference(buffer.data().toStdString(), "before " + table + "after 1.2346"), "");
    EXPECT_EQ(stream.realNumberPrecision(), 5);
}

TEST(KevTable, StreamOnAStringReceivesTheSame) {
    cHandBuiltStructure structure;
    cRunKEV run;
    setSections(run, everySection);
    QString text;
    QTextStream stream(&text);
    run.writePeptideAttributeTable(stream, structure.peptide, "bound");
    stream.flush();
    EXPECT_EQ(firstDifference(text.toStdString(), tableOf(run, structure.peptide)), "");
}

TEST(KevTable, ManyRowsAreAllThere) {
    cHandBuiltStructure structure;
    cPdbPeptide& peptide = structure.peptide;
    constexpr unsigned count = 5000; // far more than is handed on at once
    peptide.residues.resize(count, peptide.residues[0]);
    peptide.chains.resize(1);
    peptide.chains[0].residues = peptide.residues.data();
    peptide.chains[0].residueCount = count;
    for (unsigned i = 0; i < count; ++i) {
        peptide.residues[i].residueNumber = std::to_string(i);
    }
    cRunKEV run;
    setSections(run, {.areas = true});
    const std::vector<std::string> lines = linesOf(tableOf(run, peptide));
    constexpr std::size_t headerLines = 10;
    ASSERT_EQ(lines.size(), headerLines + count);
    constexpr std::size_t numberColumn = 10 + 5 * 16;
    for (unsigned i = 0; i < count; ++i) {
        const std::string number = " " + std::to_string(i);
        EXPECT_EQ(lines[headerLines + i].substr(numberColumn, 11),
                  std::string(11 - number.size(), ' ') + number);
    }
}

} // namespace kelmo
