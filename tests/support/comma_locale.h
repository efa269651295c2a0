// A locale with a decimal comma, compiled for the tests: few machines have one.
#pragma once

#include <map>
#include <string>

#include <stdlib.h>

namespace kelmo {

inline constexpr const char* commaLocale = "de_DE.UTF-8";

/// What a process needs in its environment to run in that locale.
inline std::map<std::string, std::string> commaLocaleEnvironment() {
    return {{"LOCPATH", KELMO_TEST_LOCALES}, {"LC_ALL", commaLocale}, {"LANG", commaLocale}};
}

/// Lets this process find that locale.
inline void provideCommaLocale() {
    ::setenv("LOCPATH", KELMO_TEST_LOCALES, 1);
}

} // namespace kelmo
