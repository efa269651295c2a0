// Reading PDB text into a structure, several runs of its lines side by side.
#include "base/parallel_work.h"
#include "base/stop_request.h"
#include "base/string_operation.h"
#include "input/pdb_lines.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"

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

/// Puts runs of lines together to a structure. Residues and chains are recorded by their counts;
/// the structure links them to its lists when everything is read and no list grows any more.
class cPdbAssembly {
  public:
    cPdbAssembly(cPdbPeptide& target, std::set<std::string>& missing)
        : peptide(target), missingRadii(missing) {
        createAminoAcidNamesSet(aminoAcids);
        createNucleicAcidNamesSet(nucleicAcids);
    }

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
            takeBreak(place, firstAtom + place.atom, lines.atoms[place.atom].atomName);
        }
        for (; header != lines.headers.cend(); ++header) {
            peptide.name = header->entryCode;
        }
        moveAppend(peptide.atoms, lines.atoms);
        moveAppend(peptide.heteroAtoms, lines.heteroAtoms);
    }

    /// After an END record or a line in error.
    bool hasEnded() const { return end != sPdbLines::eEnd::none; }

    /// Closes the last residue and chain. Returns 0, or the number of the line in error, and then
    /// closes nothing.
    int finish() {
        if (end == sPdbLines::eEnd::badLine) {
            return static_cast<int>(
                std::min<std::int64_t>(lineCount, std::numeric_limits<int>::max()));
        }
        if (!peptide.atoms.empty()) {
            closeResidue(peptide.atoms.size());
            closeChain(peptide.atoms.size());
        }
        return 0;
    }

  private:
    static void moveAppend(std::vector<cResidueAtom>& to, std::vector<cResidueAtom>& from) {
        to.insert(to.end(), std::make_move_iterator(from.begin()),
                  std::make_move_iterator(from.end()));
    }

    /// `atom` counts from the beginning of the file.
    void takeBreak(const sPdbLines::sBreak& place, std::size_t atom, std::string& atomName) {
        const std::string chainId(1, place.chainId);
        const bool isNewChain = !equalIgnoringCase(chainId, currentChainId);
        if (atomName == "N" && isNewChain) {
            atomName = "NXT";
        }
        if (atom == 0) {
            beginResidue(place);
            currentChainId = chainId;
            return;
        }
        if (isNewChain || !equalIgnoringCase(place.residueNumber, currentResidueNumber)) {
            closeResidue(atom);
            beginResidue(place);
        }
        if (isNewChain) {
            closeChain(atom);
            currentChainId = chainId;
        }
    }

    void beginResidue(const sPdbLines::sBreak& place) {
        currentResidueName = place.residueName;
        currentResidueNumber = place.residueNumber;
    }

    void closeResidue(std::size_t endAtom) {
        eResidueType type = eResidueType::other;
        if (nucleicAcids.contains(currentResidueName)) {
            type = eResidueType::nucleicAcid;
        } else if (aminoAcids.contains(currentResidueName)) {
            type = eResidueType::aminoAcid;
        }
        peptide.residues.emplace_back(currentResidueName, currentResidueNumber, nullptr,
                                      static_cast<unsigned>(endAtom - residueBegin), type);
        residueBegin = endAtom;
    }

    void closeChain(std::size_t endAtom) {
        cProteinChain chain;
        chain.peptideName = peptide.name;
        chain.chainId = currentChainId == " " ? "*" : currentChainId;
        chain.residueCount = static_cast<unsigned>(peptide.residues.size() - chainFirstResidue);
        chain.atomCount = static_cast<unsigned>(endAtom - chainBegin);
        peptide.chains.push_back(std::move(chain));
        chainFirstResidue = peptide.residues.size();
        chainBegin = endAtom;
    }

    cPdbPeptide& peptide;
    std::set<std::string>& missingRadii;
    std::set<std::string> aminoAcids;
    std::set<std::string> nucleicAcids;
    std::string currentResidueName;
    std::string currentResidueNumber;
    std::string currentChainId;
    sPdbLines::eEnd end = sPdbLines::eEnd::none;
    std::int64_t lineCount = 0;
    std::size_t residueBegin = 0;
    std::size_t chainBegin = 0;
    std::size_t chainFirstResidue = 0;
};

/// Hands a stream out in runs of whole lines. Of a line that is longer than a run only the columns
/// that mean something are kept, so that a file without line ends needs no memory.
class cLineRuns {
  public:
    cLineRuns(std::istream& source, const cStopRequest* stopRequest)
        : in(source), request(stopRequest) {}

    /// The next run; empty at the end of the stream.
    std::string next() {
        std::string run = std::exchange(begun, {});
        while (in) {
            if (request != nullptr) {
                request->check(); // a line may be gigabytes long
            }
            const std::size_t searched = run.size();
            run.resize(searched + usualLength);
            in.read(run.data() + searched, usualLength);
            run.resize(searched + static_cast<std::size_t>(in.gcount()));
            const std::size_t lineEnd = run.rfind('\n');
            if (in && lineEnd != std::string::npos) {
                begun = run.substr(lineEnd + 1);
                run.resize(lineEnd + 1);
                break;
            }
            if (in.bad()) { // what the error cut off is no line
                run.resize(lineEnd == std::string::npos ? 0 : lineEnd + 1);
            } else if (lineEnd == std::string::npos) {
                run.resize(std::min(run.size(), columnsKept));
            }
        }
        return run;
    }

  private:
    static constexpr std::streamsize usualLength = 1 << 15;
    static constexpr std::size_t columnsKept = 128; // the last that is read is the 66th
    std::istream& in;
    const cStopRequest* request;
    std::string begun; // the line that the last run broke off in
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
void readAll(std::istream& in, const std::map<std::string, double>& radii, cPdbAssembly& assembly) {
    constexpr std::size_t runsUnderWay = 16;
    cLineRuns runs(in, cStopRequest::current());
    std::atomic<bool> hasEnded = false;
    int error = errno;
    const auto take = [&](sRun& run) {
        if (hasEnded) {
            return false;
        }
        errno = error;
        run.text = runs.next();
        error = errno;
        return !run.text.empty();
    };
    const auto parse = [&](sRun& run) { run.lines = parsePdbLines(run.text, radii); };
    workInOrder<sRun>(runsUnderWay, take, parse, [&](sRun& run) {
        assembly.append(std::move(run.lines));
        hasEnded = assembly.hasEnded();
    });
    if (hasEnded) {
        // How far the stream was read beyond the end is a matter of chance, and so is whether that
        // succeeded.
        in.clear(in.rdstate() & ~std::ios::badbit);
    }
    errno = error; // why the stream is bad, if it is
}

} // namespace

int cPdbPeptide::loadFromStream(std::istream& in, std::map<std::string, double> radii,
                                std::set<std::string>& missingRadii) {
    reserveFor(in, *this);
    cPdbAssembly assembly(*this, missingRadii);
    readAll(in, radii, assembly);
    if (const int badLine = assembly.finish(); badLine != 0) {
        rebuildLinks();
        return badLine;
    }
    rebuildLinks();
    for (cProteinChain& chain : chains) {
        setMinMaxPoints(chain.atoms, chain.atomCount, &chain.maxPoint, &chain.minPoint);
    }
    if (!atoms.empty()) {
        setMinMaxPoints(atoms.data(), static_cast<unsigned>(atoms.size()), &maxPoint, &minPoint);
    }
    totalAsa = sideChainAsa = backboneAsa = polarAsa = nonPolarAsa = 0.0;
    return 0;
}

} // namespace kelmo
