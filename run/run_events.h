// What a run tells while it goes on: messages for the user, and what becomes of files and reports.
#pragma once

#include "base/thread_order.h"

#include <QMetaType>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace kelmo {

/// How the work on one file ended.
enum class eFileOutcome {
    analysed, ///< reports that could not be written have been told of
    failed,   ///< reported as an error; at most reports exist that were whole before
    stopped   ///< a stop was asked for; only reports that were whole before it exist
};

/// What was found in the interactions of one file, or of several.
struct sFindings {
    std::optional<std::size_t> contacts = {}; ///< none when the criterion finds no pairs
    std::size_t bindingResidues = 0;

    sFindings& operator+=(const sFindings& other);
};

/// "38 contacts, 57 binding residues".
std::string findingsText(const sFindings& findings);

/// What a message is to the user.
enum class eSeverity {
    progress,
    warning, ///< the file is analysed all the same
    error    ///< the file is given up, or a report
};

/// What queued signals hand to the thread of the receiver, as a copy.
struct sHandedOver {
    sHandedOver() = default;
    sHandedOver(const sHandedOver&) { handOver(this); }
    sHandedOver(sHandedOver&&) noexcept {}
    sHandedOver& operator=(const sHandedOver&) { return *this; }
    sHandedOver& operator=(sHandedOver&&) noexcept { return *this; }
    ~sHandedOver() = default;
};

/// A line of text for the user, UTF-8.
struct sMessage : sHandedOver {
    sMessage() = default;
    sMessage(eSeverity itsSeverity, std::string itsText)
        : severity(itsSeverity), text(std::move(itsText)) {}

    eSeverity severity = eSeverity::progress;
    std::string text;
};

/// The work on a file begins. Paths are bytes as the system has them.
struct sFileBegun : sHandedOver {
    sFileBegun() = default;
    explicit sFileBegun(std::string itsPath) : path(std::move(itsPath)) {}

    std::string path;
};

/// The work on a file has ended.
struct sFileEnded : sHandedOver {
    sFileEnded() = default;
    sFileEnded(std::string itsPath, eFileOutcome itsOutcome,
               std::optional<sFindings> itsFindings = {})
        : path(std::move(itsPath)), outcome(itsOutcome), findings(itsFindings) {}

    std::string path;
    eFileOutcome outcome = eFileOutcome::analysed;
    std::optional<sFindings> findings; ///< of an analysed file in the interaction module
};

/// A report stands whole under its final name.
struct sReportWritten : sHandedOver {
    sReportWritten() = default;
    explicit sReportWritten(std::string name) : fileName(std::move(name)) {}

    std::string fileName;
};

/// A report that was asked for does not exist, or exists only as an older run left it.
struct sReportLost : sHandedOver {
    sReportLost() = default;
    sReportLost(std::string name, std::string why, bool wasBegun)
        : fileName(std::move(name)), reason(std::move(why)), isBegun(wasBegun) {}

    std::string fileName; ///< its final name
    std::string reason;   ///< in the words of the system
    bool isBegun = true;  ///< false when not even a file could be created: no message was sent
};

} // namespace kelmo

Q_DECLARE_METATYPE(kelmo::sMessage)
Q_DECLARE_METATYPE(kelmo::sFileBegun)
Q_DECLARE_METATYPE(kelmo::sFileEnded)
Q_DECLARE_METATYPE(kelmo::sReportWritten)
Q_DECLARE_METATYPE(kelmo::sReportLost)
