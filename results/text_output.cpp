#include "results/text_output.h"

#include "base/shown_text.h"
#include "results/database.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

namespace kelmo {

namespace {

constexpr std::size_t bufferSize = 1U << 16U;

} // namespace

void cTextOutput::sEnd::operator()(z_stream_s* stream) const {
    deflateEnd(stream);
    delete stream;
}

cTextOutput::cTextOutput(const std::string& path) : name(path) {
    constexpr mode_t everybody = 0666;
    descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (descriptor < 0) {
        fail();
    }
    if (path.ends_with(".gz")) {
        beginCompression();
    }
}

cTextOutput::cTextOutput(int openDescriptor, bool isCompressed)
    : name("standard output"), descriptor(openDescriptor), isOwned(false) {
    if (isCompressed) {
        beginCompression();
    }
}

void cTextOutput::beginCompression() {
    auto stream = std::make_unique<z_stream>();
    constexpr int gzipWindow = 15 + 16;
    constexpr int usualMemory = 8;
    // The time of a run is worth more than the last percent of its results.
    if (deflateInit2(stream.get(), Z_BEST_SPEED, Z_DEFLATED, gzipWindow, usualMemory,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
    compressor.reset(stream.release());
}

cTextOutput::~cTextOutput() {
    if (isOwned && descriptor >= 0) {
        ::close(descriptor);
    }
}

void cTextOutput::fail() const {
    throw cResultError((isOwned ? "results file " : "") + shownText(name) + ": " +
                       std::generic_category().message(errno));
}

void cTextOutput::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail();
        }
    }
}

void cTextOutput::compress(std::string_view text, int mode) {
    std::array<char, bufferSize> compressed;
    compressor->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    compressor->avail_in = static_cast<uInt>(text.size());
    do {
        compressor->next_out = reinterpret_cast<Bytef*>(compressed.data());
        compressor->avail_out = static_cast<uInt>(compressed.size());
        deflate(compressor.get(), mode);
        send({compressed.data(), compressed.size() - compressor->avail_out});
    } while (compressor->avail_out == 0);
}

void cTextOutput::write(std::string_view text) {
    while (!text.empty()) {
        const std::size_t count = std::min(text.size(), bufferSize - buffer.size());
        buffer += text.substr(0, count);
        text.remove_prefix(count);
        if (buffer.size() == bufferSize) {
            compressor == nullptr ? send(buffer) : compress(buffer, Z_NO_FLUSH);
            buffer.clear();
        }
    }
}

void cTextOutput::flush() {
    compressor == nullptr ? send(buffer) : compress(buffer, Z_SYNC_FLUSH);
    buffer.clear();
}

void cTextOutput::finish() {
    compressor == nullptr ? send(buffer) : compress(buffer, Z_FINISH);
    buffer.clear();
    if (!isOwned) {
        return; // a pipe has no disk behind it
    }
    const int closing = descriptor;
    if (::fsync(closing) != 0) {
        fail();
    }
    descriptor = -1;
    if (::close(closing) != 0) {
        fail();
    }
}

} // namespace kelmo
