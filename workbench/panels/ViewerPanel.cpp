#include "panels/ViewerPanel.h"

#include "media/DroppedPaths.h"
#include "panels/ScopeOverlay.h"
#include "panels/ViewerCanvas.h"
#include "play/Session.h"

#include <KxUI/kit/VerticalLayout.h>

#include <QDropEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>

namespace Kestrel::Workbench {

ViewerPanel::ViewerPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_canvas(new ViewerCanvas)
    , m_name(new QLabel)
    , m_pixel(new QLabel)
    , m_facts(new QLabel) {
    setObjectName(QStringLiteral("ViewerPanel"));
    setAcceptDrops(true);
    m_patience.setSingleShot(true);
    m_patience.setInterval(200);
    m_pixel->setAccessibleName(tr("Pixel under the pointer"));
    m_pixel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // It comes and goes with the pointer, which must not move anything.
    m_pixel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_facts->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_name->setTextFormat(Qt::PlainText);
    // Long names must not keep the panel from being made narrow.
    m_name->setMinimumWidth(40);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* line = new QHBoxLayout;
    line->setContentsMargins(8, 4, 8, 4);
    line->addWidget(m_name, 1);
    line->addWidget(m_pixel, 1);
    line->addWidget(m_facts);
    auto* layout = new UI::VerticalLayout(0, 0, this);
    layout->addLayout(line);
    layout->addWidget(m_canvas, 1);

    new ScopeOverlay(session->scopes(), m_canvas);

    connect(m_canvas, &ViewerCanvas::pointed, session, &Session::pointAt);
    connect(session, &Session::pointedPixelChanged, this, &ViewerPanel::describePixel);
    connect(session, &Session::frameChanged, this, &ViewerPanel::showFrame);
    connect(&m_patience, &QTimer::timeout, this, &ViewerPanel::describeFrame);
    connect(session->player(), &Player::playingChanged, m_canvas, &ViewerCanvas::setFast);
    m_canvas->setFast(session->player()->isPlaying());
    m_canvas->setPaintTrack(session->profiling()->paintTrack());
    m_canvas->setHint(tr("Open a sequence from the list: double click it or press Return."));
    showFrame();
}

void ViewerPanel::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedPaths(*event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ViewerPanel::dropEvent(QDropEvent* event) {
    const QList<QByteArray> paths = droppedPaths(*event->mimeData());
    if (paths.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    emit pathsDropped(paths);
}

void ViewerPanel::showFrame() {
    m_canvas->setFrame(m_session->shownFrame());
    if (!m_session->isLoading())
        m_patience.stop();
    else if (!m_patience.isActive())
        m_patience.start();
    describeFrame();
}

void ViewerPanel::describeFrame() {
    const Sequence& sequence = m_session->sequence();
    if (sequence.isEmpty()) {
        m_name->clear();
        m_facts->clear();
        return;
    }
    const Base::Time time = m_session->model()->currentTime();
    const auto held = sequence.heldTime(time);
    const std::string path = held ? sequence.path(*held) : std::string();
    m_name->setText(path.empty() ? sequence.title()
                                 : QString::fromUtf8(path.c_str() + path.rfind('/') + 1));
    if (m_session->isLoading() && !m_patience.isActive()) {
        m_facts->setText(tr("decoding %1").arg(time));
        return;
    }
    const FramePtr frame = m_session->shownFrame();
    if (!frame || frame->state != Frame::State::Ready) {
        m_facts->clear();
        return;
    }
    QString facts = tr("%1 \u00d7 %2   %3")
                        .arg(frame->fullSize.width())
                        .arg(frame->fullSize.height())
                        .arg(frame->format);
    if (frame->image.width() < frame->fullSize.width())
        facts +=
            tr("   shown at %1 \u00d7 %2").arg(frame->image.width()).arg(frame->image.height());
    m_facts->setText(facts);
}

void ViewerPanel::describePixel() {
    const auto pixel = m_session->pointedPixel();
    m_pixel->setText(
        pixel ? tr("%1, %2:  %3").arg(pixel->at.x()).arg(pixel->at.y()).arg(pixel->text())
              : QString());
}

} // namespace Kestrel::Workbench
