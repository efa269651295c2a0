#include "analysis/attributes.h"

#include "base/in_parallel.h"

#include <utility>

namespace kelmo {

namespace {

void calculateArea(cPdbPeptide& structure, eState state, const sCalculationInput& input) {
    const double probeRadius = input.settings.number("r_solvent");
    const double zSlice = input.settings.number("z_slice");
    const eAsaForm form = input.settings.asaForm();
    if (state == eState::bound) {
        structure.setAccessibleSurfaceArea(probeRadius, zSlice, form);
    } else {
        structure.setAccessibleSurfaceAreaUnbound(probeRadius, zSlice, form);
    }
}

void calculateRelativeArea(cPdbPeptide& structure, eState state, const sCalculationInput& input) {
    const auto& standards = input.tables.standardAreas;
    if (state == eState::bound) {
        structure.setRelativeAccessibleSurfaceArea(standards);
    } else {
        inParallel(structure.chains.size(), 1, [&](std::size_t i) {
            structure.chains[i].setRelativeAccessibleSurfaceArea(standards);
        });
    }
}

void calculateDepth(cPdbPeptide& structure, eState state, const sCalculationInput&) {
    if (state == eState::bound) {
        structure.setDepthIndex();
    } else {
        structure.setDepthIndexUnbound();
    }
}

void calculateProtrusion(cPdbPeptide& structure, eState state, const sCalculationInput& input) {
    const double sphereRadius = input.settings.number("cx_threshold");
    const double atomVolume = input.settings.number("cx_volume");
    if (state == eState::bound) {
        structure.setProtrusionIndex(sphereRadius, atomVolume);
    } else {
        structure.setProtrusionIndexUnbound(sphereRadius, atomVolume);
    }
}

void attachHydrophobicity(cPdbPeptide& structure, eState, const sCalculationInput& input) {
    structure.setHydrophobicity(input.tables.hydrophobicity);
}

/// The value of a residue, chain or structure that a member holds.
template <auto member, typename Owner>
double valueOf(const Owner& owner) {
    return owner.*member;
}

/// A column that residues alone have.
template <auto member>
sColumn residueColumn(const char* name, const char* unit, const char* title, const char* xmlName,
                      int xmlPlace) {
    return {.name = name,
            .unit = unit,
            .title = title,
            .xmlName = xmlName,
            .xmlPlace = xmlPlace,
            .ofResidue = valueOf<member, cChainResidue>};
}

/// A column that chains and the structure have too.
template <auto ofResidue, auto ofChain, auto ofStructure>
sColumn areaColumn(const char* name, const char* title, const char* xmlName, int xmlPlace,
                   const char* chainTitle, const char* structureLabel) {
    sColumn column = residueColumn<ofResidue>(name, "Å²", title, xmlName, xmlPlace);
    column.ofChain = valueOf<ofChain, cProteinChain>;
    column.ofStructure = valueOf<ofStructure, cPdbPeptide>;
    column.chainTitle = chainTitle;
    column.structureLabel = structureLabel;
    return column;
}

// In XML the non-polar area stands before the polar one, unlike in tables.

std::vector<sColumn> areaColumns() {
    using r = cChainResidue;
    using c = cProteinChain;
    using p = cPdbPeptide;
    return {
        areaColumn<&r::totalAsa, &c::totalAsa, &p::totalAsa>("asa_total", "total ASA|", "total", 0,
                                                             "ch total ASA|", "total ASA: "),
        areaColumn<&r::backboneAsa, &c::backboneAsa, &p::backboneAsa>(
            "asa_backbone", "b-bone ASA|", "backbone", 1, " ch b-bone ASA|", "back-bone ASA: "),
        areaColumn<&r::sideChainAsa, &c::sideChainAsa, &p::sideChainAsa>(
            "asa_side_chain", "s-chain ASA|", "side_chain", 2, "ch s-chain ASA|",
            "side-chain ASA: "),
        areaColumn<&r::polarAsa, &c::polarAsa, &p::polarAsa>("asa_polar", "polar ASA|", "polar", 4,
                                                             "ch polar ASA|", "polar ASA: "),
        areaColumn<&r::nonPolarAsa, &c::nonPolarAsa, &p::nonPolarAsa>(
            "asa_non_polar", "n-polar ASA|", "non_polar", 3, "ch n-polar ASA|", "non-polar ASA: ")};
}

std::vector<sColumn> relativeAreaColumns() {
    using r = cChainResidue;
    return {
        residueColumn<&r::relativeTotalAsa>("rasa_total", "%", "total RASA|", "total", 0),
        residueColumn<&r::relativeBackboneAsa>("rasa_backbone", "%", "b-bone RASA|", "backbone", 1),
        residueColumn<&r::relativeSideChainAsa>("rasa_side_chain", "%", "s-chain RASA|",
                                                "side_chain", 2),
        residueColumn<&r::relativePolarAsa>("rasa_polar", "%", "polar RASA|", "polar", 4),
        residueColumn<&r::relativeNonPolarAsa>("rasa_non_polar", "%", "n-polar RASA|", "non_polar",
                                               3)};
}

std::vector<sColumn> depthColumns() {
    using r = cChainResidue;
    return {residueColumn<&r::averageDepthIndex>("dpx_average", "Å", "average DPX|", "average", 0),
            residueColumn<&r::depthIndexDeviation>("dpx_deviation", "Å", "s_avg DPX|",
                                                   "average_deviation", 1),
            residueColumn<&r::averageSideChainDepthIndex>("dpx_side_chain_average", "Å",
                                                          "s-ch avg DPX|", "average_side_chain", 2),
            residueColumn<&r::sideChainDepthIndexDeviation>("dpx_side_chain_deviation", "Å",
                                                            "s-ch s_avg DPX|",
                                                            "average_side_chain_deviation", 3),
            residueColumn<&r::maxDepthIndex>("dpx_maximum", "Å", "max DPX|", "maximum", 4),
            residueColumn<&r::minDepthIndex>("dpx_minimum", "Å", "min DPX|", "minimum", 5)};
}

std::vector<sColumn> protrusionColumns() {
    using r = cChainResidue;
    return {
        residueColumn<&r::averageProtrusionIndex>("cx_average", "", "average CX|", "average", 0),
        residueColumn<&r::protrusionIndexDeviation>("cx_deviation", "", "s_avg CX|",
                                                    "average_deviation", 1),
        residueColumn<&r::averageSideChainProtrusionIndex>("cx_side_chain_average", "",
                                                           "s-ch avg CX|", "average_side_chain", 2),
        residueColumn<&r::sideChainProtrusionIndexDeviation>(
            "cx_side_chain_deviation", "", "s-ch s_avg CX|", "average_side_chain_deviation", 3),
        residueColumn<&r::maxProtrusionIndex>("cx_maximum", "", "max CX|", "maximum", 4),
        residueColumn<&r::minProtrusionIndex>("cx_minimum", "", "min CX|", "minimum", 5)};
}

/// The flag that switches an attribute on.
sSetting switchSetting(const char* key, const char* title, const char* help) {
    return {.key = key, .byDefault = "1", .title = title, .help = help};
}

sAttribute surfaceArea() {
    sSetting isOn = switchSetting(
        "calc_asa", "Accessible surface area",
        "Area of each residue that the centre of a probe can reach (ASA), in Å². Needed by "
        "relative area and depth, which switch it on.");
    isOn.neededBy = {"calc_rasa", "calc_dpx"};
    sSetting isWritten = switchSetting(
        "write_asa", "Write them into the reports",
        "Put the surface areas into the reports. It can be chosen while relative area or depth is "
        "on, because these may need areas that nobody wants to read.");
    isWritten.dependsOn = "calc_asa";
    sSetting radius = probeRadiusSetting();
    radius.step = 0.1;
    sSetting form = asaFormSetting();
    form.dependsOn = isOn.key;
    return {.settings = {isOn, zSliceSetting(), radius, isWritten, form},
            .writeKey = "write_asa",
            .headers = {{"z_slice", "ASA_zSice", "ASA_zSice: ", true},
                        {"r_solvent", "ASA_rSolvent", "ASA_rSolvent: ", true},
                        {"asa_form", "ASA_form", "ASA_form: ", true, true}},
            .xmlGroup = "asa",
            .columns = areaColumns(),
            .calculate = calculateArea};
}

sAttribute relativeArea() {
    return {.settings = {switchSetting("calc_rasa", "Relative surface area",
                                       "Surface area of each residue in percent of its standard "
                                       "area (RASA). Needs a table of standard areas."),
                         {.key = "standard_asa",
                          .kind = eSettingKind::table,
                          .byDefault = "ala-x-ala.asa",
                          .title = "Standard areas",
                          .help = "Table of the standard surface areas of the amino acids (.asa), "
                                  "in Å². Needed for the relative surface area.",
                          .dependsOn = "calc_rasa",
                          .suffix = ".asa"}},
            .headers = {{"standard_asa", "rasa_filename", "rasa_file: "}},
            .xmlGroup = "relative_asa",
            .columns = relativeAreaColumns(),
            .calculate = calculateRelativeArea};
}

sAttribute depth() {
    return {.settings = {switchSetting("calc_dpx", "Depth index",
                                       "Distance of each buried atom from the nearest atom of the "
                                       "surface (DPX), in Å; 0 at the surface.")},
            .xmlGroup = "depth_index",
            .columns = depthColumns(),
            .calculate = calculateDepth};
}

sAttribute protrusion() {
    return {.settings = {switchSetting("calc_cx", "Protrusion index",
                                       "Free volume around each atom divided by the occupied "
                                       "volume (CX): high where the structure sticks out, near 0 "
                                       "deep inside."),
                         {.key = "cx_threshold",
                          .kind = eSettingKind::number,
                          .byDefault = "10",
                          .minimum = 5.0,
                          .maximum = 15.0,
                          .unit = "Å",
                          .title = "Neighbour sphere radius",
                          .help = "Radius of the sphere around each atom in which its neighbours "
                                  "are counted, in Å. Default 10.0.",
                          .step = 0.5,
                          .decimals = 1,
                          .dependsOn = "calc_cx"},
                         {.key = "cx_volume",
                          .kind = eSettingKind::number,
                          .byDefault = "20.1",
                          .minimum = 15.0,
                          .maximum = 25.0,
                          .unit = "Å³",
                          .title = "Volume per atom",
                          .help = "Volume that one neighbouring atom occupies, in Å³. Default "
                                  "20.1, the mean of heavy atoms in proteins.",
                          .step = 0.1,
                          .decimals = 1,
                          .dependsOn = "calc_cx"}},
            .headers = {{"cx_threshold", "CX_sRadius", "CX_sRadius: ", true},
                        {"cx_volume", "CX_vAtom", "CX_vAtom: ", true}},
            .xmlGroup = "protrusion_index",
            .columns = protrusionColumns(),
            .calculate = calculateProtrusion};
}

sAttribute hydrophobicity() {
    return {.settings = {switchSetting("calc_hydro", "Hydrophobicity",
                                       "Value of each residue on a hydrophobicity scale. Needs a "
                                       "table with the scale."),
                         {.key = "hydro_file",
                          .kind = eSettingKind::table,
                          .byDefault = "kyte-doolittle.hpb",
                          .title = "Hydrophobicity scale",
                          .help = "Table with a hydrophobicity scale (.hpb). Needed for "
                                  "hydrophobicity.",
                          .dependsOn = "calc_hydro",
                          .suffix = ".hpb"}},
            // The label is shared with the radii; readers of these tables tell them apart by
            // position.
            .headers = {{"hydro_file", "hydrophobicity_filename", "radii_file: "}},
            .columns = {residueColumn<&cChainResidue::hydrophobicity>(
                "hydrophobicity", "", "Hydrophobicity|", "hydrophobicity", 0)},
            .dependsOnState = false,
            .calculate = attachHydrophobicity};
}

std::vector<sAttribute>& table() {
    static std::vector<sAttribute> attributes{surfaceArea(), relativeArea(), depth(), protrusion(),
                                              hydrophobicity()};
    return attributes;
}

} // namespace

std::string_view nameOf(eState state) {
    return state == eState::bound ? "bound" : "unbound";
}

const std::vector<sAttribute>& attributes() {
    return table();
}

void addAttribute(sAttribute attribute) {
    for (const sSetting& setting : attribute.settings) {
        addSetting(eModule::kev, setting);
    }
    table().push_back(std::move(attribute));
}

} // namespace kelmo
