// A worker with directories of its own for what it reads and what it writes.
#pragma once

#include "run/file_path.h"
#include "tests/run/message_log.h"
#include "tests/run/run_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelmo {

using tLines = std::vector<std::string>;

template <typename Worker>
class cRunFixture : public testing::Test {
  protected:
    /// Writes an input file and returns its path.
    std::string input(const std::string& name, const std::string& text = twoGlycines()) const {
        return inputs.write(name, text).string();
    }
    eFileOutcome analyse(const std::string& path) {
        return run.analyseFile(pathFromBytes(path), fixedStamp);
    }
    QString outputName() const { return QString::fromStdString(output.path().string()); }
    /// The names of the reports.
    tLines reports() const { return namesIn(output.path()); }

    cScratchDirectory inputs;
    cScratchDirectory output;
    Worker run;
    cMessageLog log{run};
};

} // namespace kelmo
