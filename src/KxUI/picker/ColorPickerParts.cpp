#include <KxUI/picker/ColorPicker_p.h>

#include <KxUI/color/ColorConversions.h>
#include <KxUI/kit/HorizontalLayout.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/VerticalLayout.h>
#include <KxUI/picker/ColorSampler_p.h>

#include <QGridLayout>
#include <QLabel>
#include <QStackedWidget>
#include <QToolButton>

namespace Kestrel::UI {
namespace {

constexpr int LinkWidth = 18;
constexpr int SwatchWidth = 34;
constexpr int SwatchHeight = 26;
constexpr int PictureSide = 180;
constexpr int WideNumbers = 300;
constexpr int CompactWidth = 204; // of 220, without the margins

QToolButton* iconButton(const QString& icon, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setIcon(IconFactory::icon(icon));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QLabel* smallLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(QPalette::WindowText);
    return label;
}

} // namespace

void ColorPickerParts::build(ColorPicker* picker) {
    halves = new QBoxLayout(QBoxLayout::LeftToRight, picker);
    const int margin = HorizontalLayout::Margin;
    halves->setContentsMargins(margin, margin, margin, margin);
    halves->setSpacing(HorizontalLayout::SectionGap);
    buildPictures(picker);
    buildNumbers(picker);
    halves->addWidget(pictures, 1);
    halves->addWidget(numbers, 1);
    orderTabs();
}

void ColorPickerParts::buildPictures(ColorPicker* picker) {
    pictures = new QWidget(picker);
    auto* column = new VerticalLayout(pictures);
    pictureBar = new ChoiceBar(pictures);
    stack = new QStackedWidget(pictures);
    stack->setMinimumHeight(PictureSide);
    column->addWidget(pictureBar);
    column->addWidget(stack, 1);

    wheel = new ColorWheel(ColorWheel::ColorTransform(), ColorWheel::ValueRingWheel, stack);
    wheel->setZoomEnabled(false); // the wheel of the mouse scrolls what is around
    wheel->setFocusPolicy(Qt::StrongFocus);
    wheel->setMinimumSize(PictureSide, PictureSide);
    fieldPage = new QWidget(stack);
    auto* fieldColumn = new VerticalLayout(fieldPage);
    field = new ColorField(fieldPage);
    pinBar = new ChoiceBar(fieldPage);
    pinBar->setUniformSizes(true);
    fieldColumn->addWidget(field, 1);
    fieldColumn->addWidget(pinBar);
    swatchPage = new QWidget(stack);
    auto* swatchColumn = new VerticalLayout(swatchPage);
    grid = new SwatchGrid(swatchPage);
    addSwatch = iconButton(QStringLiteral("Add"), swatchPage);
    addSwatch->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    swatchColumn->addWidget(grid, 1);
    swatchColumn->addWidget(addSwatch, 0, Qt::AlignLeft);
    for (QWidget* page : {static_cast<QWidget*>(wheel), fieldPage, swatchPage})
        stack->addWidget(page);
}

void ColorPickerParts::buildRows(QGridLayout* layout) {
    int row = 0;
    for (ColorPickerRow& each : rows) {
        each.link = iconButton(QStringLiteral("Link"), numbers);
        each.link->setCheckable(true);
        each.link->setFixedWidth(LinkWidth);
        QSizePolicy policy = each.link->sizePolicy();
        policy.setRetainSizeWhenHidden(true); // the columns are the same for all models
        each.link->setSizePolicy(policy);
        layout->addWidget(each.link, row, ColorPickerRow::Link);
        each.build(layout, row++, numbers);
    }
    alpha.build(layout, row++, numbers);
    exposureLabel = smallLabel(numbers);
    exposureSlider = new LinearSlider(numbers);
    exposureSlider->setRange(LeastStops, MostStops);
    exposureSlider->setCentre(0.0);
    exposureSlider->setSingleStep(0.1);
    exposureSlider->setMinimumWidth(0);
    exposureNumber = makeNumberField(numbers);
    exposureNumber->setRange(-static_cast<double>(ColorState::MostStops),
                             static_cast<double>(ColorState::MostStops));
    exposureNumber->setSoftRange(LeastStops, MostStops);
    exposureNumber->setSingleStep(0.1);
    exposureNumber->setDecimals(2);
    exposureNumber->setFewestDecimals(2);
    exposureNumber->setLabel(exposureLabel);
    layout->addWidget(exposureLabel, row, ColorPickerRow::Label);
    layout->addWidget(exposureSlider, row, ColorPickerRow::Slider);
    layout->addWidget(exposureNumber, row++, ColorPickerRow::Number);
    optionLabel = smallLabel(numbers);
    option = new ChoiceButton(numbers);
    for (int i = 0; i < ColorSpace::Count; ++i)
        option->addChoice(QString::fromLatin1(colorSpaceName(i)));
    option->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    layout->addWidget(optionLabel, row, ColorPickerRow::Label);
    layout->addWidget(option, row, ColorPickerRow::Slider, 1, 2);
    layout->setColumnStretch(ColorPickerRow::Slider, 1);
}

QLayout* ColorPickerParts::makeBottom() {
    auto* row = new HorizontalLayout;
    auto* pair = new HorizontalLayout(0, 0);
    oldSwatch = new ColorSwatch(numbers);
    oldSwatch->setReadOnly(true);
    newSwatch = new ColorSwatch(numbers);
    for (ColorSwatch* swatch : {oldSwatch, newSwatch}) {
        swatch->setFixedSize(SwatchWidth, SwatchHeight);
        pair->addWidget(swatch);
    }
    code = new ColorCodeEdit(numbers);
    pipette = iconButton(QStringLiteral("Pipette"), numbers);
    pipette->setCheckable(true);
    row->addLayout(pair);
    row->addWidget(pipette);
    row->addWidget(code, 1);
    return row;
}

void ColorPickerParts::buildNumbers(ColorPicker* picker) {
    numbers = new QWidget(picker);
    auto* column = new VerticalLayout(numbers);
    numberBar = new ChoiceBar(numbers);
    auto* layout = new QGridLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(HorizontalLayout::Gap);
    layout->setVerticalSpacing(HorizontalLayout::Gap);
    buildRows(layout);
    note = smallLabel(numbers);
    note->setWordWrap(true);
    note->hide();
    displayName = smallLabel(numbers);
    displayName->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    displayName->setEnabled(false); // a remark
    displayName->hide();
    column->addWidget(numberBar);
    column->addLayout(layout);
    column->addWidget(note);
    column->addStretch(1);
    column->addLayout(makeBottom());
    column->addWidget(displayName);
}

// As the eye goes: pictures, sliders with their numbers, code, old and new.
void ColorPickerParts::orderTabs() {
    QVector<QWidget*> order{pictureBar, wheel, field, pinBar, grid, addSwatch, numberBar};
    for (const ColorPickerRow& row : rows)
        order << row.link << row.slider << row.number;
    order << alpha.slider << alpha.number << exposureSlider << exposureNumber << option << code
          << oldSwatch << newSwatch << pipette;
    for (int i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

void ColorPickerParts::nameParts(bool isCompact) {
    exposureLabel->setText(isCompact ? ColorPicker::tr("Ex", "exposure, short")
                                     : ColorPicker::tr("Exposure"));
    exposureLabel->setToolTip(ColorPicker::tr("Exposure of the colour, in stops"));
    exposureSlider->setAccessibleName(ColorPicker::tr("Exposure"));
    exposureNumber->setAccessibleName(ColorPicker::tr("Exposure"));
    optionLabel->setText(isCompact ? QString() : ColorPicker::tr("Coding"));
    option->setToolTip(ColorPicker::tr("By which luma, Cb and Cr are made of red, green, blue"));
    option->setAccessibleName(ColorPicker::tr("Coding"));
    for (const ColorPickerRow& row : rows) {
        row.link->setToolTip(ColorPicker::tr("Linked channels keep to their ratios"));
        row.link->setAccessibleName(ColorPicker::tr("Linked"));
    }
    note->setText(ColorPicker::tr("Parts below 0 are seen as 0 here; an edit clears them."));
    addSwatch->setText(ColorPicker::tr("Keep Colour"));
    oldSwatch->setAccessibleName(ColorPicker::tr("Previous colour"));
    newSwatch->setAccessibleName(ColorPicker::tr("Colour"));
    pipette->setAccessibleName(ColorPicker::tr("Pipette"));
    pipette->setToolTip(ColorSampler::hint());
}

void ColorPickerParts::setCompact(bool isCompact) {
    halves->setDirection(isCompact ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    halves->setStretch(1, isCompact ? 0 : 1);
    pictures->setMinimumWidth(isCompact ? PictureSide : pictureBar->sizeHint().width());
    numbers->setMinimumWidth(isCompact ? CompactWidth : WideNumbers);
    nameParts(isCompact);
}

} // namespace Kestrel::UI
