#include "results/file_identity.h"

#include "base/read_descriptor.h"

#include <array>
#include <string_view>
#include <vector>

// The functions that work on a record of the caller are all of the library that a program takes
// from its archive: a few kilobytes that cost no time at the start. Those that the library wants
// instead would load all of it.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/sha.h>

#include <sys/stat.h>

namespace kelmo {

namespace {

class cSha256 {
  public:
    cSha256() { SHA256_Init(&context); }
    void add(const char* bytes, std::size_t count) { SHA256_Update(&context, bytes, count); }
    std::string digits() {
        std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
        SHA256_Final(digest.data(), &context);
        constexpr std::string_view hexadecimal = "0123456789abcdef";
        std::string text;
        for (const unsigned char byte : digest) {
            text += hexadecimal[byte >> 4U];
            text += hexadecimal[byte & 15U];
        }
        return text;
    }

  private:
    SHA256_CTX context{};
};

std::int64_t nanoseconds(const timespec& time) {
    constexpr std::int64_t perSecond = 1'000'000'000;
    return time.tv_sec * perSecond + time.tv_nsec;
}

/// The rest of the file; empty when it cannot be read to its end.
std::string sha256OfRest(const cReadDescriptor& file) {
    cSha256 sum;
    constexpr std::size_t blockSize = 1U << 18U;
    thread_local std::vector<char> block(blockSize);
    for (;;) {
        const ssize_t count = file.readInto(block);
        if (count <= 0) {
            return count == 0 ? sum.digits() : std::string();
        }
        sum.add(block.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

std::optional<sFileIdentity> identityOf(const std::string& path) {
    if (path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    struct stat status {};
    const cReadDescriptor file(path);
    if (file.number < 0 || ::fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    sFileIdentity identity{static_cast<std::uint64_t>(status.st_size), nanoseconds(status.st_mtim),
                           nanoseconds(status.st_ctim), sha256OfRest(file)};
    if (identity.sha256.empty()) {
        return std::nullopt;
    }
    return identity;
}

std::string sha256Of(std::string_view bytes) {
    cSha256 sum;
    sum.add(bytes.data(), bytes.size());
    return sum.digits();
}

} // namespace kelmo
