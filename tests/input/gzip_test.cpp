// Compressed files: whole ones read like what they hold, broken ones end in a message.
#include "base/stop_request.h"
#include "input/structure_reader.h"
#include "tests/input/gzip_text.h"
#include "tests/input/mmcif_rows.h"
#include "tests/input/same_structure.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/structure_links.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <system_error>

namespace kelmo {

namespace {

sReadResult readBytes(const std::string& bytes, const sReadOptions& options = {}) {
    std::istringstream in(bytes);
    return readStructure(in, {}, options);
}

std::string unreadableBecause(const std::string& bytes) {
    const sReadResult result = readBytes(bytes);
    EXPECT_EQ(result.outcome, eReadOutcome::unreadable);
    EXPECT_TRUE(result.structures.empty());
    return result.reason;
}

/// Several runs of lines.
std::string manyAtoms() {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += sAtomLine{.x = std::to_string(i) + ".125"}.line();
    }
    return text;
}

TEST(Gzip, CompressedTextIsReadAsTheText) {
    for (const char* name : {"1ubq", "1a0q", "2hhb"}) {
        const std::string text = sampleText(name);
        const sReadResult plain = readBytes(text);
        const sReadResult compressed = readBytes(gzipped(text));
        ASSERT_EQ(compressed.structures.size(), 1U) << name;
        EXPECT_EQ(compressed.missingRadii, plain.missingRadii);
        expectSameStructure(compressed.structures[0], plain.structures.at(0));
        expectLinksIntoOwnLists(compressed.structures[0]);
    }
    EXPECT_EQ(readBytes(gzipped(mmcifText(sMmcifRow{}.line()))).structures.at(0).atoms.size(), 1U);
}

TEST(Gzip, MembersBehindEachOtherAreOneText) {
    const std::string text = manyAtoms();
    for (const std::size_t cut : {0U, 1U, 40U, 55U, 100'000U}) {
        const sReadResult result =
            readBytes(gzipped(text.substr(0, cut)) + gzipped(text.substr(cut)));
        ASSERT_EQ(result.structures.size(), 1U) << cut;
        EXPECT_EQ(result.structures[0].atoms.size(), 3000U) << cut;
    }
}

TEST(Gzip, ZeroBytesMayFollowTheLastMember) {
    const std::string zeros(200'000, '\0');
    EXPECT_EQ(readBytes(gzipped(manyAtoms()) + zeros).structures.at(0).atoms.size(), 3000U);
}

TEST(Gzip, AnythingElseMayNot) {
    for (const std::string behind : {"x", "\x1f", "\x1f\x8b", "ATOM"}) {
        EXPECT_NE(unreadableBecause(gzipped(manyAtoms()) + behind), "") << behind;
    }
}

TEST(Gzip, DataThatBreaksOffIsUnreadableWhereverItDoes) {
    const std::string whole = gzipped(manyAtoms());
    ASSERT_GT(whole.size(), 1000U);
    for (std::size_t size = 2; size < whole.size(); size += size < 40 ? 1 : 97) {
        EXPECT_EQ(unreadableBecause(whole.substr(0, size)), "The compressed data breaks off")
            << size;
    }
    for (std::size_t missing = 1; missing <= 8; ++missing) { // of the check sum and the length
        EXPECT_EQ(unreadableBecause(whole.substr(0, whole.size() - missing)),
                  "The compressed data breaks off")
            << missing;
    }
}

TEST(Gzip, CheckSumAndLengthAreDemanded) {
    const std::string whole = gzipped(manyAtoms());
    for (std::size_t position = whole.size() - 8; position < whole.size(); ++position) {
        std::string damaged = whole;
        damaged[position] = static_cast<char>(damaged[position] ^ 1);
        EXPECT_EQ(unreadableBecause(damaged).find("The compressed data is damaged: incorrect "), 0U)
            << position;
    }
}

TEST(Gzip, CheckSumIsDemandedAlsoBehindTheEndOfTheStructure) {
    std::string damaged = gzipped(manyAtoms() + "END\n" + std::string(500'000, ' '));
    damaged[damaged.size() - 8] = static_cast<char>(damaged[damaged.size() - 8] ^ 1);
    EXPECT_EQ(unreadableBecause(damaged).find("The compressed data is damaged: "), 0U);
}

TEST(Gzip, DamagedDataIsUnreadableOrNotTheSame) {
    const std::string whole = gzipped(sampleText("1ubq"));
    for (std::size_t position = 10; position < whole.size() - 8; position += 501) {
        std::string damaged = whole;
        damaged[position] = static_cast<char>(damaged[position] ^ 0x10);
        EXPECT_NE(readBytes(damaged).outcome, eReadOutcome::read) << position;
    }
}

TEST(Gzip, LineInErrorIsCounted) {
    const sReadResult result = readBytes(gzipped(sAtomLine{}.line() + "ATOM  short\n"));
    EXPECT_EQ(result.outcome, eReadOutcome::badLine);
    EXPECT_EQ(result.badLine, 2);
}

TEST(Gzip, EmptyMemberHasNoAtoms) {
    EXPECT_EQ(readBytes(gzipped({})).outcome, eReadOutcome::noAtoms);
}

TEST(Gzip, ReasonOfASourceThatFailsIsTold) {
    struct cFailing : std::streambuf {
        explicit cFailing(std::string beginning) : bytes(std::move(beginning)) {
            setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
        }
        int_type underflow() override {
            errno = EIO;
            throw std::system_error(EIO, std::generic_category());
        }
        pos_type seekpos(pos_type position, std::ios_base::openmode) override {
            setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
            return position;
        }
        std::string bytes;
    } source(gzipped(manyAtoms()).substr(0, 1000));
    std::istream in(&source);
    const sReadResult result = readStructure(in, {});
    EXPECT_EQ(result.outcome, eReadOutcome::unreadable);
    EXPECT_EQ(result.reason, std::generic_category().message(EIO));
}

/// A source that can only be read once, as a pipe.
class cPipe : public std::streambuf {
  public:
    explicit cPipe(std::string all) : bytes(std::move(all)) {}

  protected:
    int_type underflow() override {
        const std::size_t length = std::min<std::size_t>(1000, bytes.size() - position);
        setg(bytes.data() + position, bytes.data() + position, bytes.data() + position + length);
        position += length;
        return length == 0 ? traits_type::eof() : traits_type::to_int_type(*gptr());
    }

  private:
    std::string bytes;
    std::size_t position = 0;
};

TEST(Pipe, IsReadOnceAndWhole) {
    const std::string pdb = manyAtoms();
    std::string rows;
    for (int i = 0; i < 3000; ++i) {
        rows += sMmcifRow{}.line();
    }
    for (const std::string& bytes :
         {pdb, gzipped(pdb), mmcifText(rows), gzipped(mmcifText(rows))}) {
        cPipe pipe(bytes);
        std::istream in(&pipe);
        const sReadResult result = readStructure(in, {});
        ASSERT_EQ(result.outcome, eReadOutcome::read) << result.reason;
        EXPECT_EQ(result.structures.at(0).atoms.size(), 3000U);
    }
}

TEST(Pipe, ShortTextIsReadWhole) {
    cPipe pipe(sAtomLine{}.line());
    std::istream in(&pipe);
    EXPECT_EQ(readStructure(in, {}).structures.at(0).atoms.size(), 1U);
}

// Bombs

constexpr int bombMebibytes = 1024;

/// One member, so that nothing but the sizes is unusual.
std::string zerosInOneMember() {
    cGzipMember member;
    const std::string zeros(1U << 20U, '\0');
    for (int i = 0; i < bombMebibytes; ++i) {
        member.append(zeros);
    }
    return member.finish();
}

/// A member for each mebibyte, which takes less time to make.
std::string zerosBehind(const std::string& beginning, char zero) {
    std::string bytes = gzipped(beginning);
    const std::string mebibyte = gzipped(std::string(1U << 20U, zero));
    for (int i = 0; i < bombMebibytes; ++i) {
        bytes += mebibyte;
    }
    return bytes;
}

struct sMeasured {
    sReadResult result;
    long memory; ///< KiB
};

sMeasured measure(const std::string& bytes) {
    rusage before{};
    rusage after{};
    ::getrusage(RUSAGE_SELF, &before);
    sReadResult result = readBytes(bytes);
    ::getrusage(RUSAGE_SELF, &after);
    return {std::move(result), after.ru_maxrss - before.ru_maxrss};
}

TEST(Bomb, GigabyteOfZerosHasNoAtomsAndNeedsNoMemory) {
    const sMeasured reading = measure(zerosInOneMember());
    EXPECT_EQ(reading.result.outcome, eReadOutcome::noAtoms);
    EXPECT_LT(reading.memory, 60 * 1024);
}

TEST(Bomb, GigabyteOfZerosBehindAtomsIsALineThatIsLong) {
    const sMeasured reading = measure(zerosBehind(sAtomLine{}.line(), '\0'));
    EXPECT_EQ(reading.result.outcome, eReadOutcome::read);
    EXPECT_LT(reading.memory, 60 * 1024);
}

TEST(Bomb, GigabyteOfZerosOrBlanksInMmcifIsRefused) {
    for (const char zero : {'\0', ' ', '#', 'x'}) {
        const sMeasured reading = measure(zerosBehind(mmcifText(sMmcifRow{}.line()), zero));
        EXPECT_EQ(reading.result.outcome, eReadOutcome::refused) << zero;
        EXPECT_EQ(reading.result.reason.find("Not mmCIF: "), 0U) << reading.result.reason;
        EXPECT_LT(reading.memory, 60 * 1024) << zero;
    }
}

TEST(Bomb, IsGivenUpWhenAStopIsWanted) {
    for (const std::string& beginning :
         {std::string(), sAtomLine{}.line() + "END\n", mmcifText(sMmcifRow{}.line())}) {
        const std::string bytes = zerosBehind(beginning, ' ');
        std::atomic<int> questions = 0;
        const cStopRequest request([&] { return ++questions == 50; });
        EXPECT_THROW(readBytes(bytes), sStopped);
        EXPECT_EQ(questions, 50);
    }
}

} // namespace

} // namespace kelmo
