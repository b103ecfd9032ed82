#pragma once

#include <KxUI/browse/CompletionPopup_p.h>
#include <KxUI/browse/Completion_p.h>

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class QKeyEvent;
class QLineEdit;

namespace Kestrel::UI {

class FileGatherer;
class FileListing;

/** Completes the path that is typed into a field, by a list that never takes the focus. Folders are
    read by a gatherer that there is only while the field has the focus; nothing waits for one. */
class PathCompleter : public QObject {
public:
    /** The absolute path that the text of a folder means; empty for none. */
    using Resolve = std::function<QByteArray(const QString& folder)>;
    /** Shows a completed text. `name` has the bytes of its last component, where that was taken
        from a folder: what stands before it is `folder`. */
    using Put = std::function<void(const Completion::Outcome& outcome, const QString& folder)>;

    /** `field` owns it. */
    PathCompleter(QLineEdit* field, Resolve resolve, Put put);
    ~PathCompleter() override;

    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool enabled);
    /** Whether names of files are completed, too, and which; sequences as one where that is said. */
    void setTakesFiles(bool takes, bool foldsSequences = false, const QStringList& patterns = {});

    bool isOpen() const { return m_completion.isOpen(); }
    void close();

    /** How long nothing is typed until a folder is asked for, and how long it may take. */
    QTimer& askTimer() { return m_askTimer; }
    QTimer& silenceTimer() { return m_silenceTimer; }
    CompletionPopup* popup() const { return m_popup; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void edited();
    void ask();
    void takeListing();
    void apply(const Completion::Outcome& outcome, const QString& folder);
    void showList();
    void leave();
    bool ownsKey(const QKeyEvent& event) const;
    bool takesKey(const QKeyEvent& event);
    std::vector<CompletionName> names() const;

    QLineEdit* m_field;
    Resolve m_resolve;
    Put m_put;
    Completion m_completion;
    QPointer<CompletionPopup> m_popup;
    std::unique_ptr<FileGatherer> m_gatherer;
    std::shared_ptr<const FileListing> m_listing; ///< whose names are completed
    QByteArray m_asked;
    QStringList m_patterns;
    QTimer m_askTimer;
    QTimer m_silenceTimer;
    bool m_isEnabled = true;
    bool m_foldsSequences = false;
    bool m_isPutting = false;
};

} // namespace Kestrel::UI
