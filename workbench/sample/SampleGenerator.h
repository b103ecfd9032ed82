#pragma once

#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <QThreadPool>

#include <atomic>
#include <memory>
#include <mutex>

namespace Kestrel::Workbench {

/** Writes the sample: a shot of 240 EXR frames of half float and one of 100 PNG frames with gaps
    and another padding. The frames are written side by side into a temporary folder that takes its
    final name when all are there, so that no half of a sample is ever found. */
class SampleGenerator : public QObject {
    Q_OBJECT

public:
    /** Where the sample of this user lies, or will lie. */
    static QString standardFolder();

    /** @param folder  the finished folder; its parent is made where needed */
    explicit SampleGenerator(QString folder, QObject* parent = nullptr);
    ~SampleGenerator() override;

    /** Whether the finished folder is there. */
    bool exists() const;

    /** Begins; nothing when it runs already. */
    void start();

    /** Stops as soon as the frames that are being written are done; finished(false) follows. */
    void cancel();

signals:
    /** `done` of `total` frames are written. */
    void progressed(int done, int total);
    /** The work is over; `message` says what went wrong, and is empty after a cancel. */
    void finished(bool ok, const QString& message);

private:
    struct Job;

    void writeFrame(const Job& job);
    void fail(const QString& message);
    void frameDone();
    void finish();

    QString m_folder;
    std::unique_ptr<QTemporaryDir> m_partial;
    QThreadPool m_pool;
    int m_total = 0;
    int m_done = 0;
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    QString m_error;
};

} // namespace Kestrel::Workbench
