// Fuzzes the mmCIF reader: any bytes are refused with a reason, or give sound structures, as they
// are and by every kind of preparation, of models and of assembly. A text that is handed over in
// pieces gives the same.
#include "input/mmcif_text.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/structure_checks.h"
#include "tests/support/shipped_inputs.h"

#include <algorithm>
#include <sstream>
#include <streambuf>

namespace kelmo {

namespace {

/// Hands out a few bytes at a time.
class cPieces : public std::streambuf {
  public:
    explicit cPieces(const std::string& wholeText) : text(wholeText) {}

  protected:
    int_type underflow() override {
        constexpr std::size_t pieceLength = 7;
        if (begin >= text.size()) {
            return traits_type::eof();
        }
        const std::size_t length = std::min(pieceLength, text.size() - begin);
        setg(text.data() + begin, text.data() + begin, text.data() + begin + length);
        begin += length;
        return traits_type::to_int_type(*gptr());
    }

  private:
    std::string text;
    std::size_t begin = 0;
};

sReadResult readWith(const std::string& text, const sReadOptions& options) {
    std::istringstream in(text);
    sReadResult result = readMmcifText(in, shippedTables().radii, options);
    requireSound(result);
    require(!summaryLine(result.summary, "file").starts_with("In file: ."), "a whole summary");
    return result;
}

std::size_t atomCountOf(const sReadResult& result) {
    std::size_t count = 0;
    for (const cPdbPeptide& structure : result.structures) {
        count += structure.atoms.size();
    }
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text = textOf(bytes, size);
    const sReadResult asItIs = readWith(text, {});
    cPieces pieces(text);
    std::istream in(&pieces);
    const sReadResult inPieces = readMmcifText(in, shippedTables().radii, {});
    require(inPieces.outcome == asItIs.outcome && inPieces.reason == asItIs.reason,
            "the same outcome in pieces");
    requireSameStructures(inPieces, asItIs);

    readWith(text, {.preparation = standardPreparation});
    readWith(text, {.preparation = standardPreparation, .assembly = "1"});
    const sReadResult models = readWith(text, {.models = eModels::each});
    const sReadResult chains = readWith(text, {.models = eModels::chains});
    if (models.outcome == eReadOutcome::read && chains.outcome == eReadOutcome::read) {
        require(atomCountOf(models) == atomCountOf(chains), "the atoms of all models");
        require(asItIs.outcome != eReadOutcome::read || atomCountOf(asItIs) <= atomCountOf(models),
                "the atoms of the first model among them");
    }
    return 0;
}

} // namespace kelmo
