// What happens to the files of a directory, as the system tells it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace kelmo {

/// Records what happens to the files of a directory from its construction on.
class cDirectoryWatch {
  public:
    explicit cDirectoryWatch(const std::filesystem::path& directory);
    ~cDirectoryWatch();
    cDirectoryWatch(const cDirectoryWatch&) = delete;
    cDirectoryWatch& operator=(const cDirectoryWatch&) = delete;

    struct sEvent {
        bool isRenamed; ///< the file received this name; otherwise it was created or changed
        std::string name;
    };
    /// What happened so far, in order.
    const std::vector<sEvent>& events();
    /// Waits until so many things have happened; false when that takes more than ten minutes.
    bool waitForEvents(std::size_t count);
    /// Only the names that files received by renaming, in order.
    std::vector<std::string> renamedTo();

  private:
    int descriptor;
    std::vector<sEvent> recorded;
};

} // namespace kelmo
