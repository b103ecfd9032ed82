#include <KxUI/time/ViewerFrameSkipControl.h>

#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QPointer>
#include <QToolButton>

namespace Kestrel::UI {
namespace {

QToolButton* makeButton(const QString& icon, const QString& toolTip, const QString& name) {
    auto* button = new QToolButton;
    button->setFixedSize(22, 22);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRaise(true);
    button->setIcon(IconFactory::icon(icon));
    button->setToolTip(toolTip);
    button->setAccessibleName(name);
    return button;
}

} // namespace

struct ViewerFrameSkipControl::Private {
    ViewerFrameSkipControl* q = nullptr;
    QLineEdit* field = nullptr;
    int increment = 12;

    void makeField();
    void updateWidth();
    void skip(void (ViewerFrameSkipControl::*signal)());
};

ViewerFrameSkipControl::ViewerFrameSkipControl(QWidget* parent)
    : QWidget(parent)
    , m(std::make_unique<Private>()) {
    m->q = this;
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QToolButton* backwards = makeButton(QStringLiteral("FrameSkipBackwards"),
                                        tr("Skip Backwards (Shift+Left)"), tr("Skip backwards"));
    QToolButton* forwards = makeButton(QStringLiteral("FrameSkipForwards"),
                                       tr("Skip Forwards (Shift+Right)"), tr("Skip forwards"));
    m->makeField();

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    row->addWidget(backwards);
    row->addWidget(m->field);
    row->addWidget(forwards);

    using Self = ViewerFrameSkipControl;
    connect(backwards, &QToolButton::clicked, this,
            [this] { m->skip(&Self::skipBackwardsButtonClicked); });
    connect(forwards, &QToolButton::clicked, this,
            [this] { m->skip(&Self::skipForwardsButtonClicked); });
    connect(m->field, &QLineEdit::editingFinished, this, &Self::finishedEditing);
}

ViewerFrameSkipControl::~ViewerFrameSkipControl() = default;

void ViewerFrameSkipControl::Private::makeField() {
    field = new QLineEdit(QString::number(increment), q);
    field->setFrame(false);
    field->setAlignment(Qt::AlignCenter);
    field->setValidator(new QIntValidator(1, 999, field));
    field->setToolTip(tr("The number of frames skipped by clicking Skip Forwards/Backwards"));
    field->setAccessibleName(tr("Frames to skip"));
    updateWidth();
}

void ViewerFrameSkipControl::Private::updateWidth() {
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(QStringLiteral(" 22 ")));
}

// The buttons take no focus, so a number that is being typed has not been announced yet.
void ViewerFrameSkipControl::Private::skip(void (ViewerFrameSkipControl::*signal)()) {
    ViewerFrameSkipControl* const self = q;
    const QPointer<ViewerFrameSkipControl> guard(self);
    if (field->hasAcceptableInput())
        q->finishedEditing();
    else
        q->setIncrement(increment);
    if (guard)
        Q_EMIT(self->*signal)();
}

void ViewerFrameSkipControl::setIncrement(int increment) {
    KXUI_INTERFACE_THREAD(this);
    m->field->setText(QString::number(increment));
    m->field->setModified(false);
    if (increment == m->increment)
        return;
    m->increment = increment;
    Q_EMIT incrementChanged(increment);
}

int ViewerFrameSkipControl::increment() const {
    return m->increment;
}

void ViewerFrameSkipControl::frameIncrementChanged(int value) {
    setIncrement(value);
}

void ViewerFrameSkipControl::finishedEditing() {
    if (!m->field->isModified())
        return;
    const int typed = m->field->text().toInt();
    const QPointer<ViewerFrameSkipControl> guard(this);
    setIncrement(typed);
    if (guard)
        Q_EMIT incrementFieldValueChanged(typed);
}

void ViewerFrameSkipControl::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (m->field && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        m->updateWidth();
}

} // namespace Kestrel::UI
