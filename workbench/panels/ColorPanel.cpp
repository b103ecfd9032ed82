#include "panels/ColorPanel.h"

#include "media/DisplayTable.h"
#include "panels/SwatchKeeper.h"
#include "panels/ViewerCanvas.h"
#include "play/Session.h"

#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/picker/ColorPicker.h>
#include <KxUI/settings/AppSettings.h>

#include <QApplication>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr int margin = 8;
constexpr int gap = 4;
constexpr int widthForTwoColumns = 540;
const auto stateKey = QStringLiteral("color/picker");

template <double (*Convert)(double)>
void convertAll(float* rgb, int pixels) {
    for (int i = 0; i < 3 * pixels; ++i) {
        const double size = Convert(std::fabs(double(rgb[i])));
        rgb[i] = float(std::copysign(size, double(rgb[i])));
    }
}

bool allAtLeast(const Factors& light, float least) {
    return std::all_of(light.begin(), light.end(), [least](float part) { return part >= least; });
}

/** How the viewer shows light. */
UI::DisplayTransform viewing() {
    return {convertAll<srgbSignal>, convertAll<srgbLight>, QStringLiteral("sRGB")};
}

} // namespace

ColorPanel::ColorPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_picker(new UI::ColorPicker)
    , m_keeper(new SwatchKeeper(&m_swatches, SwatchKeeper::standardPath(), this)) {
    setObjectName(QStringLiteral("ColorPanel"));
    m_swatches.setDisplayTransform(viewing());
    m_picker->setDisplayTransform(viewing());
    m_picker->setCompact(true);
    m_picker->setSwatches(&m_swatches);
    m_picker->setColor({0.18F, 0.18F, 0.18F, 1.0F});
    m_picker->setPreviousColor(m_picker->color());
    m_picker->restoreState(UI::AppSettings().value(stateKey).toByteArray());

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(margin, gap, margin, margin);
    column->setSpacing(margin);
    column->addLayout(makeButtons());
    column->addWidget(m_picker, 1);
    m_note = new QLabel;
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();
    column->addWidget(m_note);
    auto* scroll = new QScrollArea;
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);

    connect(m_keeper, &SwatchKeeper::failed, this, [this](const QString& reason) {
        m_note->setText(reason);
        m_note->show();
    });
    connect(m_picker, &UI::ColorPicker::samplingChanged, this, &ColorPanel::findPictures);
    connect(m_picker, &UI::ColorPicker::colorChanged, this, &ColorPanel::showWhatIsPossible);
    connect(m_picker, &UI::ColorPicker::editFinished, this, [this](bool accepted) {
        if (accepted && m_picker->isSampling())
            m_swatches.remember(m_picker->color());
    });
    connect(session, &Session::sequenceChanged, this, &ColorPanel::showWhatIsPossible);
    showWhatIsPossible();
}

ColorPanel::~ColorPanel() {
    UI::AppSettings().setValue(stateKey, m_picker->saveState());
    delete m_keeper; // before the swatches
    m_picker->setSwatches(nullptr);
}

QLayout* ColorPanel::makeButtons() {
    auto* row = new QHBoxLayout;
    const auto button = [row](const QString& text, const QString& tip) {
        auto* made = new QToolButton;
        made->setText(text);
        made->setToolTip(tip);
        made->setAutoRaise(true);
        row->addWidget(made);
        return made;
    };
    m_tint = button(tr("Tint Gain"), tr("The gain gets this hue and saturation"));
    m_grey =
        button(tr("Make Grey"),
               tr("The gain becomes the one by which this colour, taken from the picture, is a "
                  "grey: for white balance"));
    row->addStretch(1);
    row->addWidget(makePaletteButton());
    connect(m_tint, &QToolButton::clicked, this, [this] {
        setGain(tintOf(m_picker->color(), m_session->grades()->grade().gain), tr("Tint Gain"));
    });
    connect(m_grey, &QToolButton::clicked, this, [this] {
        setGain(greyingOf(m_picker->color(), m_session->grades()->grade().gain), tr("Make Grey"));
    });
    return row;
}

