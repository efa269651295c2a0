#include "tests/support/test_files.h"

#include <iterator>
#include <sstream>
#include <stdexcept>

#include <stdlib.h>

namespace kelmo {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeContent(const fs::path& file, const std::string& content) {
    std::ofstream(file, std::ios::binary) << content;
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

std::vector<std::string> namesIn(const fs::path& directory) {
    std::vector<std::string> names;
    for (const auto& [name, content] : filesIn(directory)) {
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> fencedBlocks(const std::string& page, const std::string& language) {
    std::vector<std::string> blocks;
    bool isInside = false;
    bool isWanted = false;
    for (const std::string& line : linesOf(page)) {
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

fs::path sourcePath(const fs::path& name) {
    return fs::path(KELMO_SOURCE_DIR) / name;
}

std::ifstream openSource(const fs::path& name) {
    std::ifstream in(sourcePath(name), std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot open " + name.string());
    }
    return in;
}

std::string sourceText(const fs::path& name) {
    std::ifstream in = openSource(name);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

namespace {

fs::path sampleName(const std::string& code) {
    return fs::path("data/samples") / (code + ".pdb");
}

} // namespace

fs::path samplePath(const std::string& code) {
    return sourcePath(sampleName(code));
}

std::string sampleText(const std::string& code) {
    return sourceText(sampleName(code));
}

cScratchDirectory::cScratchDirectory() {
    std::string name = (fs::temp_directory_path() / "kelmo-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no scratch directory " + name);
    }
    place = fs::canonical(name);
}

cScratchDirectory::~cScratchDirectory() {
    std::error_code ignored;
    fs::remove_all(place, ignored);
}

fs::path cScratchDirectory::write(const fs::path& name, const std::string& content) const {
    const fs::path file = place / name;
    fs::create_directories(file.parent_path());
    writeContent(file, content);
    return file;
}

fs::path cScratchDirectory::makeDirectory(const fs::path& name) const {
    fs::create_directories(place / name);
    return place / name;
}

fs::path cScratchDirectory::linkSample(const std::string& code, const fs::path& name) const {
    const fs::path link = place / name;
    fs::create_directories(link.parent_path());
    fs::create_symlink(samplePath(code), link);
    return link;
}

} // namespace kelmo
