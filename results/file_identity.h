// What a file was when it was looked at: its size, its times and the SHA-256 of its content.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelmo {

/// Two files, or one file at two times, with the same identity hold the same bytes.
struct sFileIdentity {
    std::uint64_t size = 0;    ///< bytes
    std::int64_t modified = 0; ///< time of the last change of the content, ns since 1970
    std::int64_t changed = 0;  ///< time of the last change of the file's entry, ns since 1970
    std::string sha256 = {};   ///< of the content, 64 hexadecimal digits in lower case

    /// Whether two files are the same in all four.
    bool operator==(const sFileIdentity&) const = default;
};

/// Reads a regular file from beginning to end; nothing when that cannot be done. The path is bytes
/// of any encoding.
std::optional<sFileIdentity> identityOf(const std::string& path);

/// The SHA-256 of some bytes, 64 hexadecimal digits in lower case.
std::string sha256Of(std::string_view bytes);

} // namespace kelmo
