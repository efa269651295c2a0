// A stream buffer that hands out again what has already been taken from a stream that cannot be
// rewound.
#pragma once

#include <istream>
#include <streambuf>
#include <string>
#include <utility>

namespace kelmo {

/// Those bytes first, then the rest of the stream. Can be rewound to the beginning as long as
/// nothing of the rest has been read.
class cReplayedBuffer : public std::streambuf {
  public:
    cReplayedBuffer(std::string firstBytes, std::istream& source)
        : bytes(std::move(firstBytes)), rest(source) {
        setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
    }

  protected:
    int_type underflow() override {
        isRewindable = false;
        bytes.resize(bytesAtATime);
        rest.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        setg(bytes.data(), bytes.data(), bytes.data() + rest.gcount());
        if (rest.bad()) {
            throw std::ios_base::failure("source"); // makes the stream above bad, too
        }
        return gptr() == egptr() ? traits_type::eof() : traits_type::to_int_type(*gptr());
    }

    pos_type seekpos(pos_type position, std::ios_base::openmode) override {
        if (position != pos_type(0) || !isRewindable) {
            return pos_type(off_type(-1));
        }
        setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
        return position;
    }

  private:
    static constexpr std::size_t bytesAtATime = std::size_t{1} << 16;
    std::string bytes;
    std::istream& rest;
    bool isRewindable = true;
};

} // namespace kelmo
