#include <KxUI/browse/FolderQuestion_p.h>

#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/platform/Directory_p.h>

namespace Kestrel::UI {

FolderQuestion::FolderQuestion(QObject* parent)
    : QObject(parent) {
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(ChooserState::Deadline);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        stop();
        Q_EMIT timedOut();
    });
}

FolderQuestion::~FolderQuestion() = default;

void FolderQuestion::ask(const QByteArray& folder, bool folds, bool mustBeWritable) {
    stop();
    m_folder = folder;
    m_answer = {};
    m_isListed = false;
    m_isWritabilityKnown = !mustBeWritable;
    m_deadline.start();
    m_gatherer = std::make_unique<FileGatherer>();
    m_gatherer->setWatch(FileGatherer::Watch::Never);
    m_gatherer->setShowsHidden(true);
    m_gatherer->setFoldsSequences(folds);
    // Queued: the gatherer may be deleted by what follows.
    connect(
        m_gatherer.get(), &FileGatherer::finished, this,
        [this, number = m_number] {
            if (number != m_number)
                return;
            m_isListed = true;
            answerIfComplete();
        },
        Qt::QueuedConnection);
    m_gatherer->gather(folder);
    if (!mustBeWritable)
        return;
    FileManager::requestStatus(folder, m_deadline.interval(), this,
                               [this, number = m_number](const FileManager::PathStatus& status) {
                                   if (number != m_number)
                                       return;
                                   m_answer.isWritable = status.error != 0 || status.isWritable;
                                   m_isWritabilityKnown = true;
                                   answerIfComplete();
                               });
}

void FolderQuestion::stop() {
    ++m_number;
    m_deadline.stop();
    if (m_gatherer)
        m_gatherer->cancel();
}

std::shared_ptr<const FileListing> FolderQuestion::listing() const {
    return m_gatherer ? m_gatherer->listing() : nullptr;
}

void FolderQuestion::answerIfComplete() {
    if (!m_isListed || !m_isWritabilityKnown)
        return;
    ++m_number;
    m_deadline.stop();
    m_answer.error = listing()->error();
    m_answer.isMissing = Platform::failureOf(m_answer.error) == Platform::Failure::NotFound;
    Q_EMIT answered(m_answer);
}

} // namespace Kestrel::UI
