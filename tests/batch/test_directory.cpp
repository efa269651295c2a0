#include "tests/batch/test_directory.h"

#include "tests/batch/batch_process.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace kelmo {

namespace fs = std::filesystem;

cTestDirectory::cTestDirectory() {
    std::string name = (fs::temp_directory_path() / "kelmo-batch-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no directory for the test");
    }
    place = fs::canonical(name);
}

cTestDirectory::~cTestDirectory() {
    std::error_code error;
    fs::remove_all(place, error);
}

fs::path cTestDirectory::write(const fs::path& name, const std::string& content) const {
    const fs::path file = place / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
}

fs::path cTestDirectory::makeDirectory(const fs::path& name) const {
    fs::create_directories(place / name);
    return place / name;
}

fs::path cTestDirectory::linkSample(const std::string& code, const fs::path& name) const {
    const fs::path link = place / name;
    fs::create_directories(link.parent_path());
    fs::create_symlink(samplePath(code), link);
    return link;
}

std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::map<std::string, std::string> filesIn(const fs::path& directory) {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        if (entry.is_regular_file()) {
            files[entry.path().filename().string()] = contentOf(entry.path());
        }
    }
    return files;
}

std::vector<std::string> fencedBlocks(const fs::path& page, const std::string& language) {
    std::vector<std::string> blocks;
    std::istringstream in(contentOf(page));
    bool isInside = false;
    bool isWanted = false;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("```")) {
            isInside = !isInside;
            isWanted = isInside && line.substr(3) == language;
            if (isWanted) {
                blocks.emplace_back();
            }
        } else if (isWanted) {
            blocks.back() += line + '\n';
        }
    }
    return blocks;
}

} // namespace kelmo
