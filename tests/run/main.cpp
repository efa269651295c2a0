// The test program of the run room: the tests under an application object, for queued messages, and
// a mode in which it only writes reports until it is killed.
#include "run/crunkev_linux.h"
#include "tests/run/run_test_tools.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <string_view>

namespace kelmo {

namespace {

/// Writes the four reports of a file over and over. Never returns.
[[noreturn]] void writeReportsForever(const char* file, const char* directory) {
    cRunKEV run;
    switchEverythingOn(run);
    run.setOutputDirectoryName(QString::fromLocal8Bit(directory));
    for (;;) {
        run.analyseFile(QString::fromLocal8Bit(file), fixedStamp);
    }
}

} // namespace

} // namespace kelmo

using namespace kelmo;

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 4 && std::string_view(argv[1]) == writeReportsForeverOption) {
        writeReportsForever(argv[2], argv[3]);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
