#include "export/CaptureExport.h"

#include <KxUI/eventgraph/EventGraphWriter.h>

#include <QSaveFile>

#include <thread>

namespace Kestrel::Workbench {

namespace {

/** Counts what goes through, and takes no more when nobody wants it. */
class Counted : public QIODevice {
public:
    Counted(QIODevice* device, UI::ProgressTask* task)
        : m_device(device)
        , m_task(task) {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }

    qint64 writeData(const char* data, qint64 size) override {
        if (m_task->isCancelled())
            return -1;
        m_task->advance(size);
        return m_device->write(data, size);
    }

private:
    QIODevice* m_device;
    UI::ProgressTask* m_task;
};

void write(UI::ProgressTask& task, const UI::EventGraphSnapshot& capture, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return task.fail(file.errorString());
    Counted device(&file, &task);
    const bool isTrace = path.endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
    using Writer = UI::EventGraphWriter;
    const bool isWritten =
        isTrace ? Writer::writeTrace(capture, &device)
                : Writer::write(capture, Writer::IncludeUserData | Writer::SkipDuplicates, &device);
    // Only now is the last part with the system.
    if (isWritten && file.flush() && file.commit())
        task.finish();
    else if (task.isCancelled())
        task.finishCancelled();
    else
        task.fail(file.errorString());
}

} // namespace

void exportCapture(std::shared_ptr<UI::ProgressTask> task, UI::EventGraphSnapshot capture,
                   const QString& path) {
    task->setUnit(UI::ProgressTask::Unit::Bytes);
    task->start();
    std::thread([task = std::move(task), capture = std::move(capture), path] {
        write(*task, capture, path);
    }).detach();
}

} // namespace Kestrel::Workbench
