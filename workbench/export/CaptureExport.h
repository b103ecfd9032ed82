#pragma once

#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/progress/ProgressTask.h>

#include <QString>

#include <memory>

namespace Kestrel::Workbench {

/** Writes what the profiler held into a file, on a thread of its own: as XML that it loads again, or,
    by the suffix .json, for trace viewers. The file is there as a whole or not at all; one that was
    there is kept until then.
    @param task     ends with the work, which it holds
    @param capture  what is written
    @param path     where to */
void exportCapture(std::shared_ptr<UI::ProgressTask> task, UI::EventGraphSnapshot capture,
                   const QString& path);

} // namespace Kestrel::Workbench
