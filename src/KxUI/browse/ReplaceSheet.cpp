#include <KxUI/browse/ReplaceSheet_p.h>

#include <KxUI/browse/NoticeLine_p.h>
#include <KxUI/kit/PushButton.h>

#include <QAccessible>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

namespace Kestrel::UI {

ReplaceSheet::ReplaceSheet(QWidget* parent)
    : QFrame(parent)
    , m_sign(new QLabel)
    , m_title(new QLabel)
    , m_text(new QLabel)
    , m_cancel(new PushButton(tr("Cancel")))
    , m_next(new PushButton(tr("Next &Version")))
    , m_confirm(new PushButton) {
    setFrameShape(QFrame::StyledPanel);
    setObjectName(QStringLiteral("sheet"));
    QFont bold = font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_title->setTextFormat(Qt::PlainText);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::NoTextInteraction);
    m_cancel->setObjectName(QStringLiteral("sheetCancel"));
    m_next->setObjectName(QStringLiteral("sheetNextVersion"));
    m_confirm->setObjectName(QStringLiteral("sheetConfirm"));
    m_confirm->setRole(PushButton::DangerRole);
    m_next->setAutoDefault(false);

    auto* grid = new QGridLayout(this);
    grid->addWidget(m_sign, 0, 0, Qt::AlignTop);
    grid->addWidget(m_title, 0, 1);
    grid->addWidget(m_text, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (PushButton* button : {m_cancel, m_next, m_confirm})
        buttons->addWidget(button);
    grid->addLayout(buttons, 2, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    connect(m_cancel, &QAbstractButton::clicked, this, &ReplaceSheet::cancelled);
    connect(m_next, &QAbstractButton::clicked, this, &ReplaceSheet::nextVersionWanted);
    connect(m_confirm, &QAbstractButton::clicked, this, &ReplaceSheet::confirmed);
}

void ReplaceSheet::ask(const ChooserTexts::Question& question, bool offersNextVersion) {
    m_title->setText(question.title);
    m_text->setText(question.text);
    m_confirm->setText(question.confirm);
    m_next->setVisible(offersNextVersion);
    m_sign->setPixmap(noticeSign(ChooserTexts::Notice::Kind::Warning, *this));
    setAccessibleName(question.title);
    setAccessibleDescription(question.text);
    show();
    m_cancel->setDefault(true);
    m_cancel->setFocus(Qt::OtherFocusReason);
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ReplaceSheet::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_sign->setPixmap(noticeSign(ChooserTexts::Notice::Kind::Warning, *this));
}

void ReplaceSheet::keyPressEvent(QKeyEvent* event) {
    const QKeySequence letter = QKeySequence::mnemonic(m_confirm->text());
    const bool isPlain = event->modifiers() == Qt::NoModifier;
    if (isPlain && !letter.isEmpty() && QKeySequence(Qt::ALT | event->key()) == letter)
        m_confirm->click();
    else
        QFrame::keyPressEvent(event);
}

} // namespace Kestrel::UI
