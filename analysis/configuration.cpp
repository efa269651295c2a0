#include "analysis/configuration.h"

#include "analysis/criteria.h"
#include "base/shown_text.h"
#include "base/usage_error.h"

#include <algorithm>
#include <map>
#include <utility>

namespace kelmo {

namespace {

void set(std::string_view key, std::string_view value, std::string origin, cSettings& settings) {
    const std::string fault = settings.set(key, value, origin);
    if (!fault.empty()) {
        throw cUsageError(origin + ": " + fault);
    }
}

/// Where in the file each key was set so far.
using tPlaces = std::map<std::string, std::string, std::less<>>;

void readLine(std::string_view line, const std::string& origin, tPlaces& places,
              cSettings& settings) {
    constexpr std::string_view blanks = " \t";
    if (line.starts_with('#') || line.find_first_not_of(blanks) == std::string_view::npos) {
        return;
    }
    if (line.find('\0') != std::string_view::npos) {
        throw cUsageError(origin + ": this is not a line of text");
    }
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) {
        throw cUsageError(origin + ": a key, a colon and a value are expected");
    }
    const std::string_view key = line.substr(0, colon);
    std::string_view value = line.substr(colon + 1);
    value.remove_prefix(std::min(value.find_first_not_of(blanks), value.size()));
    if (const auto earlier = places.find(key); earlier != places.end()) {
        throw cUsageError(origin + ": " + shownText(key) + " was already set at " +
                          earlier->second);
    }
    set(key, value, origin, settings);
    places.emplace(key, origin);
}

bool isCriterionParameter(std::string_view key) {
    return std::ranges::any_of(criteria(), [&](const sCriterion& criterion) {
        return std::ranges::find(criterion.parameters, key, &sCriterionParameter::key) !=
               criterion.parameters.end();
    });
}

/// Whether interfaces go by a setting that the criterion does not have.
bool isNeededForInterfaces(const std::string& key, const cSettings& settings) {
    if (!settings.flag("write_interfaces") ||
        std::ranges::find(interfaceParameters(), key) == interfaceParameters().end()) {
        return false;
    }
    const sCriterion* const criterion = findCriterion(settings.criterion());
    return criterion == nullptr ||
           std::ranges::find(criterion->parameters, key, &sCriterionParameter::key) ==
               criterion->parameters.end();
}

std::string line(const sSetting& setting, const cSettings& settings) {
    if (setting.isWrittenOnlyIfChanged && settings.isDefault(setting.key)) {
        return {};
    }
    return setting.key + ":\t" + inOneLine(settings.valueText(setting.key)) + '\n';
}

/// The criterion and its parameters, which stand in the order that the criterion has.
std::string criterionLines(const sSetting& setting, const cSettings& settings) {
    std::string lines = line(setting, settings);
    if (const sCriterion* const criterion = findCriterion(settings.criterion())) {
        for (const sCriterionParameter& parameter : criterion->parameters) {
            lines += line(*findSetting(settings.module(), parameter.key), settings);
        }
    }
    return lines;
}

} // namespace

void readConfiguration(const std::string& path, const std::string& requester, cSettings& settings,
                       eTextSource allowed) {
    int lineNumber = 0;
    tPlaces places;
    const auto take = [&](std::string_view text) {
        ++lineNumber;
        readLine(withoutCarriageReturn(text), shownText(path) + ':' + std::to_string(lineNumber),
                 places, settings);
    };
    forEachLine(path, requester, take, allowed);
}

void assign(std::string_view assignment, cSettings& settings) {
    const std::string origin = "--set " + shownText(assignment);
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos) {
        throw cUsageError(origin + ": KEY=VALUE is expected");
    }
    set(assignment.substr(0, equals), assignment.substr(equals + 1), origin, settings);
}

std::string configurationText(const cSettings& settings) {
    std::string lines;
    for (const sSetting& setting : settingsOf(settings.module())) {
        if (setting.kind == eSettingKind::criterion) {
            lines += criterionLines(setting, settings);
        } else if (settings.module() != eModule::vor || !isCriterionParameter(setting.key) ||
                   isNeededForInterfaces(setting.key, settings)) {
            lines += line(setting, settings);
        }
    }
    return lines;
}

} // namespace kelmo
