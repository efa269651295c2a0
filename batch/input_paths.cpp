#include "batch/input_paths.h"

#include "analysis/input_lists.h"
#include "base/shown_text.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kelmo {

// What baseNameOf() gives, without a string of its own.
std::string_view baseNameIn(std::string_view path) {
    path.remove_prefix(path.rfind('/') + 1); // the next of "not found" is the beginning
    return path.substr(0, path.find('.'));
}

cInputPaths::cInputPaths(std::initializer_list<std::string_view> paths) {
    for (const std::string_view path : paths) {
        append(path);
    }
}

void cInputPaths::append(std::string_view path) {
    text += path;
    ends.push_back(text.size());
}

std::string_view cInputPaths::operator[](std::size_t position) const {
    const std::size_t begin = position == 0 ? 0 : ends[position - 1];
    return std::string_view(text).substr(begin, ends[position] - begin);
}

cInputPaths inputPaths(const std::vector<sInputSource>& sources) {
    cInputPaths paths;
    for (const sInputSource& source : sources) {
        if (source.kind == sInputSource::eKind::pdbFile) {
            paths.append(source.path);
            continue;
        }
        forEachListedPath(source.path, "--list", [&](std::string_view path) {
            if (!path.empty()) {
                paths.append(path);
            }
        });
    }
    return paths;
}

cSameBaseNames::cSameBaseNames(const cInputPaths& paths) {
    std::vector<std::size_t> order(paths.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto nameOf = [&](std::size_t file) { return baseNameIn(paths[file]); };
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return std::pair(nameOf(left), left) < std::pair(nameOf(right), right);
    });
    for (auto begin = order.begin(); begin != order.end();) {
        const auto end = std::find_if(
            begin, order.end(), [&](std::size_t file) { return nameOf(file) != nameOf(*begin); });
        if (end - begin > 1) {
            for (auto file = begin; file != end; ++file) {
                groupByFile[*file] = groups.size();
            }
            groups.emplace_back(begin, end);
        }
        begin = end;
    }
}

const cSameBaseNames::tGroup* cSameBaseNames::groupOf(std::size_t file) const {
    const auto found = groupByFile.find(file);
    return found == groupByFile.end() ? nullptr : &groups[found->second];
}

std::vector<std::string> sameBaseNameWarnings(const cInputPaths& paths,
                                              const cSameBaseNames& sameNames) {
    std::vector<std::string> warnings;
    for (std::size_t file = 0; file < paths.size(); ++file) {
        const cSameBaseNames::tGroup* group = sameNames.groupOf(file);
        if (group != nullptr && group->front() != file) {
            warnings.push_back(shownText(paths[group->front()]) + " and " + shownText(paths[file]) +
                               " have the same base name: the reports of the later file replace "
                               "those of the earlier one");
        }
    }
    return warnings;
}

} // namespace kelmo
