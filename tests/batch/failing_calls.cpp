// A library to be preloaded: one call of the system fails, as on a full or broken disk. KELMO_FAIL
// is "call:number:errno": the call of that number fails, counted from 1 among the calls on files of
// one kind; with a "+" behind it all later ones fail too. Calls that write count on reports in the
// making (.kelmo-*), "read" on PDB files, "tell" on messages, "pwrite" and "sync" on databases of
// results and their journals. With "wait" a PDB file has nothing to say at that read, as some files
// under /proc: who has not asked otherwise waits for ever.
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

struct sFailure {
    sFailure() {
        const char* text = std::getenv("KELMO_FAIL");
        char sign = ' ';
        if (text != nullptr &&
            std::sscanf(text, "%15[a-z]:%d:%d%c", call, &number, &error, &sign) >= 3) {
            isLasting = sign == '+';
        }
    }

    char call[16] = "";
    int number = 0;
    int error = 0;
    bool isLasting = false;
};

/// Counts the call; true, with errno set, when it is to fail.
bool mustFail(const char* call) {
    static const sFailure failure;
    static std::atomic<int> count{0};
    if (std::strcmp(call, failure.call) != 0) {
        return false;
    }
    const int number = ++count;
    if (number < failure.number || (number > failure.number && !failure.isLasting)) {
        return false;
    }
    errno = failure.error;
    return true;
}

bool isReport(const char* path) {
    return std::strstr(path, ".kelmo-") != nullptr;
}

struct sOpenFile {
    explicit sOpenFile(int descriptor) {
        char link[32];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
        const int earlier = errno;
        const ssize_t length = ::readlink(link, path, sizeof path - 1);
        path[length < 0 ? 0 : length] = '\0';
        errno = earlier;
    }
    bool isReport() const { return ::isReport(path); }
    bool isDatabase() const { return std::strstr(path, ".sqlite") != nullptr; }
    bool isStructure() const { return std::strstr(path, ".pdb") != nullptr; }

    char path[4096];
};

/// The function of that name behind this library.
template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

int openNext(const char* name, const char* path, int flags, mode_t mode) {
    if (isReport(path) && mustFail("open")) {
        return -1;
    }
    return next<int(const char*, int, ...)>(name)(path, flags, mode);
}

mode_t modeFrom(std::va_list arguments, int flags) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(arguments, flags);
    va_end(arguments);
    return openNext("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(arguments, flags);
    va_end(arguments);
    return openNext("open64", path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(arguments, flags);
    va_end(arguments);
    if (isReport(path) && mustFail("open")) {
        return -1;
    }
    return next<int(int, const char*, int, ...)>("openat")(directory, path, flags, mode);
}

int fcntl(int descriptor, int command, ...) {
    std::va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (command == F_DUPFD_CLOEXEC && sOpenFile(descriptor).isReport() && mustFail("dup")) {
        return -1;
    }
    return next<int(int, int, ...)>("fcntl")(descriptor, command, argument);
}

ssize_t read(int descriptor, void* buffer, size_t size) {
    if (sOpenFile(descriptor).isStructure()) {
        if (mustFail("read")) {
            return -1;
        }
        if (mustFail("wait")) {
            const auto isSet = static_cast<unsigned>(::fcntl(descriptor, F_GETFL)) & O_NONBLOCK;
            while (isSet == 0) {
                ::pause();
            }
            errno = EAGAIN;
            return -1;
        }
    }
    return next<ssize_t(int, void*, size_t)>("read")(descriptor, buffer, size);
}

ssize_t write(int descriptor, const void* buffer, size_t size) {
    if (sOpenFile(descriptor).isReport() && mustFail("write")) {
        return -1;
    }
    if (descriptor == STDERR_FILENO && mustFail("tell")) {
        return -1;
    }
    return next<ssize_t(int, const void*, size_t)>("write")(descriptor, buffer, size);
}

ssize_t pwrite64(int descriptor, const void* buffer, size_t size, off64_t offset) {
    if (sOpenFile(descriptor).isDatabase() && mustFail("pwrite")) {
        return -1;
    }
    return next<ssize_t(int, const void*, size_t, off64_t)>("pwrite64")(descriptor, buffer, size,
                                                                        offset);
}

int fsync(int descriptor) {
    if (sOpenFile(descriptor).isDatabase() && mustFail("sync")) {
        return -1;
    }
    return next<int(int)>("fsync")(descriptor);
}

int fdatasync(int descriptor) {
    if (sOpenFile(descriptor).isDatabase() && mustFail("sync")) {
        return -1;
    }
    return next<int(int)>("fdatasync")(descriptor);
}

ssize_t writev(int descriptor, const iovec* parts, int count) {
    if (sOpenFile(descriptor).isReport() && mustFail("write")) {
        return -1;
    }
    return next<ssize_t(int, const iovec*, int)>("writev")(descriptor, parts, count);
}

// A close that fails has closed all the same.

int close(int descriptor) {
    const bool isCounted = sOpenFile(descriptor).isReport();
    const int status = next<int(int)>("close")(descriptor);
    return isCounted && mustFail("close") ? -1 : status;
}

int renameat(int fromDirectory, const char* from, int toDirectory, const char* to) {
    if (isReport(from) && mustFail("rename")) {
        return -1;
    }
    return next<int(int, const char*, int, const char*)>("renameat")(fromDirectory, from,
                                                                     toDirectory, to);
}

} // extern "C"
