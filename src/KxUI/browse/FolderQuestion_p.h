#pragma once

#include <KxUI/browse/ChooserState_p.h>

#include <QObject>
#include <QTimer>

#include <memory>

namespace Kestrel::UI {

class FileGatherer;

/** Asks the disk what is in a folder and whether it can be written, once, with a deadline. */
class FolderQuestion : public QObject {
    Q_OBJECT

public:
    explicit FolderQuestion(QObject* parent);
    ~FolderQuestion() override;

    /** Gives up what was asked before. */
    void ask(const QByteArray& folder, bool folds, bool mustBeWritable);
    void stop();

    /** What is in the folder, after answered(). */
    std::shared_ptr<const FileListing> listing() const;
    const QByteArray& folder() const { return m_folder; }

    /** Milliseconds; ChooserState::Deadline at first. */
    void setDeadline(int milliseconds) { m_deadline.setInterval(milliseconds); }

Q_SIGNALS:
    void answered(const Kestrel::UI::FolderAnswer& answer);
    void timedOut();

private:
    void answerIfComplete();

    std::unique_ptr<FileGatherer> m_gatherer;
    QTimer m_deadline;
    QByteArray m_folder;
    FolderAnswer m_answer;
    bool m_isListed = false;
    bool m_isWritabilityKnown = false;
    unsigned m_number = 0; ///< of the question
};

} // namespace Kestrel::UI
