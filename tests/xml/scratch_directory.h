// A directory for the files of one test, removed with all it holds when the test ends.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <stdlib.h>

namespace kelmo {

/// The whole content of a file; empty when it cannot be read.
inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void writeContent(const std::filesystem::path& file, const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
}

class cScratchDirectory {
  public:
    cScratchDirectory() {
        std::string name = testing::TempDir() + "kelmo-test-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no scratch directory " + name);
        }
        place = name;
    }
    ~cScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(place, ignored);
    }
    cScratchDirectory(const cScratchDirectory&) = delete;
    cScratchDirectory& operator=(const cScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return place; }
    /// The full name of a file or directory in it.
    std::string file(const std::string& name) const { return (place / name).string(); }

  private:
    std::filesystem::path place;
};

} // namespace kelmo
