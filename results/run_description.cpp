#include "results/run_description.h"

#include "analysis/parameter_tables.h"
#include "base/number_text.h"
#include "results/file_identity.h"

#include <array>
#include <ctime>
#include <map>

namespace kelmo {

namespace {

bool isCompared(const sSetting& setting) {
    switch (setting.group) {
    case eSettingGroup::reports:
    case eSettingGroup::formats:
    case eSettingGroup::output:
        return false;
    default:
        return setting.kind != eSettingKind::table;
    }
}

std::string valueOf(const cSettings& settings, const sSetting& setting) {
    return setting.kind == eSettingKind::number ? shortestText(settings.number(setting.key))
                                                : settings.valueText(setting.key);
}

/// What is compared of a run, by its keys.
std::map<std::string, std::string> comparedValues(const sRunDescription& run) {
    std::map<std::string, std::string> values{{"module", run.module}, {"version", run.version}};
    for (const sDescribedSetting& setting : run.settings) {
        if (setting.isCompared) {
            values[setting.key] = setting.value;
        }
    }
    for (const sDescribedTable& table : run.tables) {
        values[table.key] = table.sha256;
    }
    return values;
}

} // namespace

sRunDescription describeRun(const cSettings& settings, std::string_view version) {
    sRunDescription run{std::string(nameOf(settings.module())), std::string(version),
                        currentTime()};
    for (const sSetting& setting : settingsOf(settings.module())) {
        run.settings.push_back({setting.key, valueOf(settings, setting), isCompared(setting)});
        if (setting.kind == eSettingKind::table && isTableNeeded(settings, setting.key)) {
            const std::string& path = settings.text(setting.key);
            const auto identity = identityOf(path);
            run.tables.push_back({setting.key, path, identity ? identity->sha256 : std::string()});
        }
    }
    return run;
}

std::vector<std::string> differingKeys(const sRunDescription& one, const sRunDescription& other) {
    std::map<std::string, std::string> left = comparedValues(one);
    std::map<std::string, std::string> right = comparedValues(other);
    for (const auto& [key, value] : right) {
        left.try_emplace(key); // one that the other run alone has differs unless it is empty
    }
    std::vector<std::string> keys;
    for (const auto& [key, value] : left) {
        if (right[key] != value) {
            keys.push_back(key);
        }
    }
    return keys;
}

std::string currentTime() {
    const std::time_t now = std::time(nullptr);
    std::tm time{};
    ::gmtime_r(&now, &time);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &time);
    return {text.data(), length};
}

} // namespace kelmo
