// A stream buffer over gzip data: what is read from it are the bytes that were compressed.
#pragma once

#include <istream>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

struct z_stream_s;

namespace kelmo {

/// Whether a file is compressed in this way, by its first bytes.
bool isGzip(std::string_view firstBytes);

/// Inflates a piece at a time, so that memory does not follow the size of what is inflated. Several
/// compressed members behind each other are one; each must be whole, its check sum right, and
/// nothing but zero bytes may follow the last.
class cInflatingBuffer : public std::streambuf {
  public:
    /// The stream stands at the beginning of the data.
    explicit cInflatingBuffer(std::istream& source);
    ~cInflatingBuffer() override;

    /// Why there was nothing more to read, if that was not the end; otherwise empty. A system error
    /// of the source is told by its text.
    const std::string& failure() const { return failureText; }

  protected:
    int_type underflow() override;

  private:
    bool refill();
    void inflateSome();
    void beginMember();
    bool fail(std::string reason);

    std::istream& in;
    std::unique_ptr<z_stream_s> state;
    std::vector<char> compressed;
    std::vector<char> inflated;
    bool isInMember = true;
    bool isAtEnd = false;
    std::string failureText;
};

} // namespace kelmo
