// A text file that is made anew and written piece by piece, compressed if its name says so.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct z_stream_s;

namespace kelmo {

/// Throws cResultError for what cannot be written.
class cTextOutput {
  public:
    /// Creates the file, which must not exist. Compressed when the name ends in ".gz".
    explicit cTextOutput(const std::string& path);
    /// Writes to an open descriptor, which is not closed.
    cTextOutput(int openDescriptor, bool isCompressed);
    ~cTextOutput();
    cTextOutput(const cTextOutput&) = delete;
    cTextOutput& operator=(const cTextOutput&) = delete;

    void write(std::string_view text);
    /// Hands over to the system what was written so far; what is compressed can be read up to here.
    void flush();
    /// The file is whole now and on the disk.
    void finish();

  private:
    void beginCompression();
    void send(std::string_view bytes);
    void compress(std::string_view text, int mode);
    [[noreturn]] void fail() const;

    struct sEnd {
        void operator()(z_stream_s* stream) const;
    };

    std::string name;
    int descriptor = -1;
    bool isOwned = true;
    std::unique_ptr<z_stream_s, sEnd> compressor; ///< null for plain text
    std::string buffer;
};

} // namespace kelmo
