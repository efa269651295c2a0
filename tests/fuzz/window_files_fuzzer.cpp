// Fuzzes the files of the window, chosen by the first byte: the settings of the structure ("k") and
// of the interaction module ("v"), and input lists ("l"). Any bytes are taken without a word; what
// the window then saves it reads back the same.
#include "app/input_list.h"
#include "app/kelmo_linux.h"
#include "run/file_path.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/test_files.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>

#include <filesystem>
#include <sstream>

namespace kelmo {

namespace {

/// The window and, as its working directory, a place for its settings. Lives as long as the
/// process.
struct sDesktop {
    cScratchDirectory place;
    int argumentCount = 1;
    char name[6] = "kelmo";
    char* arguments[2] = {name, nullptr};
    QApplication* application;
    kelmo* window;

    sDesktop() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        std::filesystem::current_path(place.path());
        application = new QApplication(argumentCount, arguments);
        window = new kelmo;
    }
};

sDesktop& desktop() {
    static auto* const shared = new sDesktop;
    return *shared;
}

struct sModule {
    const char* settingsFile;
    const char* list;
    void (kelmo::*load)();
    void (kelmo::*save)();
    void (kelmo::*removeSelected)();
};

constexpr sModule kevModule{"kev_program_settings.set", "listWidgetKEVFileListDisplay",
                            &kelmo::loadKEVSettings, &kelmo::saveKEVSettings,
                            &kelmo::on_pushButtonKEVRemoveInFiles_clicked};
constexpr sModule vorModule{"vor_program_settings.set", "listWidgetVORFileListDisplay",
                            &kelmo::loadVORSettings, &kelmo::saveVORSettings,
                            &kelmo::on_pushButtonVORRemoveInFiles_clicked};

/// What the window saves after it read a settings file with an empty list.
std::string savedAfter(const sModule& module, const std::string& settings) {
    sDesktop& shared = desktop();
    auto* const list = shared.window->findChild<QListWidget*>(module.list);
    list->selectAll();
    (shared.window->*module.removeSelected)();
    require(list->count() == 0, "an empty list after its files were removed");
    writeContent(shared.place.file(module.settingsFile), settings);
    (shared.window->*module.load)();
    (shared.window->*module.save)();
    return contentOf(shared.place.file(module.settingsFile));
}

void readSettings(const sModule& module, const std::string& text) {
    const std::string saved = savedAfter(module, text);
    require(saved.ends_with('\n'), "settings of whole lines");
    require(savedAfter(module, saved) == saved, "settings that stay as they were saved");
}

void readList(const std::string& text) {
    std::istringstream in(text);
    const QStringList paths = pathsIn(in);
    std::string written;
    for (const QString& path : paths) {
        written += pathToBytes(path) + '\n';
    }
    require(written == text || written == text + '\n', "paths byte for byte");
    desktop();
    QListWidget display;
    QLabel count;
    cInputList list;
    list.attach(&display, &count);
    list.append(paths);
    list.append(paths);
    require(list.paths() == paths + paths && display.count() == 2 * paths.size(),
            "a display in step with the list");
    list.clear();
    require(display.count() == 0, "an empty display of an empty list");
}

} // namespace

/// The font library keeps what it has read for as long as the process lives.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const sChoice choice(textOf(bytes, size));
    switch (choice.reader) {
    case 'k':
        readSettings(kevModule, choice.text);
        break;
    case 'v':
        readSettings(vorModule, choice.text);
        break;
    case 'l':
        readList(choice.text);
        break;
    default:
        break;
    }
    return 0;
}

} // namespace kelmo
