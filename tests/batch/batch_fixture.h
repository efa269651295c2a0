// A directory with an empty directory "out" in it, and kelmo-batch run there.
#pragma once

#include "tests/batch/batch_process.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace kelmo {

class cBatchFixture : public testing::Test {
  protected:
    cBatchFixture() { directory.makeDirectory("out"); }

    /// Runs the module with reports in "out", stamped 200703141530.
    sProcessOutcome run(const std::string& module, const std::vector<std::string>& arguments,
                        sProcessManner manner = {}) const {
        std::vector<std::string> all{module, "--output-dir=out", "--stamp=200703141530"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return runAlone(all, std::move(manner));
    }
    /// Runs with exactly these arguments.
    sProcessOutcome runAlone(const std::vector<std::string>& arguments,
                             sProcessManner manner = {}) const {
        manner.directory = directory.path();
        return runBatch(arguments, manner);
    }
    std::map<std::string, std::string> reports() const { return filesIn(directory.path() / "out"); }
    /// A report of 1ubq, by the end of its name; empty when it does not exist.
    std::string report(const std::string& kind) const {
        return contentOf(directory.path() / "out" / ("1ubq_200703141530_" + kind));
    }
    std::vector<std::string> reportNames() const {
        std::vector<std::string> names;
        for (const auto& [name, content] : reports()) {
            names.push_back(name);
        }
        return names;
    }

    cScratchDirectory directory;
    const std::string ubiquitin = samplePath("1ubq").string();
    const std::string haemoglobin = samplePath("2hhb").string();
    const std::string antibody = samplePath("1a0q").string();
};

inline bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace kelmo
