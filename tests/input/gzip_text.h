// Texts compressed for the tests.
#pragma once

#include <cstddef>
#include <string>
#include <zlib.h>

namespace kelmo {

/// Appends pieces to a gzip member, so that what is compressed need not be in memory.
class cGzipMember {
  public:
    cGzipMember() { deflateInit2(&state, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY); }
    ~cGzipMember() { deflateEnd(&state); }
    cGzipMember(const cGzipMember&) = delete;
    cGzipMember& operator=(const cGzipMember&) = delete;

    void append(const std::string& piece) { deflateAll(piece, Z_NO_FLUSH); }

    std::string finish() {
        deflateAll({}, Z_FINISH);
        return bytes;
    }

  private:
    void deflateAll(const std::string& piece, int flush) {
        std::string room(1U << 16U, '\0');
        state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
        state.avail_in = static_cast<uInt>(piece.size());
        do {
            state.next_out = reinterpret_cast<Bytef*>(room.data());
            state.avail_out = static_cast<uInt>(room.size());
            deflate(&state, flush);
            bytes.append(room, 0, room.size() - state.avail_out);
        } while (state.avail_out == 0);
    }

    z_stream state{};
    std::string bytes;
};

inline std::string gzipped(const std::string& text) {
    cGzipMember member;
    member.append(text);
    return member.finish();
}

} // namespace kelmo
