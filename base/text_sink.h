// Where the text of a report goes, piece by piece.
#pragma once

#include "base/exported.h"

#include <ostream>
#include <string>
#include <string_view>

namespace KELMO_API kelmo {

/// Takes text in order, from one thread at a time. Does not throw for what cannot be written: who
/// owns the place finds out at the end.
class cTextSink {
  public:
    virtual ~cTextSink() = default;
    /// Takes the next piece; the text may go when this returns.
    virtual void write(std::string_view text) = 0;

    /// What has been written is as readers of the format rely on, but no parser of it takes that.
    void markUnparsable() { isParsable = false; }
    bool canBeParsed() const { return isParsable; } ///< unless that was marked

  protected:
    cTextSink() = default;
    // Only as a part of a whole object.
    cTextSink(const cTextSink&) = default;
    cTextSink& operator=(const cTextSink&) = default;

  private:
    bool isParsable = true;
};

/// Hands text on to a stream, which is not owned.
class cStreamSink : public cTextSink {
  public:
    /// The stream must outlive it.
    explicit cStreamSink(std::ostream& receiver) : stream(receiver) {}
    /// What the stream cannot take shows in its state.
    void write(std::string_view text) override {
        stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    }

  private:
    std::ostream& stream;
};

} // namespace kelmo
