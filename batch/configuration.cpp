#include "batch/configuration.h"

#include "batch/shown_text.h"
#include "batch/text_lines.h"
#include "batch/usage_error.h"
#include "run/file_path.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <span>
#include <utility>

namespace kelmo {

namespace {

enum class eKind { flag, number, criterion, path };

struct sKeyRule {
    std::string_view key;
    eKind kind;
    double minimum = 0.0; ///< of a number, inclusive like the maximum
    double maximum = 0.0;
};

// The window's ranges, but for z_slice: slices finer than the window offers cost time and no more.
constexpr sKeyRule zSliceRule{"z_slice", eKind::number, 0.01, 1.0};
constexpr sKeyRule rSolventRule{"r_solvent", eKind::number, 0.0, 2.0};

constexpr sKeyRule kevRules[] = {
    {"analyze_bound", eKind::flag},
    {"analyze_unbound", eKind::flag},
    {"calc_asa", eKind::flag},
    zSliceRule,
    rSolventRule,
    {"write_asa", eKind::flag},
    {"calc_rasa", eKind::flag},
    {"standard_asa", eKind::path},
    {"calc_dpx", eKind::flag},
    {"calc_cx", eKind::flag},
    {"cx_threshold", eKind::number, 5.0, 15.0},
    {"cx_volume", eKind::number, 15.0, 25.0},
    {"calc_hydro", eKind::flag},
    {"hydro_file", eKind::path},
    {"radii_filename", eKind::path},
    {"write_xml", eKind::flag},
    {"write_table", eKind::flag},
    {"output_dir", eKind::path},
};

constexpr sKeyRule vorRules[] = {
    {"contact_criterion", eKind::criterion},
    {"threshold", eKind::number, 0.0, 10.0},
    {"delta_asa", eKind::number, 0.05, 100.0},
    zSliceRule,
    rSolventRule,
    {"radii_filename", eKind::path},
    {"write_contacts", eKind::flag},
    {"write_binding_residues", eKind::flag},
    {"write_binding_state", eKind::flag},
    {"write_xml", eKind::flag},
    {"write_table", eKind::flag},
    {"output_dir", eKind::path},
};

std::span<const sKeyRule> rulesOf(eModule module) {
    return module == eModule::kev ? std::span<const sKeyRule>(kevRules)
                                  : std::span<const sKeyRule>(vorRules);
}

/// The whole text as a number with a decimal point, whatever the locale.
std::optional<double> numberFrom(std::string_view text) {
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

bool isInRange(const sKeyRule& rule, std::string_view value) {
    const std::optional<double> number = numberFrom(value);
    // Not-a-number fails the comparisons; minus zero is refused like every other negative number.
    return number && !std::signbit(*number) && *number >= rule.minimum && *number <= rule.maximum;
}

/// Empty when the value is good.
QString faultOf(const sKeyRule& rule, std::string_view value) {
    switch (rule.kind) {
    case eKind::flag:
        if (value != "0" && value != "1") {
            return QStringLiteral("%1 must be 1 or 0, not \"%2\"")
                .arg(shownPath(rule.key), shownPath(value));
        }
        break;
    case eKind::number:
        if (!isInRange(rule, value)) {
            return rangeText(rule.key, rule.minimum, rule.maximum, value);
        }
        break;
    case eKind::criterion:
        if (value.size() != 1 || value[0] < '1' || value[0] > '4') {
            return QStringLiteral("contact_criterion must be 1 (maximum distance), 2 (PRISM), "
                                  "3 (Dovreth) or 4 (contact rules), not \"%1\"")
                .arg(shownPath(value));
        }
        break;
    case eKind::path:
        break;
    }
    return {};
}

} // namespace

QString sSetting::path() const {
    return pathFromBytes(value);
}

QString rangeText(std::string_view key, double minimum, double maximum, std::string_view value) {
    return QStringLiteral("%1 must be a number from %2 to %3, not \"%4\"")
        .arg(shownPath(key))
        .arg(minimum)
        .arg(maximum)
        .arg(shownPath(value));
}

void cConfiguration::readFile(const QString& path) {
    int lineNumber = 0;
    forEachLine(path, "--config", [&](std::string_view line) {
        ++lineNumber;
        readLine(line, shownPath(path) + ':' + QString::number(lineNumber));
    });
}

void cConfiguration::readLine(std::string_view line, const QString& origin) {
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
    if (const sSetting* earlier = find(key); earlier != nullptr) {
        throw cUsageError(origin + ": " + shownPath(key) + " was already set at " +
                          earlier->origin);
    }
    add(key, {std::string(value), origin});
}

void cConfiguration::assign(std::string_view assignment) {
    const QString origin = "--set " + shownPath(assignment);
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos) {
        throw cUsageError(origin + ": KEY=VALUE is expected");
    }
    add(assignment.substr(0, equals), {std::string(assignment.substr(equals + 1)), origin});
}

void cConfiguration::add(std::string_view key, sSetting setting) {
    const auto rules = rulesOf(module);
    const auto rule = std::ranges::find(rules, key, &sKeyRule::key);
    if (rule == rules.end()) {
        throw cUsageError(QStringLiteral("%1: \"%2\" is no key of a %3 configuration")
                              .arg(setting.origin, shownPath(key),
                                   QLatin1String(module == eModule::kev ? "kev" : "vor")));
    }
    if (const QString fault = faultOf(*rule, setting.value); !fault.isEmpty()) {
        throw cUsageError(setting.origin + ": " + fault);
    }
    settings[std::string(key)] = std::move(setting);
}

const sSetting* cConfiguration::find(std::string_view key) const {
    const auto found = settings.find(key);
    return found == settings.end() ? nullptr : &found->second;
}

bool cConfiguration::flag(std::string_view key, bool byDefault) const {
    const sSetting* setting = find(key);
    return setting == nullptr ? byDefault : setting->value == "1";
}

double cConfiguration::number(std::string_view key, double byDefault) const {
    const sSetting* setting = find(key);
    return setting == nullptr ? byDefault : numberFrom(setting->value).value_or(byDefault);
}

cConfiguration readConfiguration(const sOptions& options) {
    cConfiguration configuration(options.module);
    if (options.configuration.has_value()) {
        configuration.readFile(pathFromBytes(*options.configuration));
    }
    for (const std::string& assignment : options.overrides) {
        configuration.assign(assignment);
    }
    return configuration;
}

} // namespace kelmo
