#include <KxUI/browse/BrowserArea_p.h>

#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/kit/ColorContrast_p.h>

#include <QAccessibleWidget>
#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimerEvent>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int LineHeight = 3;
constexpr int StepsOfLine = 80; // there and back
constexpr int StepTime = 25;    // milliseconds
constexpr int PageWidth = 420;
constexpr int Margin = 8;
constexpr int Veil = 150;     // of rows that are waited for
constexpr int LightVeil = 70; // of rows that are pale by themselves: what they were is gone

// A bar without a value.
class BusyLineAccessible : public QAccessibleWidget {
public:
    explicit BusyLineAccessible(BusyLine* line)
        : QAccessibleWidget(line, QAccessible::ProgressBar, FileBrowser::tr("Reading the folder")) {
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const bool isBusy = static_cast<const BusyLine*>(object())->isBusy();
        state.busy = isBusy;
        state.invisible = state.invisible || !isBusy;
        return state;
    }
};

} // namespace

QAccessibleInterface* BusyLine::accessible(const QString& className, QObject* object) {
    auto* const line = className == QLatin1String("Kestrel::UI::BusyLine")
                           ? qobject_cast<BusyLine*>(object)
                           : nullptr;
    return line ? new BusyLineAccessible(line) : nullptr;
}

BusyLine::BusyLine(QWidget* parent)
    : QWidget(parent) {
    static const bool isInstalled = [] {
        QAccessible::installFactory(accessible);
        return true;
    }();
    Q_UNUSED(isInstalled)
    setFixedHeight(LineHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void BusyLine::setBusy(bool busy) {
    if (busy == isBusy())
        return;
    m_step = 0;
    if (busy)
        m_timer.start(StepTime, this);
    else
        m_timer.stop();
    update();
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.busy = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void BusyLine::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_timer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_step = (m_step + 1) % StepsOfLine;
    update();
}

void BusyLine::paintEvent(QPaintEvent*) {
    if (!isBusy())
        return;
    QPainter painter(this);
    constexpr int half = StepsOfLine / 2;
    const int at = m_step < half ? m_step : StepsOfLine - m_step;
    const int length = std::max(24, width() / 5);
    painter.fillRect((width() - length) * at / half, 0, length, height(),
                     visibleHighlight(palette(), palette().color(QPalette::Window)));
}

BrowserNoticeBox::BrowserNoticeBox(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QBoxLayout(QBoxLayout::TopToBottom, this))
    , m_buttons(new QBoxLayout(QBoxLayout::LeftToRight))
    , m_text(new QLabel(this)) {
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_layout->setContentsMargins(Margin, Margin / 2, Margin, Margin / 2);
    m_layout->addWidget(m_text, 1);
    m_layout->addLayout(m_buttons);
    setVisible(false);
}

QString BrowserNoticeBox::text() const {
    return m_text->text();
}

void BrowserNoticeBox::say(const QString& text, std::vector<Choice> choices) {
    const bool isSame =
        text == m_text->text() &&
        std::equal(choices.begin(), choices.end(), m_choices.begin(), m_choices.end(),
                   [](const Choice& a, const Choice& b) { return a.text == b.text; });
    m_choices = std::move(choices);
    if (isSame)
        return;
    m_text->setText(text);
    setAccessibleName(text);
    while (QLayoutItem* const item = m_buttons->takeAt(0)) {
        if (item->widget())
            item->widget()->deleteLater(); // it may be the one that was pressed
        delete item;
    }
    m_buttons->addStretch(1);
    for (std::size_t i = 0; i < m_choices.size(); ++i) {
        auto* const button = new QPushButton(m_choices[i].text, this);
        button->setAutoDefault(false);
        // By its number: the function may be another one by then.
        connect(button, &QPushButton::clicked, this, [this, i] {
            if (i < m_choices.size())
                std::function<void()>(m_choices[i].choose)();
        });
        m_buttons->addWidget(button);
        button->show();
    }
    m_buttons->addStretch(m_isBanner ? 0 : 1);
    if (text.isEmpty())
        return;
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void BrowserNoticeBox::setBanner(bool isBanner) {
    m_isBanner = isBanner;
    m_layout->setDirection(isBanner ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_text->setAlignment(isBanner ? Qt::AlignVCenter | Qt::AlignLeading : Qt::AlignCenter);
}

void BrowserNoticeBox::paintEvent(QPaintEvent*) {
    if (!m_isBanner)
        return;
    QPainter painter(this);
    const QColor ground = palette().color(QPalette::Window);
    painter.fillRect(rect(), mixed(ground, palette().color(QPalette::Highlight), 0.12));
    painter.fillRect(0, height() - 1, width(), 1,
                     mixed(ground, palette().color(QPalette::WindowText), 0.25));
}

BrowserVeil::BrowserVeil(QWidget* parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::NoFocus);
    setVisible(false);
}

void BrowserVeil::setPicture(const QPixmap& picture) {
    m_picture = picture;
    update();
}

void BrowserVeil::setGrey(int veil) {
    if (std::exchange(m_grey, veil) != veil)
        update();
}

void BrowserVeil::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (hasPicture())
        painter.drawPixmap(0, 0, m_picture);
    if (!isGrey())
        return;
    QColor veil = palette().color(QPalette::Base);
    veil.setAlpha(m_grey);
    painter.fillRect(rect(), veil);
}

BrowserArea::BrowserArea(BrowserViews* views, QWidget* parent)
    : QWidget(parent)
    , m_views(views)
    , m_veil(new BrowserVeil(this))
    , m_notice(new BrowserNoticeBox(this)) {
    views->setParent(this);
    views->lower();
    setFocusProxy(views);
}

bool BrowserArea::hold() {
    if (m_veil->hasPicture())
        return true; // the rows of a folder before that have not been replaced yet
    if (!m_views->current()->isVisible())
        return false;
    m_veil->setPicture(m_views->picture());
    return true;
}

void BrowserArea::show(const BrowserFace& face, const QString& text,
                       std::vector<BrowserNoticeBox::Choice> choices, bool hasRows) {
    if (!face.holdsOld)
        m_veil->setPicture({});
    const bool isGone = face.notice == BrowserNotice::Vanished;
    m_veil->setGrey(!face.isGrey ? 0 : isGone ? LightVeil : Veil);
    const bool isVeiled = m_veil->hasPicture() || (face.isGrey && hasRows);
    const bool hasWords = face.notice != BrowserNotice::None;
    m_notice->setBanner(hasWords && hasRows);
    m_notice->say(hasWords ? text : QString(), std::move(choices));
    m_notice->setVisible(hasWords);
    m_veil->setVisible(isVeiled);
    arrange();
}

void BrowserArea::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_veil->hasPicture() && event->oldSize().isValid()) {
        m_veil->setPicture({});
        m_veil->setVisible(false);
    }
    arrange();
}

void BrowserArea::arrange() {
    QRect rows = rect();
    if (!m_notice->isHidden() && m_notice->isBanner()) {
        const int height =
            std::max(m_notice->heightForWidth(width()), m_notice->sizeHint().height());
        m_notice->setGeometry(0, 0, width(), height);
        rows.setTop(height);
    }
    m_views->setGeometry(rows);
    const QWidget* const port = m_views->current()->viewport();
    const QRect seen(port->mapTo(this, QPoint()), port->size());
    m_veil->setGeometry(seen);
    if (!m_notice->isBanner()) {
        const int width = std::min(PageWidth, seen.width());
        const int height =
            std::min(std::max(m_notice->heightForWidth(width), m_notice->sizeHint().height()),
                     seen.height());
        // A third from above, where one looks first.
        m_notice->setGeometry(seen.left() + (seen.width() - width) / 2,
                              seen.top() + (seen.height() - height) / 3, width, height);
    }
}

} // namespace Kestrel::UI
