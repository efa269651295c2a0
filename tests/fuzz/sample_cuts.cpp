#include "tests/fuzz/sample_cuts.h"

#include "tests/support/pdb_lines.h"
#include "tests/support/test_files.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <sstream>

namespace kelmo {

namespace {

struct sRecord {
    std::string line; ///< with its line feed
    char chain;
    tPosition place;

    double squaredDistance(const sRecord& other) const {
        double sum = 0.0;
        for (std::size_t i = 0; i < place.size(); ++i) {
            sum += (place[i] - other.place[i]) * (place[i] - other.place[i]);
        }
        return sum;
    }
};

struct sSample {
    std::string header;
    std::vector<sRecord> records;
    std::vector<std::size_t> atoms; ///< the records that are ATOM lines
};

sSample readSample(const std::string& name) {
    sSample sample;
    std::istringstream in(sampleText(name));
    for (std::string line; std::getline(in, line) && !line.starts_with("ENDMDL");) {
        line += '\n';
        if (line.starts_with("HEADER")) {
            sample.header = line;
        } else if (line.starts_with("ATOM") || line.starts_with("HETATM")) {
            if (line.starts_with("ATOM")) {
                sample.atoms.push_back(sample.records.size());
            }
            sample.records.push_back({line, line.at(21), positionIn(line)});
        }
    }
    return sample;
}

const sSample& sampleNamed(const std::string& name) {
    static std::map<std::string, sSample> samples;
    const auto known = samples.find(name);
    return known != samples.end() ? known->second
                                  : samples.emplace(name, readSample(name)).first->second;
}

} // namespace

std::string sphereCut(const std::string& sample, std::size_t atom, double radius) {
    const sSample& whole = sampleNamed(sample);
    const sRecord& centre = whole.records[whole.atoms[atom % whole.atoms.size()]];
    std::string text = whole.header;
    for (const sRecord& record : whole.records) {
        if (record.squaredDistance(centre) <= radius * radius) {
            text += record.line;
        }
    }
    return text;
}

std::string interfaceCut(const std::string& sample, double radius) {
    constexpr double touchingSquared = 16.0;
    const sSample& whole = sampleNamed(sample);
    for (std::size_t i = 0; i < whole.atoms.size(); ++i) {
        const sRecord& atom = whole.records[whole.atoms[i]];
        const bool touches =
            std::any_of(whole.atoms.begin(), whole.atoms.end(), [&](std::size_t other) {
                return whole.records[other].chain != atom.chain &&
                       whole.records[other].squaredDistance(atom) <= touchingSquared;
            });
        if (touches) {
            return sphereCut(sample, i, radius);
        }
    }
    return sphereCut(sample, 0, radius);
}

std::vector<std::string> sampleCuts(std::size_t count, std::size_t atoms) {
    constexpr std::array<const char*, 3> samples{"1a0q", "2hhb", "1ubq"};

    constexpr std::array<double, 4> radii{4.0, 7.0, 10.0, 14.0};
    std::vector<std::string> cuts;
    for (std::size_t i = 0; cuts.size() < count; ++i) {
        const char* const sample = samples[i % samples.size()];
        const double radius = radii[i / samples.size() % radii.size()];
        std::string cut = i < samples.size() * radii.size() ? interfaceCut(sample, radius)
                                                            : sphereCut(sample, i * 97, radius);
        std::size_t end = 0;
        for (std::size_t lines = 0; lines <= atoms && end < cut.size(); ++lines) {
            end = cut.find('\n', end) + 1;
        }
        cut.resize(end);
        cuts.push_back(cut + "END\n");
    }
    return cuts;
}

} // namespace kelmo
