// Runs kelmo-batch as a user does: as a process of its own, with or without a terminal.
#pragma once

#include "tests/support/processor_time.h"

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kelmo {

struct sProcessManner {
    std::filesystem::path directory = ".";          ///< the current directory of the process
    std::map<std::string, std::string> environment; ///< added to the test's own
    bool hasTerminal = false;                       ///< standard error is a terminal of 80 columns
    std::size_t fileSizeLimit = 0; ///< largest file it may write, bytes; 0 is no limit
    std::size_t memoryLimit = 0;   ///< most address space it may use, bytes; 0 is no limit
    std::size_t openFileLimit = 0; ///< most files it may have open; 0 is no limit
    std::filesystem::path program; ///< kelmo-batch of this build if empty
};

struct sProcessOutcome {
    int exitStatus = -1; ///< 128 + n when signal n killed it
    std::string out;
    std::string err;            ///< on a terminal with its line ends, carriage return and line feed
    std::size_t peakMemory = 0; ///< bytes; at least what the test itself held when it started it
};

/// A running process. Its standard output goes to a file, its standard error is read as it comes.
class cBatchProcess {
  public:
    /// Starts the program; arguments are bytes of any kind but 0.
    explicit cBatchProcess(const std::vector<std::string>& arguments,
                           const sProcessManner& manner = {});
    ~cBatchProcess();
    cBatchProcess(const cBatchProcess&) = delete;
    cBatchProcess& operator=(const cBatchProcess&) = delete;

    /// Reads standard error until the text occurs in it; false when it ends before.
    bool waitForMessage(const std::string& text);
    void sendSignal(int signalNumber) const;
    /// How many threads it has now; 0 when it has ended.
    std::size_t threadCount() const;
    /// How many file descriptors it has open now; 0 when it has ended.
    std::size_t descriptorCount() const;
    /// The most address space it has used so far, bytes; 0 when it has ended.
    std::size_t peakAddressSpace() const;
    /// What it has used of all processors; 0 when it is gone.
    tProcessorTime processorTime() const;
    /// Whether it has ended, without waiting. Its outcome can still be taken.
    bool hasEnded();
    sProcessOutcome finish();

  private:
    bool readSome();
    std::size_t countIn(const char* processDirectory) const;
    void becomeProgram(const std::vector<std::string>& arguments, const sProcessManner& manner,
                       int errorDescriptor) const;

    pid_t process = -1;
    int errorSource = -1;
    std::FILE* output = nullptr;
    std::string err;
};

/// Starts the program and waits for its end.
sProcessOutcome runBatch(const std::vector<std::string>& arguments,
                         const sProcessManner& manner = {});

/// The kelmo-batch of this build.
std::filesystem::path batchProgram();
} // namespace kelmo
