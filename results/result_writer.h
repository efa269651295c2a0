// The one writer of a run's results, which all threads hand their files to.
#pragma once

#include "results/result_file.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace kelmo {

/// Writes into all results files of a run. There is no thread for it: whoever hands a file over
/// while nobody writes becomes the writer until nothing is left, so that a run with one job has one
/// thread and one with N jobs keeps to N. May be used from several threads at once.
class cResultWriter {
  public:
    explicit cResultWriter(std::vector<std::unique_ptr<cResultFile>> resultFiles);

    bool isWanted() const { return !files.empty(); }

    /// Whether all results files hold this very content of an input from a former run.
    bool holds(std::size_t position, std::string_view sha256) const;

    /// Takes what became of the input at a position; returns at once unless the queue is full. An
    /// input that an earlier run has done is passed over with a null record.
    void take(std::size_t position, std::unique_ptr<sFileRecord> record);

    /// Writes what is still in the queue; `isComplete` unless inputs are left. To be called once,
    /// when nobody hands anything over any more.
    void finish(bool isComplete);

    /// Whether writing has failed. Then nothing more is taken or written.
    bool hasFailed() const { return isBroken; }
    /// Why; empty if it has not.
    std::string failure() const;

  private:
    using tLock = std::unique_lock<std::mutex>;

    bool isReady() const;
    void writeWhatIsReady(tLock& lock);
    void write(std::size_t position, const sFileRecord& record);
    void commitNowAndThen();
    template <typename Work>
    void tryTo(Work work);

    const std::vector<std::unique_ptr<cResultFile>> files;
    const bool needsOrder;
    std::atomic<bool> isBroken{false};

    mutable std::mutex mutex; ///< guards what follows
    std::condition_variable roomIsThere;
    std::map<std::size_t, std::unique_ptr<sFileRecord>> queue; ///< by position
    std::size_t queuedBytes = 0;
    std::size_t nextPosition = 0; ///< where order counts
    bool isWriting = false;
    std::string failureText;

    // Of whoever writes.
    std::size_t uncommitted = 0;
    std::chrono::steady_clock::time_point lastCommit = std::chrono::steady_clock::now();
};

} // namespace kelmo
