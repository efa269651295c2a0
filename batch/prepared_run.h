// A run that is checked and ready to start.
#pragma once

#include "run/analysis_run.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace kelmo {

/// Makes one more worker with the settings of the run. May be called from several threads at once.
using cWorkerMaker = std::function<std::unique_ptr<cAnalysisRun>()>;

struct sPreparedRun {
    cWorkerMaker makeWorker;
    QString outputDirectory; ///< ends in a slash
    QStringList notes;       ///< what the user should know before the start
};

} // namespace kelmo
