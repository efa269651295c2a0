// How many files the system lets a process have open, and what a run makes of it.
#pragma once

#include <cstddef>

namespace kelmo {

/// Raises the limit on open files as far as the process may, and returns how many structures can be
/// worked on at once without meeting it; at least 1.
std::size_t structuresAtOnce();

} // namespace kelmo
