#include "batch/report_choice.h"

#include "reports/report_formats.h"

#include <algorithm>
#include <string_view>

namespace kelmo {

namespace {

std::string nameOf(const sReportFormat& format) {
    constexpr std::string_view prefix = "write_";
    const std::string& key = format.setting.key;
    return key.starts_with(prefix) ? key.substr(prefix.size()) : key;
}

} // namespace

std::vector<std::string> reportFormatNames() {
    std::vector<std::string> names;
    for (const sReportFormat& format : reportFormats()) {
        names.push_back(nameOf(format));
    }
    return names;
}

void chooseReports(const std::vector<std::string>& names, cSettings& settings) {
    for (const sReportFormat& format : reportFormats()) {
        const bool isChosen = std::ranges::find(names, nameOf(format)) != names.end();
        settings.set(format.setting.key, isChosen ? "1" : "0", "--reports");
    }
}

} // namespace kelmo