QToolButton* ColorPanel::makePaletteButton() {
    auto* button = new QToolButton;
    button->setText(tr("Palette"));
    button->setToolTip(tr("Swatches from files and to files, also of other programs"));
    button->setAutoRaise(true);
    button->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(button);
    connect(menu->addAction(tr("&Import...")), &QAction::triggered, this,
            [this] { askForFile(true); });
    QAction* exports = menu->addAction(tr("&Export..."));
    connect(exports, &QAction::triggered, this, [this] { askForFile(false); });
    connect(menu, &QMenu::aboutToShow, this,
            [this, exports] { exports->setEnabled(m_swatches.count() > 0); });
    button->setMenu(menu);
    return button;
}

void ColorPanel::askForFile(bool imports) {
    using Chooser = UI::FileChooserDialog;
    auto* chooser = Chooser::open(
        imports ? Chooser::OpenFile : Chooser::SaveFile, this, QStringLiteral("palette"),
        {tr("Palettes (*.gpl)")}, [this, imports](const std::vector<Chooser::Choice>& choices) {
            const QString path = QFile::decodeName(choices.front().path);
            m_note->hide();
            imports ? m_keeper->importFile(path) : m_keeper->exportFile(path);
        });
    chooser->setWindowTitle(imports ? tr("Import Palette") : tr("Export Palette"));
    chooser->setAcceptsSequences(false);
}

std::optional<GainColor> ColorPanel::tintOf(const UI::ColorValue& color, const GainColor& before) {
    const Factors light{color.red, color.green, color.blue};
    if (!allAtLeast(light, 0.0F) || light == Factors{})
        return std::nullopt;
    GainColor gain = gainColor(light, before);
    gain.value = before.value;
    return gain;
}

std::optional<GainColor> ColorPanel::greyingOf(const UI::ColorValue& color,
                                               const GainColor& before) {
    const Factors light{color.red, color.green, color.blue};
    constexpr float darkest = 1e-6F;
    if (!allAtLeast(light, darkest))
        return std::nullopt;
    const float least = *std::min_element(light.begin(), light.end());
    GainColor gain = gainColor({least / light[0], least / light[1], least / light[2]}, before);
    gain.value = before.value;
    return gain;
}

void ColorPanel::setGain(const std::optional<GainColor>& gain, const QString& text) {
    Grade grade = m_session->grades()->grade();
    if (!gain || grade.gain == *gain)
        return;
    grade.gain = *gain;
    m_session->grades()->edit(grade, text);
}

/** All viewers that there are, wherever they are docked. */
void ColorPanel::findPictures() {
    m_session->readPixels(m_picker->isSampling());
    if (!m_picker->isSampling())
        return;
    const auto widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        auto* canvas = qobject_cast<ViewerCanvas*>(widget);
        if (!canvas)
            continue;
        m_picker->addSampleSource(
            canvas, [this, canvas](const QPoint& global) -> std::optional<UI::ColorValue> {
                const auto pixel = m_session->pixelAt(canvas->pixelUnder(global));
                if (!pixel)
                    return std::nullopt;
                const auto& light = pixel->light;
                return UI::ColorValue{float(light[0]), float(light[1]), float(light[2]), 1.0F};
            });
    }
}

void ColorPanel::showWhatIsPossible() {
    const bool hasSequence = m_session->grades()->hasSequence();
    const GainColor gain = m_session->grades()->grade().gain;
    m_tint->setEnabled(hasSequence && tintOf(m_picker->color(), gain));
    m_grey->setEnabled(hasSequence && greyingOf(m_picker->color(), gain));
}

void ColorPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_picker->setCompact(width() < widthForTwoColumns);
}

} // namespace Kestrel::Workbench
