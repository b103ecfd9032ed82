#include <KxUI/time/ViewerFrameSkipControl.h>

#include <KxUI/kit/IconFactory.h>

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
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

ViewerFrameSkipControl::ViewerFrameSkipControl(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);

    QToolButton* backwards = makeButton(QStringLiteral("FrameSkipBackwards"),
                                        tr("Skip Backwards (Shift+Left)"), tr("Skip backwards"));
    QToolButton* forwards = makeButton(QStringLiteral("FrameSkipForwards"),
                                       tr("Skip Forwards (Shift+Right)"), tr("Skip forwards"));
    m_increment = new QLineEdit(QStringLiteral("12"));
    m_increment->setFrame(false);
    m_increment->setAlignment(Qt::AlignCenter);
    m_increment->setFixedWidth(
        m_increment->fontMetrics().horizontalAdvance(QStringLiteral(" 22 ")));
    m_increment->setValidator(new QIntValidator(1, 999, m_increment));
    m_increment->setToolTip(tr("The number of frames skipped by clicking Skip Forwards/Backwards"));
    m_increment->setAccessibleName(tr("Frames to skip"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    row->addWidget(backwards);
    row->addWidget(m_increment);
    row->addWidget(forwards);

    connect(backwards, &QToolButton::clicked, this,
            &ViewerFrameSkipControl::skipBackwardsButtonClicked);
    connect(forwards, &QToolButton::clicked, this,
            &ViewerFrameSkipControl::skipForwardsButtonClicked);
    connect(m_increment, &QLineEdit::editingFinished, this,
            &ViewerFrameSkipControl::finishedEditing);
}

ViewerFrameSkipControl::~ViewerFrameSkipControl() = default;

void ViewerFrameSkipControl::setIncrement(int increment) {
    m_increment->setText(QString::number(increment));
    m_increment->setModified(false);
}

void ViewerFrameSkipControl::frameIncrementChanged(int value) {
    setIncrement(value);
}

void ViewerFrameSkipControl::finishedEditing() {
    if (!m_increment->isModified())
        return;
    m_increment->setModified(false);
    Q_EMIT incrementFieldValueChanged(m_increment->text().toInt());
}

} // namespace Kestrel::UI
