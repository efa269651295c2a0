#include "tests/support/reference_contacts.h"

#include "tests/support/reference_attributes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <locale>
#include <sstream>

namespace kelmo {

namespace reference {
namespace {

constexpr double representativeMargin = 15.0; // added to every search distance, in ångström
constexpr double vordaVdwThreshold = 1.125;
constexpr double vordaSearchValue = 6.0;

long leadingInteger(const std::string& text) {
    return std::strtol(text.c_str(), nullptr, 10);
}

// Less than 0, 0 or more than 0: by number, then by text.
int compareResidueNumbers(const std::string& a, const std::string& b) {
    const long numberA = leadingInteger(a);
    const long numberB = leadingInteger(b);
    if (numberA != numberB) {
        return numberA < numberB ? -1 : 1;
    }
    return a.compare(b);
}

} // namespace

bool isLess(const sContact& a, const sContact& b) {
    if (const int order = a.chain1.compare(b.chain1); order != 0) {
        return order < 0;
    }
    if (const int order = a.chain2.compare(b.chain2); order != 0) {
        return order < 0;
    }
    if (const int order = compareResidueNumbers(a.residueNumber1, b.residueNumber1); order != 0) {
        return order < 0;
    }
    if (const int order = compareResidueNumbers(a.residueNumber2, b.residueNumber2); order != 0) {
        return order < 0;
    }
    return static_cast<int>(a.criterion) < static_cast<int>(b.criterion);
}

namespace {

void addRule(tContactRules& rules, const sContactRule& rule) {
    rules[rule.residueName1 + "_" + rule.residueName2].push_back(rule);
}

sContactRule mirrored(const sContactRule& rule) {
    sContactRule mirror = rule;
    std::swap(mirror.atomName1, mirror.atomName2);
    std::swap(mirror.residueName1, mirror.residueName2);
    std::swap(mirror.atomIndex1, mirror.atomIndex2);
    return mirror;
}

} // namespace

void readContactRules(const std::string& tableText, tContactRules& rules) {
    std::istringstream in(tableText);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        sContactRule rule;
        rule.residueName1 = line.substr(0, 3);
        rule.atomIndex1 = static_cast<std::uint32_t>(leadingInteger(line.substr(5, 2)));
        rule.atomName1 = trimmed(line.substr(9, 3));
        rule.residueName2 = line.substr(14, 3);
        rule.atomIndex2 = static_cast<std::uint32_t>(leadingInteger(line.substr(19, 2)));
        rule.atomName2 = trimmed(line.substr(23, 3));
        rule.maxDistance = std::strtod(line.substr(28, 5).c_str(), nullptr);
        rule.contactType = static_cast<int>(leadingInteger(line.substr(35, 4)));
        addRule(rules, rule);
        if (rule.residueName1 != rule.residueName2 || rule.atomName1 != rule.atomName2) {
            addRule(rules, mirrored(rule));
        }
    }
}

bool findRuleTypes(const sStructure& structure, const sResidue& a, const sResidue& b,
                   const tContactRules& rules, std::set<int>& types) {
    const auto rows = rules.find(a.name + "_" + b.name);
    if (rows == rules.end()) {
        return false;
    }
    const auto atomsA = structure.atomsOf(a);
    const auto atomsB = structure.atomsOf(b);
    bool isFound = false;
    for (const sContactRule& rule : rows->second) {
        if (rule.atomIndex1 >= atomsA.size() || rule.atomIndex2 >= atomsB.size()) {
            continue;
        }
        if (rule.atomName1 == "ALL" && rule.atomName2 == "ALL") {
            for (const sAtom& atomA : atomsA) {
                for (const sAtom& atomB : atomsB) {
                    if (centreDistance(atomA, atomB) <= rule.maxDistance) {
                        types.insert(rule.contactType);
                        isFound = true;
                    }
                }
            }
            continue;
        }
        const sAtom& atomA = atomsA[rule.atomIndex1];
        const sAtom& atomB = atomsB[rule.atomIndex2];
        if (atomA.name == rule.atomName1 && atomB.name == rule.atomName2 &&
            centreDistance(atomA, atomB) <= rule.maxDistance) {
            types.insert(rule.contactType);
            isFound = true;
        }
    }
    return isFound;
}

namespace {

bool isWithinRange(const sStructure& structure, const sResidue& a, const sResidue& b,
                   double range) {
    for (const sAtom& atomA : structure.atomsOf(a)) {
        for (const sAtom& atomB : structure.atomsOf(b)) {
            if (isInRangeByCentre(atomA, atomB, range)) {
                return true;
            }
        }
    }
    return false;
}

bool isWithinRangeFromRadius(const sStructure& structure, const sResidue& a, const sResidue& b,
                             double value) {
    for (const sAtom& atomA : structure.atomsOf(a)) {
        for (const sAtom& atomB : structure.atomsOf(b)) {
            if (doSpheresIntersect(atomA, atomB, value * 0.5)) {
                return true;
            }
        }
    }
    return false;
}

bool areInContact(const sStructure& structure, const sResidue& a, const sResidue& b,
                  eCriterion criterion, double searchValue, double vdwThreshold,
                  const tContactRules& rules, std::set<int>& types) {
    if (criterion == eCriterion::maximumDistance) {
        return isWithinRange(structure, a, b, searchValue);
    }
    if (criterion == eCriterion::prism) {
        return isWithinRangeFromRadius(structure, a, b, searchValue);
    }
    if (criterion == eCriterion::vorda) {
        findRuleTypes(structure, a, b, rules, types);
        if (isWithinRangeFromRadius(structure, a, b, vdwThreshold)) {
            types.insert(4);
        }
        return !types.empty();
    }
    return false;
}

void addContact(std::vector<sContact>& contacts, const sChain& chainA, const sResidue& a,
                const sChain& chainB, const sResidue& b, const std::set<int>& types,
                eCriterion criterion) {
    contacts.push_back(
        {chainA.chainId, a.number, a.name, chainB.chainId, b.number, b.name, types, criterion});
    contacts.push_back(
        {chainB.chainId, b.number, b.name, chainA.chainId, a.number, a.name, types, criterion});
}

bool takesPart(const sResidue& residue) {
    return residue.atomCount >= 2 && residue.type != 0;
}

} // namespace

std::vector<sContact> resolveContacts(sStructure& structure, eCriterion criterion,
                                      double searchValue, double vdwThreshold,
                                      const tContactRules& rules) {
    std::vector<sContact> contacts;
    const double range = searchValue + representativeMargin;
    for (std::size_t i = 0; i < structure.chains.size(); ++i) {
        for (sResidue& a : structure.residuesOf(structure.chains[i])) {
            for (std::size_t j = i + 1; takesPart(a) && j < structure.chains.size(); ++j) {
                for (sResidue& b : structure.residuesOf(structure.chains[j])) {
                    if (!takesPart(b) || !isInRangeByCentre(structure.atomsOf(a)[1],
                                                            structure.atomsOf(b)[1], range)) {
                        continue;
                    }
                    std::set<int> types;
                    if (areInContact(structure, a, b, criterion, searchValue, vdwThreshold, rules,
                                     types)) {
                        addContact(contacts, structure.chains[i], a, structure.chains[j], b, types,
                                   criterion);
                        a.isBinding = true;
                        b.isBinding = true;
                    }
                }
            }
        }
    }
    std::stable_sort(contacts.begin(), contacts.end(), isLess);
    return contacts;
}

void resolveAreaChanges(sStructure& structure, double deltaAsa, double probeRadius, double zSlice) {
    sStructure copy = structure;
    for (sChain& chain : copy.chains) {
        setChainAloneAreas(copy, chain, probeRadius, zSlice);
        for (std::size_t k = 0; k < chain.residueCount; ++k) {
            const double unbound = copy.residues[chain.firstResidue + k].areas.total;
            sResidue& residue = structure.residues[chain.firstResidue + k];
            if (std::fabs(unbound - residue.areas.total) > deltaAsa && residue.type != 0) {
                residue.isBinding = true;
            }
        }
    }
}

std::vector<sContact> analyseInteractions(sStructure& structure, const sVorSettings& settings) {
    switch (settings.criterion) {
    case eCriterion::maximumDistance:
    case eCriterion::prism:
        return resolveContacts(structure, settings.criterion, settings.threshold, 0.0, {});
    case eCriterion::dovreth:
        setBoundAreas(structure, settings.probeRadius, settings.zSlice);
        resolveAreaChanges(structure, settings.threshold, settings.probeRadius, settings.zSlice);
        return {};
    case eCriterion::vorda:
        return resolveContacts(structure, settings.criterion, vordaSearchValue, vordaVdwThreshold,
                               settings.rules);
    case eCriterion::none:
        break;
    }
    return {};
}

namespace {

std::string criterionText(eCriterion criterion) {
    switch (criterion) {
    case eCriterion::maximumDistance:
        return "MaximumDistance";
    case eCriterion::prism:
        return "PRISM";
    case eCriterion::dovreth:
        return "Dovreth";
    case eCriterion::vorda:
        return "VORDA";
    case eCriterion::none:
        break;
    }
    return "";
}

std::string typeText(int type) {
    switch (type) {
    case 1:
        return "Hydrophobic";
    case 2:
        return "Polar";
    case 3:
        return "Ionic";
    case 4:
        return "vanDerWaals";
    default:
        return "Undefined";
    }
}

// One report text; every function adds to the stream.
class cReport {
  public:
    cReport(const sStructure& analysed, const std::vector<sContact>& found,
            const sVorSettings& runSettings)
        : structure(analysed), contacts(found), settings(runSettings) {
        out.imbue(std::locale::classic());
    }

