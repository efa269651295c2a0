// Standard input as a stream that waits for its writer, but not beyond a stop.
#pragma once

#include "base/exported.h"

#include <array>
#include <streambuf>
#include <string_view>

namespace KELMO_API kelmo {

/// The path by which standard input is read like a file.
inline constexpr std::string_view standardInputPath = "/dev/stdin";

/// Reads what comes through standard input, whatever it is connected to. While nothing comes, the
/// stop request of this thread is asked several times a second. A stop and a read error throw,
/// which a stream that reads from here catches and turns bad; errno is that of the read error.
class cStandardInput : public std::streambuf {
  protected:
    /// Waits for more bytes.
    int_type underflow() override;

  private:
    std::array<char, 65536> buffer{};
};

} // namespace kelmo
