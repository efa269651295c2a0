// A directory for one test, and what stands in files.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace kelmo {

/// An empty directory that goes away with the object.
class cTestDirectory {
  public:
    cTestDirectory();
    ~cTestDirectory();
    cTestDirectory(const cTestDirectory&) = delete;
    cTestDirectory& operator=(const cTestDirectory&) = delete;

    const std::filesystem::path& path() const { return place; }
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

std::string contentOf(const std::filesystem::path& file);

/// Names and contents of the regular files in a directory, hidden ones included.
std::map<std::string, std::string> filesIn(const std::filesystem::path& directory);

/// The fenced blocks of a page whose fences carry the language, without the fences; those without
/// any language for "".
std::vector<std::string> fencedBlocks(const std::filesystem::path& page,
                                      const std::string& language);

} // namespace kelmo
