#include "input/atom_rules.h"

#include "model/addition.h"

#include <functional>
#include <utility>

namespace kelmo {

namespace {

constexpr double missingRadius = 1.6;
constexpr double missingOxtRadius = 1.4;

std::set<std::string> namesOf(void (*insertNames)(std::set<std::string>&)) {
    std::set<std::string> names;
    insertNames(names);
    return names;
}

} // namespace

bool isMetal(std::string_view atomName) {
    return atomName == "CU" || atomName == "FE" || atomName == "MG" || atomName == "ZN";
}

bool isWater(std::string_view residueName) {
    static const std::set<std::string, std::less<>> names{"HOH", "DOD",  "WAT",  "H2O", "TIP",
                                                          "TP3", "TIP3", "TIP4", "SOL"};
    return names.contains(residueName);
}

eResidueType residueTypeOf(const std::string& residueName) {
    static const std::set<std::string> nucleotides = namesOf(createNucleicAcidNamesSet);
    static const std::set<std::string> aminoAcids = namesOf(createAminoAcidNamesSet);
    if (nucleotides.contains(residueName)) {
        return eResidueType::nucleicAcid;
    }
    return aminoAcids.contains(residueName) ? eResidueType::aminoAcid : eResidueType::other;
}

std::string sRadiusKey::text() const {
    std::string text(residueName);
    return text.append("_").append(atomName);
}

double vdwRadius(const std::map<std::string, double>& radii, const sRadiusKey& key,
                 const sRadiusKey& otherKey, std::set<std::string>& missing) {
    std::string text = key.text();
    auto entry = radii.find(text);
    if (entry == radii.end() && otherKey != key) {
        entry = radii.find(otherKey.text());
    }
    if (entry != radii.end()) {
        return entry->second;
    }
    if (key.atomName == "OXT") {
        return missingOxtRadius;
    }
    missing.insert(std::move(text));
    return missingRadius;
}

} // namespace kelmo
