// A directory for the files of one test, whole contents of files, and the source tree.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace kelmo {

/// The whole content of a file; empty when it cannot be read.
std::string contentOf(const std::filesystem::path& file);
void writeContent(const std::filesystem::path& file, const std::string& content);

/// Names and contents of the regular files in a directory, hidden ones included.
std::map<std::string, std::string> filesIn(const std::filesystem::path& directory);
/// Their names alone, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& directory);

/// The lines of a text without their line feeds.
std::vector<std::string> linesOf(const std::string& text);

/// The fenced blocks of a page's text whose fences carry the language, without the fences; those
/// without any language for "".
std::vector<std::string> fencedBlocks(const std::string& page, const std::string& language = "");

/// A path of the source tree, such as "docs/formats".
std::filesystem::path sourcePath(const std::filesystem::path& name);
/// A file of the source tree, open. Throws when there is no such file.
std::ifstream openSource(const std::filesystem::path& name);
/// Its content. Throws when there is no such file.
std::string sourceText(const std::filesystem::path& name);
/// The file of a sample entry, such as "1ubq".
std::filesystem::path samplePath(const std::string& code);
std::string sampleText(const std::string& code);

/// An empty directory that goes away with the object and all it holds.
class cScratchDirectory {
  public:
    cScratchDirectory();
    ~cScratchDirectory();
    cScratchDirectory(const cScratchDirectory&) = delete;
    cScratchDirectory& operator=(const cScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return place; }
    /// The full name of a file or directory in it.
    std::string file(const std::string& name) const { return (place / name).string(); }
    /// Creates the file with its directories; returns its path.
    std::filesystem::path write(const std::filesystem::path& name,
                                const std::string& content) const;
    std::filesystem::path makeDirectory(const std::filesystem::path& name) const;
    /// A sample under another name.
    std::filesystem::path linkSample(const std::string& code,
                                     const std::filesystem::path& name) const;

  private:
    std::filesystem::path place;
};

} // namespace kelmo
