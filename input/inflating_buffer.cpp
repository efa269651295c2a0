#include "input/inflating_buffer.h"

#include "base/regular_file.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <utility>
#include <zlib.h>

namespace kelmo {

namespace {

constexpr std::size_t bytesAtATime = std::size_t{1} << 16;
constexpr std::string_view magic = "\x1f\x8b";
constexpr int gzipOnly = 16 + MAX_WBITS; // as the library wants it

} // namespace

bool isGzip(std::string_view firstBytes) {
    return firstBytes.starts_with(magic);
}

cInflatingBuffer::cInflatingBuffer(std::istream& source)
    : in(source), state(std::make_unique<z_stream>()), compressed(bytesAtATime),
      inflated(bytesAtATime) {
    if (inflateInit2(state.get(), gzipOnly) != Z_OK) {
        throw std::bad_alloc();
    }
}

cInflatingBuffer::~cInflatingBuffer() {
    inflateEnd(state.get());
}

cInflatingBuffer::int_type cInflatingBuffer::underflow() {
    setg(nullptr, nullptr, nullptr);
    while (gptr() == egptr() && !isAtEnd && failureText.empty()) {
        if (state->avail_in > 0 || refill()) {
            isInMember ? inflateSome() : beginMember();
        }
    }
    return gptr() == egptr() ? traits_type::eof() : traits_type::to_int_type(*gptr());
}

/// Returns false at the end of the source, which is also that of the data unless it breaks off.
bool cInflatingBuffer::refill() {
    errno = 0;
    in.read(compressed.data(), static_cast<std::streamsize>(compressed.size()));
    state->next_in = reinterpret_cast<Bytef*>(compressed.data());
    state->avail_in = static_cast<uInt>(in.gcount());
    if (in.bad()) {
        return fail(readFailureText(errno));
    }
    if (state->avail_in == 0) {
        isAtEnd = true;
        return isInMember && fail("The compressed data breaks off");
    }
    return true;
}

void cInflatingBuffer::inflateSome() {
    state->next_out = reinterpret_cast<Bytef*>(inflated.data());
    state->avail_out = static_cast<uInt>(inflated.size());
    const int outcome = inflate(state.get(), Z_NO_FLUSH);
    setg(inflated.data(), inflated.data(), inflated.data() + (inflated.size() - state->avail_out));
    if (outcome == Z_STREAM_END) {
        isInMember = false;
    } else if (outcome != Z_OK && outcome != Z_BUF_ERROR) {
        const char* const reason = state->msg == nullptr ? zError(outcome) : state->msg;
        fail("The compressed data is damaged: " + std::string(reason));
    }
}

/// Behind a member: another one, or padding.
void cInflatingBuffer::beginMember() {
    while (state->avail_in > 0 && *state->next_in == 0) {
        ++state->next_in;
        --state->avail_in;
    }
    if (state->avail_in > 0) {
        isInMember = true;
        inflateReset(state.get());
    }
}

/// Returns false.
bool cInflatingBuffer::fail(std::string reason) {
    failureText = std::move(reason);
    return false;
}

} // namespace kelmo
