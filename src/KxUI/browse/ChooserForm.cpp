#include <KxUI/browse/ChooserForm_p.h>

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/NoticeLine_p.h>
#include <KxUI/browse/ReplaceSheet_p.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/PushButton.h>

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>

#include <initializer_list>

namespace Kestrel::UI {
namespace {

using Widgets = std::initializer_list<QWidget*>;

constexpr int MostDigits = 9;

QToolButton* toolButton(QWidget* parent, const QString& text, const QString& tip) {
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAutoRaise(false);
    return button;
}

QLabel* labelOf(QWidget* field, const QString& text) {
    auto* label = new QLabel(text, field->parentWidget());
    label->setBuddy(field);
    return label;
}

} // namespace

void ChooserForm::build(QWidget* dialog) {
    browser = new FileBrowser(dialog);
    makeNameRow(dialog);
    makeKindRow(dialog);
    makeFilterRow(dialog);
    makeButtons(dialog);
    auto* column = new QVBoxLayout(dialog);
    column->addWidget(browser, 1);
    column->addLayout(layOut());
    column->addWidget(buttons);
    column->addWidget(sheet);
    sheet->hide();
}

void ChooserForm::makeNameRow(QWidget* dialog) {
    name = new QLineEdit(dialog);
    name->setObjectName(QStringLiteral("name"));
    // A path reads from left to right in all languages.
    name->setLayoutDirection(Qt::LeftToRight);
    nameLabel = labelOf(name, QString());
    recent = toolButton(dialog, QString(), tr("Files used last"));
    recent->setObjectName(QStringLiteral("recent"));
    recent->setArrowType(Qt::DownArrow);
    lower = toolButton(dialog, QStringLiteral("\u2212"), tr("Version before (Ctrl+Minus)"));
    lower->setObjectName(QStringLiteral("lowerVersion"));
    higher = toolButton(dialog, QStringLiteral("+"), tr("Next version (Ctrl+Plus)"));
    higher->setObjectName(QStringLiteral("higherVersion"));
    frames = new QLineEdit(dialog);
    frames->setObjectName(QStringLiteral("frames"));
    frames->setLayoutDirection(Qt::LeftToRight);
    frames->setFixedWidth(frames->fontMetrics().averageCharWidth() * 18);
    frames->setToolTip(tr("Frames to be opened, as 1001-1100 or 1001-1100x2"));
    framesLabel = labelOf(frames, tr("Fra&mes:"));
    notice = new NoticeLine(dialog);
}

void ChooserForm::makeKindRow(QWidget* dialog) {
    as = new ChoiceBar(dialog);
    as->setObjectName(QStringLiteral("as"));
    as->addChoice(tr("Sequence"));
    as->addChoice(tr("Single file"));
    asLabel = labelOf(as, tr("As:"));
    as->setAccessibleName(tr("As"));
    padding = new QSpinBox(dialog);
    padding->setObjectName(QStringLiteral("padding"));
    padding->setRange(1, MostDigits);
    padding->setToolTip(tr("Digits of the frame at least"));
    paddingLabel = labelOf(padding, tr("&Padding:"));
}

void ChooserForm::makeFilterRow(QWidget* dialog) {
    filter = new QComboBox(dialog);
    filter->setObjectName(QStringLiteral("filter"));
    filterLabel = labelOf(filter, tr("F&ilter:"));
    ownFilter = toolButton(dialog, QString(), tr("Show what the filter beside it asks for again"));
    ownFilter->setObjectName(QStringLiteral("ownFilter"));
    ownFilter->hide();
}

void ChooserForm::makeButtons(QWidget* dialog) {
    buttons = new QWidget(dialog);
    cancel = new PushButton(tr("Cancel"), buttons);
    cancel->setObjectName(QStringLiteral("cancel"));
    accept = new PushButton(buttons);
    accept->setObjectName(QStringLiteral("accept"));
    accept->setRole(PushButton::DefaultRole);
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch(1);
    row->addWidget(cancel);
    row->addWidget(accept);
    sheet = new ReplaceSheet(dialog);
}

QGridLayout* ChooserForm::layOut() {
    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    auto* nameRow = new QHBoxLayout;
    nameRow->addWidget(name, 1);
    for (QWidget* each : Widgets{recent, lower, higher})
        nameRow->addWidget(each);
    framesLabel->setContentsMargins(6, 0, 0, 0);
    nameRow->addWidget(framesLabel);
    nameRow->addWidget(frames);
    auto* kindRow = new QHBoxLayout;
    kindRow->addWidget(as);
    kindRow->addSpacing(12);
    kindRow->addWidget(paddingLabel);
    kindRow->addWidget(padding);
    kindRow->addStretch(1);
    auto* filterRow = new QHBoxLayout;
    filterRow->addWidget(filter, 1);
    filterRow->addWidget(ownFilter);
    extraRow = new QHBoxLayout;
    const auto right = Qt::AlignRight | Qt::AlignVCenter;
    grid->addWidget(nameLabel, 0, 0, right);
    grid->addLayout(nameRow, 0, 1);
    grid->addWidget(notice, 1, 1);
    grid->addWidget(asLabel, 2, 0, right);
    grid->addLayout(kindRow, 2, 1);
    grid->addWidget(filterLabel, 3, 0, right);
    grid->addLayout(filterRow, 3, 1);
    grid->addLayout(extraRow, 4, 1);
    return grid;
}

void ChooserForm::orderTabs(QWidget* extra) const {
    QWidget* before = name;
    const auto then = [&](QWidget* widget) {
        QWidget::setTabOrder(before, widget);
        before = widget;
    };
    for (QWidget* each : Widgets{recent, lower, higher, frames, as, padding, filter, ownFilter})
        then(each);
    if (extra)
        then(extra);
    then(cancel);
    then(accept);
}

void ChooserForm::showFields(const Fields& fields) {
    const bool isFolder = fields.mode == NameRules::Mode::OpenFolder;
    const bool isSave = fields.mode == NameRules::Mode::SaveFile;
    for (QWidget* each : Widgets{lower, higher})
        each->setVisible(isSave && fields.hasVersion);
    for (QWidget* each : Widgets{framesLabel, frames})
        each->setVisible(fields.hasFrames && !isSave && !isFolder);
    for (QWidget* each : Widgets{asLabel, as})
        each->setVisible(isSave && fields.choosesKind);
    for (QWidget* each : Widgets{paddingLabel, padding})
        each->setVisible(isSave && fields.hasPadding);
    for (QWidget* each : Widgets{filterLabel, filter})
        each->setVisible(fields.hasFilters && !isFolder);
    recent->setVisible(!isFolder);
}

} // namespace Kestrel::UI
