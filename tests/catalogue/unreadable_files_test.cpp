// Files that exist but may not be read, refused for the superuser as for everybody else.
#include "analysis/parameter_tables.h"
#include "base/text_file.h"
#include "base/usage_error.h"
#include "run/crunkev_linux.h"
#include "run/file_path.h"
#include "run/run_vor_linux.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kelmo {

namespace {

/// While it exists, permissions count for this thread, even the superuser's: giving up the
/// capabilities that override them is always allowed.
class cNoOverride {
  public:
    cNoOverride() {
        if (::syscall(SYS_capget, &header, before.data()) != 0) {
            throw std::runtime_error("the capabilities of the thread are unknown");
        }
        auto reduced = before;
        constexpr unsigned overrides = 1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH;
        reduced[0].effective &= ~overrides;
        set(reduced);
    }
    ~cNoOverride() { ::syscall(SYS_capset, &header, before.data()); }
    cNoOverride(const cNoOverride&) = delete;
    cNoOverride& operator=(const cNoOverride&) = delete;

  private:
    using tCapabilities = std::array<__user_cap_data_struct, 2>;

    void set(const tCapabilities& capabilities) {
        if (::syscall(SYS_capset, &header, capabilities.data()) != 0) {
            throw std::runtime_error("the capabilities of the thread cannot be given up");
        }
    }

    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    tCapabilities before{};
};

class UnreadableFile : public testing::Test {
  protected:
    UnreadableFile() { ::chmod(file.c_str(), 0); }

    /// What a worker tells of the file, in one line.
    std::string messagesOf(cAnalysisRun& run) const {
        std::string text;
        QObject::connect(&run, &cAnalysisRun::messageSent,
                         [&](const sMessage& message) { text += message.text + '|'; });
        EXPECT_EQ(run.analyseFile(pathFromBytes(file.native()), "1"), eFileOutcome::failed);
        return text;
    }

    const cScratchDirectory directory;
    const std::filesystem::path file = directory.write("secret", "ATOM\n");
    const cNoOverride plainUser;
};

} // namespace

TEST_F(UnreadableFile, IsNoStructure) {
    cRunKEV kev;
    EXPECT_EQ(messagesOf(kev), "Could not open file " + file.string() + '|');
    cRunVOR vor;
    EXPECT_EQ(messagesOf(vor), "Analysing contacts of peptide from " + file.string() +
                                   "...|Could not open file " + file.string() + '|');
}

TEST_F(UnreadableFile, InADirectoryThatMayNotBeEnteredIsNoStructureEither) {
    ::chmod(file.c_str(), 0600);
    ::chmod(directory.path().c_str(), 0);
    cRunKEV kev;
    EXPECT_EQ(messagesOf(kev), "Could not open file " + file.string() + '|');
    ::chmod(directory.path().c_str(), 0700);
}

TEST_F(UnreadableFile, IsNoListOrConfiguration) {
    try {
        forEachLine(file.native(), "--list", [](std::string_view) {});
        ADD_FAILURE() << "the list was read";
    } catch (const cUsageError& error) {
        EXPECT_EQ(error.what(), "--list: Could not open file " + file.string());
    }
}

TEST_F(UnreadableFile, IsNoTable) {
    for (const eModule module : {eModule::kev, eModule::vor}) {
        cSettings settings(module);
        if (module == eModule::vor) {
            settings.setNumber("contact_criterion", 4);
        }
        for (const sSetting& setting : settingsOf(module)) {
            if (setting.kind == eSettingKind::table) {
                cSettings other = settings;
                for (const sSetting& table : settingsOf(module)) {
                    if (table.kind == eSettingKind::table) {
                        other.setText(table.key, KELMO_SOURCE_DIR "/data/" + table.byDefault);
                    }
                }
                other.setText(setting.key, file.string());
                sParameterTables tables;
                const auto problem = readParameterTables(other, tables);
                ASSERT_TRUE(problem.has_value()) << setting.key;
                EXPECT_EQ(problem->key, setting.key);
                EXPECT_TRUE(problem->isUnopened);
            }
        }
    }
}

} // namespace kelmo
