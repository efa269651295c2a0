#include "tests/batch/batch_process.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <system_error>

#include <fcntl.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmo {

namespace {

constexpr int startFailed = 127;

int exitStatusFrom(int waitStatus) {
    constexpr int killedBySignal = 128;
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : killedBySignal + WTERMSIG(waitStatus);
}

/// Signals may be ignored or blocked where the tests run; a user's shell does not do that.
void resetSignals() {
    for (const int signalNumber : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXFSZ, SIGPIPE}) {
        std::signal(signalNumber, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// No limit when it is 0.
void setLimit(decltype(RLIMIT_AS) resource, std::size_t bytes) {
    const rlimit limit{bytes, bytes};
    if (bytes > 0) {
        ::setrlimit(resource, &limit);
    }
}

} // namespace

cBatchProcess::cBatchProcess(const std::vector<std::string>& arguments,
                             const sProcessManner& manner)
    : output(std::tmpfile()) {
    if (manner.hasTerminal) {
        winsize size{};
        size.ws_col = 80;
        size.ws_row = 24;
        process = ::forkpty(&errorSource, nullptr, nullptr, &size);
        if (process == 0) {
            becomeProgram(arguments, manner, STDERR_FILENO);
        }
        return;
    }
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return;
    }
    errorSource = ends[0];
    process = ::fork();
    if (process == 0) {
        becomeProgram(arguments, manner, ends[1]);
    }
    ::close(ends[1]);
}

/// Does not return.
void cBatchProcess::becomeProgram(const std::vector<std::string>& arguments,
                                  const sProcessManner& manner, int errorDescriptor) const {
    resetSignals();
    for (const auto& [name, value] : manner.environment) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    setLimit(RLIMIT_FSIZE, manner.fileSizeLimit);
    setLimit(RLIMIT_AS, manner.memoryLimit);
    setLimit(RLIMIT_NOFILE, manner.openFileLimit);
    std::string program =
        manner.program.empty() ? batchProgram().string() : manner.program.string();
    std::vector<std::string> texts = arguments;
    std::vector<char*> argv{program.data()};
    for (std::string& text : texts) {
        argv.push_back(text.data());
    }
    argv.push_back(nullptr);
    if (::dup2(::fileno(output), STDOUT_FILENO) >= 0 &&
        ::dup2(errorDescriptor, STDERR_FILENO) >= 0 && ::chdir(manner.directory.c_str()) == 0) {
        ::execv(program.c_str(), argv.data());
    }
    ::_exit(startFailed);
}

cBatchProcess::~cBatchProcess() {
    if (process > 0) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    if (errorSource >= 0) {
        ::close(errorSource);
    }
    std::fclose(output);
}

/// A terminal whose last user is gone reports an error instead of an end.
bool cBatchProcess::readSome() {
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(errorSource, buffer.data(), buffer.size());
    if (count <= 0) {
        return false;
    }
    err.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

bool cBatchProcess::waitForMessage(const std::string& text) {
    while (err.find(text) == std::string::npos) {
        if (!readSome()) {
            return false;
        }
    }
    return true;
}

void cBatchProcess::sendSignal(int signalNumber) const {
    ::kill(process, signalNumber);
}

std::size_t cBatchProcess::countIn(const char* processDirectory) const {
    std::error_code error;
    std::size_t count = 0;
    std::filesystem::directory_iterator entry(
        "/proc/" + std::to_string(process) + '/' + processDirectory, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        ++count;
        entry.increment(error);
    }
    return count;
}

std::size_t cBatchProcess::threadCount() const {
    return countIn("task");
}

std::size_t cBatchProcess::descriptorCount() const {
    return countIn("fd");
}

std::size_t cBatchProcess::peakAddressSpace() const {
    constexpr std::size_t kibibyte = 1024;
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        std::size_t amount = 0;
        if (word == "VmPeak:" && status >> amount) {
            return amount * kibibyte;
        }
    }
    return 0;
}

tProcessorTime cBatchProcess::processorTime() const {
    return processorTimeOf(process);
}

bool cBatchProcess::hasEnded() {
    siginfo_t end{};
    return ::waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           end.si_pid == process;
}

sProcessOutcome cBatchProcess::finish() {
    sProcessOutcome outcome;
    while (readSome()) {
    }
    int status = 0;
    rusage usage{};
    if (::wait4(process, &status, 0, &usage) == process) {
        outcome.exitStatus = exitStatusFrom(status);
        outcome.peakMemory = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    }
    process = -1;
    std::rewind(output);
    for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
        outcome.out.push_back(static_cast<char>(c));
    }
    outcome.err = err;
    return outcome;
}

sProcessOutcome runBatch(const std::vector<std::string>& arguments, const sProcessManner& manner) {
    return cBatchProcess(arguments, manner).finish();
}

std::filesystem::path batchProgram() {
    return std::filesystem::path(KELMO_BINARY_DIR) / "bin" / "kelmo-batch";
}

} // namespace kelmo
