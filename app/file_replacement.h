// Writing a whole file at once, so that a crash leaves the old one as it was.
#pragma once

#include <QString>

#include <string_view>

namespace kelmo {

enum class eReplacement {
    done,
    notOpened, ///< no file of this name can be made
    notWritten ///< for example a full disk; an older file is as it was, if it was to be replaced
};

/// Writes the bytes to a new file beside the old one, which it replaces when it is whole and on
/// disk, with the old one's permissions. Where the directory takes no new file, the old one is
/// written to itself. Links of this user are followed; one of somebody else is replaced, so that
/// nobody can lead what is written to another file.
eReplacement replaceFile(const QString& path, std::string_view bytes);

} // namespace kelmo
