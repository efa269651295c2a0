// The namespace declarations that the root element of every XML report carries.
#pragma once

#include "base/exported.h"

#include <string_view>

namespace KELMO_API kelmo {

/// As attributes of an element, with a blank before each.
inline constexpr std::string_view reportNamespaces =
    R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
    R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    R"( xmlns="http://kelmo.example/krb/namespaces/PDB")";

} // namespace kelmo
