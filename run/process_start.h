// What both programs do before anything else, so that the surroundings cannot spoil a run.
#pragma once

namespace kelmo {

/// Puts the null device in the place of standard streams that are closed: the next file that is
/// opened would take it, and messages would go into a report. Makes a write error of what would
/// otherwise end the process: a limit on the size of files, or a reader of messages who has gone.
void prepareProcess();

} // namespace kelmo
