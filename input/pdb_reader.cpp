#include "input/pdb_reader.h"

#include "base/parallel_work.h"
#include "base/stop_request.h"
#include "base/string_operation.h"
#include "input/chain_builder.h"
#include "input/line_runs.h"
#include "input/pdb_lines.h"
#include "input/pdb_records.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <istream>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

namespace kelmo {

namespace {

/// Puts runs of lines together to a structure.
class cPdbAssembly {
  public:
    cPdbAssembly(cPdbPeptide& target, std::set<std::string>& missing)
        : peptide(target), missingRadii(missing), chains(target, eIdentity::ignoringCase) {}

    /// Appends what follows in the file, unless it has ended.
    void append(sPdbLines lines) {
        if (hasEnded()) {
            return;
        }
        end = lines.end;
        lineCount += lines.lineCount;
        missingRadii.merge(lines.missingRadii);
        const std::size_t firstAtom = peptide.atoms.size();
        auto header = lines.headers.cbegin();
        for (const sPdbLines::sBreak& place : lines.breaks) {
            for (; header != lines.headers.cend() && header->atom <= place.atom; ++header) {
                peptide.name = header->entryCode;
            }
            chains.place({.chainId = std::string_view(&place.chainId, 1),
                          .residueNumber = place.residueNumber,
                          .residueName = place.residueName,
                          .nameInFile = place.residueName},
                         firstAtom + place.atom, lines.atoms[place.atom].atomName);
        }
        for (; header != lines.headers.cend(); ++header) {
            peptide.name = header->entryCode;
        }
        moveAppend(peptide.atoms, lines.atoms);
        moveAppend(peptide.heteroAtoms, lines.heteroAtoms);
    }

    /// After an END record or a line in error.
    bool hasEnded() const { return end != sPdbLines::eEnd::none; }
    bool hasBadLine() const { return end == sPdbLines::eEnd::badLine; }

    /// Closes the last residue and chain. Returns 0, or the number of the line in error, and then
    /// closes nothing.
    int finish() {
        if (hasBadLine()) {
            peptide.rebuildLinks();
            return static_cast<int>(
                std::min<std::int64_t>(lineCount, std::numeric_limits<int>::max()));
        }
        chains.finish();
        return 0;
    }

  private:
    static void moveAppend(std::vector<cResidueAtom>& to, std::vector<cResidueAtom>& from) {
        to.insert(to.end(), std::make_move_iterator(from.begin()),
                  std::make_move_iterator(from.end()));
    }

    cPdbPeptide& peptide;
    std::set<std::string>& missingRadii;
    cChainBuilder chains;
    sPdbLines::eEnd end = sPdbLines::eEnd::none;
    std::int64_t lineCount = 0;
};

/// Room for as many atoms as a stream of this length can hold, so that the list never has to be
/// moved to a larger place while both copies stand in memory. Room that is never used costs
/// nothing.
void reserveFor(std::istream& in, cPdbPeptide& peptide) {
    constexpr std::size_t shortestAtomLine = 55; // with its line feed
    constexpr std::size_t usualAtoms = 100000;
    constexpr std::size_t usualResidues = 25000;
    std::size_t atoms = usualAtoms;
    in.seekg(0, std::ios::end);
    const std::streamoff length = in.tellg();
    if (length > 0) {
        atoms = static_cast<std::size_t>(length) / shortestAtomLine + 1;
    }
    in.clear();
    in.seekg(0);
    try {
        peptide.atoms.reserve(std::min(atoms, usualAtoms * 100));
    } catch (const std::bad_alloc&) {
        peptide.atoms.reserve(usualAtoms); // the first of many models may still have room
    }
    peptide.residues.reserve(std::min(atoms, usualResidues));
}

struct sRun {
    std::string text;
    sPdbLines lines;
};

/// Reads, parses and puts together at the same time, several runs being parsed side by side. Few
/// runs are under way at a time: of a file of many models only the first is wanted.
void readAll(std::istream& in, const std::map<std::string, double>& radii, cPdbAssembly& assembly,
             cPdbOddities* oddities) {
    constexpr std::size_t runsUnderWay = 16;
    cLineRuns runs(in, cStopRequest::current());
    std::atomic<bool> hasEnded = false;
    std::atomic<bool> isEnough = false;
    int error = errno;
    const auto take = [&](sRun& run) {
        if (isEnough) {
            return false;
        }
        errno = error;
        run.text = runs.next();
        error = errno;
        return !run.text.empty();
    };
    const auto parse = [&](sRun& run) {
        if (!hasEnded) {
            run.lines = parsePdbLines(run.text, radii);
        }
    };
    workInOrder<sRun>(runsUnderWay, take, parse, [&](sRun& run) {
        assembly.append(std::move(run.lines));
        hasEnded = assembly.hasEnded();
        isEnough = hasEnded && (oddities == nullptr || assembly.hasBadLine());
        if (oddities != nullptr) {
            oddities->take(run.text);
        }
    });
    if (hasEnded) {
        // How far the stream was read beyond the end is a matter of chance, and so is whether that
        // succeeded.
        in.clear(in.rdstate() & ~std::ios::badbit);
    }
    errno = error; // why the stream is bad, if it is
}

} // namespace

int readPdbStructure(std::istream& in, const std::map<std::string, double>& radii,
                     cPdbPeptide& structure, std::set<std::string>& missingRadii,
                     cPdbOddities* oddities) {
    reserveFor(in, structure);
    cPdbAssembly assembly(structure, missingRadii);
    readAll(in, radii, assembly, oddities);
    return assembly.finish();
}

int cPdbPeptide::loadFromStream(std::istream& in, std::map<std::string, double> radii,
                                std::set<std::string>& missingRadii) {
    return readPdbStructure(in, radii, *this, missingRadii, nullptr);
}

} // namespace kelmo
