// The settings of a run: configuration files and the assignments that override them.
#pragma once

#include "batch/options.h"

#include <QString>

#include <map>
#include <string>
#include <string_view>

namespace kelmo {

/// A value and where the user gave it.
struct sSetting {
    std::string value; ///< bytes as they stand
    QString origin;    ///< for messages: "run.cfg:4" or "--set z_slice=0.2"

    /// The value as a file name.
    QString path() const;
};

/// The settings of one module. Keys, flags and numbers are checked as they come in: whatever is
/// wrong with one throws a cUsageError that names its place.
class cConfiguration {
  public:
    explicit cConfiguration(eModule ofModule) : module(ofModule) {}

    /// Adds the settings of a file.
    void readFile(const QString& path);
    /// Sets one key, "KEY=VALUE", whether it was set before or not.
    void assign(std::string_view assignment);

    /// Null when the key is not set.
    const sSetting* find(std::string_view key) const;
    bool flag(std::string_view key, bool byDefault) const;
    double number(std::string_view key, double byDefault) const;

  private:
    void readLine(std::string_view line, const QString& origin);
    void add(std::string_view key, sSetting setting);

    eModule module;
    std::map<std::string, sSetting, std::less<>> settings;
};

/// The configuration file, if there is one, with the overrides applied.
cConfiguration readConfiguration(const sOptions& options);

/// What the user is told of a number that is not in its range.
QString rangeText(std::string_view key, double minimum, double maximum, std::string_view value);

} // namespace kelmo
