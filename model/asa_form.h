// The two forms in which accessible surface areas are computed.
#pragma once

#include "base/exported.h"

namespace KELMO_API kelmo {

/// Which planes count, and for how much.
enum class eAsaForm {
    /// Planes through the centre and every slice from it; a plane that no neighbour meets adds
    /// nothing, angles and areas are cut to fixed decimals. Depends on the orientation, and a
    /// little on distant atoms.
    classic,
    /// Slabs of equal thickness over the whole sphere, each with all that is free of it. Converges
    /// to the area itself as the slices become thinner.
    complete,
};

} // namespace kelmo