    std::string contactsXml();
    std::string bindingResiduesXml();
    std::string bindingStatusXml();
    std::string contactsTable();
    std::string bindingResiduesTable();
    std::string bindingStatusTable();

  private:
    void start(int indent, const std::string& name) {
        out << std::string(static_cast<std::size_t>(indent), ' ') << "<" << name << ">\n";
    }
    void end(int indent, const std::string& name) {
        out << std::string(static_cast<std::size_t>(indent), ' ') << "</" << name << ">\n";
    }
    template <typename tValue>
    void leaf(int indent, const std::string& name, const tValue& value) {
        out << std::string(static_cast<std::size_t>(indent), ' ') << "<" << name << ">" << value
            << "</" << name << ">\n";
    }
    void xmlHeader(const std::string& rootName);
    void contactXml(const sContact& contact);
    void residueXml(const sChain& chain, const sResidue& residue);
    void tableHeader();

    const sStructure& structure;
    const std::vector<sContact>& contacts;
    const sVorSettings& settings;
    std::ostringstream out;
};

void cReport::xmlHeader(const std::string& rootName) {
    start(0, "?xml version=\"1.0\" encoding=\"us-ascii\"?");
    start(0, rootName + " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"" +
                 " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"" +
                 " xmlns=\"http://kelmo.example/krb/namespaces/PDB\"");
    leaf(2, "pdb_id", structure.name);
    leaf(2, "radii_filename", settings.radiiFileName);
    if (settings.criterion == eCriterion::prism) {
        leaf(2, "PRISM_threshold", settings.threshold);
    } else if (settings.criterion == eCriterion::dovreth) {
        leaf(2, "TH_delta_asa", settings.threshold);
        leaf(2, "TH_z_slice", settings.zSlice);
        leaf(2, "TH_r_solvent", settings.probeRadius);
    } else if (settings.criterion == eCriterion::maximumDistance) {
        leaf(2, "MD_threshold", settings.threshold);
    }
}

void cReport::contactXml(const sContact& contact) {
    start(4, "contact");
    leaf(6, "interaction_criterion", criterionText(contact.criterion));
    leaf(6, "chain_id_1", contact.chain1);
    leaf(6, "residue_id_1", contact.residueNumber1);
    leaf(6, "residue_name_1", contact.residueName1);
    leaf(6, "chain_id_2", contact.chain2);
    leaf(6, "residue_id_2", contact.residueNumber2);
    leaf(6, "residue_name_2", contact.residueName2);
    if (!contact.types.empty()) {
        start(6, "contact_types");
        for (const int type : contact.types) {
            leaf(8, "contact_type", typeText(type));
        }
        end(6, "contact_types");
    }
    end(4, "contact");
}

std::string cReport::contactsXml() {
    xmlHeader("peptideResidueContacts");
    start(2, "contacts");
    for (const sContact& contact : contacts) {
        contactXml(contact);
    }
    end(2, "contacts");
    end(0, "peptideResidueContacts");
    return out.str();
}

void cReport::residueXml(const sChain& chain, const sResidue& residue) {
    leaf(6, "interaction_criterion", criterionText(settings.criterion));
    leaf(6, "chain_id", chain.chainId);
    leaf(6, "residue_id", residue.number);
    leaf(6, "residue_name", residue.name);
}

std::string cReport::bindingResiduesXml() {
    xmlHeader("peptideBindingResidues");
    start(2, "binding_residues");
    for (const sChain& chain : structure.chains) {
        for (const sResidue& residue : structure.residuesOf(chain)) {
            if (residue.isBinding) {
                start(4, "binding_residue");
                residueXml(chain, residue);
                end(4, "binding_residue");
            }
        }
    }
    end(2, "binding_residues");
    end(0, "peptideBindingResidues");
    return out.str();
}

std::string cReport::bindingStatusXml() {
    xmlHeader("peptideResidueBindingStatus");
    start(2, "residues");
    for (const sChain& chain : structure.chains) {
        for (const sResidue& residue : structure.residuesOf(chain)) {
            start(4, "residue");
            residueXml(chain, residue);
            leaf(6, "binding_status", residue.isBinding);
            end(4, "residue");
        }
    }
    end(2, "residues");
    end(0, "peptideResidueBindingStatus");
    return out.str();
}

void cReport::tableHeader() {
    out << "pdb_id: " << structure.name << "\n";
    out << "radii_filename: " << settings.radiiFileName << "\n";
    if (settings.criterion == eCriterion::prism) {
        out << "PRISM_threshold: " << settings.threshold << "\n";
    } else if (settings.criterion == eCriterion::dovreth) {
        out << "TH_delta_asa: " << settings.threshold << "\n";
        out << "TH_z_slice: " << settings.zSlice << "\n";
        out << "TH_r_solvent: " << settings.probeRadius << "\n";
    } else if (settings.criterion == eCriterion::maximumDistance) {
        out << "MD_threshold: " << settings.threshold << "\n";
    }
}

std::string cReport::contactsTable() {
    tableHeader();
    for (const sContact& contact : contacts) {
        out << contact.chain1 << std::setw(6) << contact.residueNumber1 << std::setw(5)
            << contact.residueName1 << std::setw(3) << contact.chain2 << std::setw(6)
            << contact.residueNumber2 << std::setw(5) << contact.residueName2 << std::setw(20)
            << criterionText(contact.criterion);
        for (const int type : contact.types) {
            out << std::setw(18) << typeText(type);
        }
        out << "\n";
    }
    return out.str();
}

std::string cReport::bindingResiduesTable() {
    tableHeader();
    for (const sChain& chain : structure.chains) {
        for (const sResidue& residue : structure.residuesOf(chain)) {
            if (residue.isBinding) {
                out << chain.chainId << std::setw(6) << residue.number << std::setw(5)
                    << residue.name << std::setw(18) << criterionText(settings.criterion) << "\n";
            }
        }
    }
    return out.str();
}

std::string cReport::bindingStatusTable() {
    tableHeader();
    for (const sChain& chain : structure.chains) {
        for (const sResidue& residue : structure.residuesOf(chain)) {
            out << chain.chainId << std::setw(6) << residue.number << std::setw(5) << residue.name
                << std::setw(3) << residue.isBinding << std::setw(18)
                << criterionText(settings.criterion) << "\n";
        }
    }
    return out.str();
}

} // namespace

std::map<std::string, std::string> vorReports(const std::string& pdbText,
                                              const sVorSettings& settings) {
    std::map<std::string, std::string> reports;
    std::set<std::string> missing;
    int errorLine = 0;
    sStructure structure = readStructure(pdbText, settings.radii, missing, errorLine);
    if (errorLine != 0) {
        return reports;
    }
    const std::vector<sContact> contacts = analyseInteractions(structure, settings);
    using tWriter = std::string (cReport::*)();
    const auto add = [&](bool isWanted, const std::string& suffix, tWriter writer) {
        if (isWanted) {
            cReport report(structure, contacts, settings);
            reports[suffix] = (report.*writer)();
        }
    };
    const bool xml = settings.xmlOutput;
    const bool table = settings.tableOutput;
    add(xml && settings.writeContacts, "_contacts.xml", &cReport::contactsXml);
    add(xml && settings.writeBindingResidues, "_binding_residues.xml",
        &cReport::bindingResiduesXml);
    add(xml && settings.writeBindingStatus, "_binding_status.xml", &cReport::bindingStatusXml);
    add(table && settings.writeContacts, "_contacts.tbl", &cReport::contactsTable);
    add(table && settings.writeBindingResidues, "_binding_residues.tbl",
        &cReport::bindingResiduesTable);
    add(table && settings.writeBindingStatus, "_binding_status.tbl", &cReport::bindingStatusTable);
    return reports;
}

} // namespace reference

} // namespace kelmo
