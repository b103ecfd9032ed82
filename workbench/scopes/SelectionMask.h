#pragma once

#include <KxUI/scopes/ScopeSelection.h>

#include <QImage>
#include <QObject>
#include <QSize>

#include <memory>
#include <optional>

namespace Kestrel::Workbench {

/** The pixels of a picture that were selected in a scope, as a picture to be laid over it. It is made
    by another thread, always of what was asked for last; nobody waits for it. Called from the thread
    that owns it; the signal is emitted there too. */
class SelectionMask : public QObject {
    Q_OBJECT

public:
    /** What it is made of. A value. */
    struct Request {
        UI::ScopeImage image;
        UI::ScopeEncoding encoding;
        UI::ScopeSelection selection;
        /** Pixels that the picture is shown with: it need not have more. */
        QSize shown;
    };

    explicit SelectionMask(QObject* parent = nullptr);
    ~SelectionMask() override;

    void make(const Request& request);
    void clear();

    /** What was made last; null without a selection. */
    const QImage& image() const { return m_image; }

    /** Makes one here and now. Where the picture is shown smaller than it is, a pixel of the mask is
        set as soon as one of those is that it stands for, so that none gets lost. */
    static QImage imageOf(const Request& request);

signals:
    void changed();

private:
    struct Owner;

    void start();
    void take(const QImage& image);

    std::shared_ptr<Owner> m_owner;
    /** What waits until the present one is made. */
    std::optional<Request> m_next;
    bool m_isBusy = false;
    /** Nothing is wanted any more of what is being made. */
    bool m_isCleared = true;
    QImage m_image;
};

} // namespace Kestrel::Workbench
