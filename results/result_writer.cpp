#include "results/result_writer.h"

#include "results/database.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace kelmo {

namespace {

// What a kill may cost.
constexpr std::size_t filesPerCommit = 100;
constexpr std::chrono::seconds timePerCommit{1};

/// What may wait to be written; beyond it whoever has more waits, too.
constexpr std::size_t largestQueue = std::size_t{64} << 20U; // bytes

bool anyNeedsOrder(const std::vector<std::unique_ptr<cResultFile>>& files) {
    return std::ranges::any_of(files, [](const auto& file) { return file->needsOrder(); });
}

} // namespace

cResultWriter::cResultWriter(std::vector<std::unique_ptr<cResultFile>> resultFiles)
    : files(std::move(resultFiles)), needsOrder(anyNeedsOrder(files)) {}

bool cResultWriter::holds(std::size_t position, std::string_view sha256) const {
    return std::ranges::all_of(files,
                               [&](const auto& file) { return file->holds(position, sha256); });
}

/// Carries work out and keeps what goes wrong.
template <typename Work>
void cResultWriter::tryTo(Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        const std::lock_guard lock(mutex);
        failureText = error.what();
        isBroken = true;
    }
}

bool cResultWriter::isReady() const {
    return !queue.empty() && (!needsOrder || queue.begin()->first == nextPosition);
}

void cResultWriter::take(std::size_t position, std::unique_ptr<sFileRecord> record) {
    const std::size_t size = record == nullptr ? 0 : sizeOf(*record);
    tLock lock(mutex);
    // The one that all others wait for must not wait itself.
    roomIsThere.wait(lock, [&] {
        return isBroken || queuedBytes < largestQueue || (needsOrder && position == nextPosition);
    });
    if (isBroken) {
        return;
    }
    queuedBytes += size;
    queue.emplace(position, std::move(record));
    if (!isWriting) {
        isWriting = true;
        writeWhatIsReady(lock);
        isWriting = false;
    }
}

void cResultWriter::writeWhatIsReady(tLock& lock) {
    while (!isBroken && isReady()) {
        const auto first = queue.begin();
        const std::size_t position = first->first;
        std::unique_ptr<sFileRecord> record = std::move(first->second);
        queue.erase(first);
        ++nextPosition;
        lock.unlock();
        const std::size_t size = record == nullptr ? 0 : sizeOf(*record);
        if (record != nullptr) {
            tryTo([&] { write(position, *record); });
            record.reset();
        }
        lock.lock();
        queuedBytes -= size;
        roomIsThere.notify_all();
    }
    if (isBroken) {
        roomIsThere.notify_all();
    }
}

void cResultWriter::write(std::size_t position, const sFileRecord& record) {
    for (const auto& file : files) {
        if (!file->holds(position, record.sha256)) {
            file->write(position, record);
        }
    }
    ++uncommitted;
    commitNowAndThen();
}

void cResultWriter::commitNowAndThen() {
    const auto now = std::chrono::steady_clock::now();
    if (uncommitted < filesPerCommit && now - lastCommit < timePerCommit) {
        return;
    }
    for (const auto& file : files) {
        file->commit();
    }
    uncommitted = 0;
    lastCommit = now;
}

void cResultWriter::finish(bool isComplete) {
    if (isBroken) {
        return;
    }
    tryTo([&] {
        for (const auto& [position, record] : queue) { // behind files that a stop kept from coming
            write(position, *record);
        }
        queue.clear();
        for (const auto& file : files) {
            file->finish(isComplete);
        }
    });
}

std::string cResultWriter::failure() const {
    const std::lock_guard lock(mutex);
    return failureText;
}

} // namespace kelmo
