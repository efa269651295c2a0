// The exception of what the user asked for and cannot have.
#pragma once

#include "base/exported.h"

#include <stdexcept>

namespace KELMO_API kelmo {

/// Thrown before anything is written; what() is the message for the user, UTF-8.
class cUsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace kelmo
