#include <KxUI/picker/ColorPicker_p.h>

#include <KxUI/picker/ColorSampler_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QDataStream>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>
#include <limits>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr ColorPicker::Page PicturePages[] = {ColorPicker::WheelPage, ColorPicker::FieldPage,
                                              ColorPicker::SwatchPage};
constexpr ColorPicker::Page NumberPages[] = {ColorPicker::RgbPage, ColorPicker::HsvPage,
                                             ColorPicker::TmiPage, ColorPicker::YCbCrPage};
constexpr quint32 StateMark = 0x4b785043; // "KxPC"
constexpr quint16 StateVersion = 1;
const char* const OptionKey = "picker/ycbcr";

bool isPicture(ColorPicker::Page page) {
    return page == ColorPicker::WheelPage || page == ColorPicker::FieldPage ||
           page == ColorPicker::SwatchPage;
}

QString pageName(ColorPicker::Page page) {
    switch (page) {
    case ColorPicker::WheelPage:
        return ColorPicker::tr("Wheel");
    case ColorPicker::FieldPage:
        return ColorPicker::tr("Field");
    case ColorPicker::SwatchPage:
        return ColorPicker::tr("Swatches");
    case ColorPicker::RgbPage:
        return QStringLiteral("RGB");
    case ColorPicker::HsvPage:
        return QStringLiteral("HSV");
    case ColorPicker::TmiPage:
        return QStringLiteral("TMI");
    default:
        return QStringLiteral("YCbCr");
    }
}

// The transform for widgets that are used alone, too: it never throws.
DisplayTransform guarded(const DisplayCall& display) {
    DisplayTransform transform{display.function(), {}, display.transform().name};
    if (display.isPlain() || !display.isInvertible())
        return transform;
    transform.fromDisplay = [display](float* rgb, int pixels) {
        if (!display.fromDisplay(rgb, pixels)) // no colour then
            std::fill(rgb, rgb + 3 * static_cast<std::ptrdiff_t>(pixels),
                      std::numeric_limits<float>::quiet_NaN());
    };
    return transform;
}

} // namespace

ColorPickerPrivate::ColorPickerPrivate(ColorPicker* picker)
    : q(picker) {
    parts.build(picker);
    state.setYCbCr(AppSettings().value(QLatin1String(OptionKey)).toInt());
    parts.option->setCurrentIndex(state.ycbcr());
    m_ownSwatches = new SwatchModel(picker);
    parts.grid->setModel(m_ownSwatches);
    parts.alpha.setComponent(ColorModel::Alpha, false);
    parts.wheel->setColorSource([this] { return state.exposed(); });
    watchParts();
    watchSampler();
    addShortcuts();
    fillBars();
    layOut();
}

ColorModel::Model ColorPickerPrivate::model() const {
    switch (static_cast<int>(numberPage)) {
    case ColorPicker::HsvPage:
        return ColorModel::Hsv;
    case ColorPicker::TmiPage:
        return ColorModel::Tmi;
    case ColorPicker::YCbCrPage:
        return ColorModel::YCbCr;
    default:
        return ColorModel::Rgb;
    }
}

// Without pages of numbers the one that pickers are known for.
ColorModel::Model ColorPickerPrivate::fieldModel() const {
    return numberPage ? model() : ColorModel::Hsv;
}

template <class Part, class Value, class Edit>
void ColorPickerPrivate::watch(Part* part, void (Part::*edited)(Value), Edit change) {
    QObject::connect(part, &Part::editStarted, q,
                     [this, part] { begin(part, [part] { part->cancelEdit(); }); });
    QObject::connect(part, edited, q, [this, part, change](const auto& value) {
        edit(part,
             [&](ColorState& edits, const ColorState& start) { change(edits, start, value); });
    });
    QObject::connect(part, &Part::editFinished, q,
                     [this, part](bool accepted) { finish(part, accepted); });
}

void ColorPickerPrivate::watchRow(const ColorPickerRow& row) {
    ColorSlider* const slider = row.slider;
    const auto change = [slider](ColorState& edited, const ColorState& start, double number) {
        edited.setComponent(slider->component(), static_cast<float>(number), start);
    };
    watch<LinearSlider>(slider, &LinearSlider::valueEdited, change);
    watch(row.number, &DoubleSpinBox::valueEdited, change);
}

void ColorPickerPrivate::watchParts() {
    for (const ColorPickerRow& row : parts.rows)
        watchRow(row);
    watchRow(parts.alpha);
    const auto stops = [](ColorState& edited, const ColorState& start, double number) {
        edited.setStops(static_cast<float>(number), start);
    };
    watch(parts.exposureSlider, &LinearSlider::valueEdited, stops);
    watch(parts.exposureNumber, &DoubleSpinBox::valueEdited, stops);
    watch(parts.wheel, &ColorWheel::valueEdited,
          [](ColorState& edited, const ColorState&, const QVector3D& hsv) {
              edited.setComponents(ColorModel::Hsv, {hsv.x(), hsv.y(), hsv.z()});
          });
    watch(parts.field, &ColorField::valueEdited,
          [this](ColorState& edited, const ColorState&, const ColorValue&) {
              const ColorModel::Model edits = fieldModel();
              edited.setComponents(edits,
                                   ColorFieldPrivate::of(parts.field).state.components(edits));
          });
    watch(parts.newSwatch, &ColorSwatch::valueEdited,
          [](ColorState& edited, const ColorState&, const ColorValue& color) {
              edited.setColor(color);
          });
    const auto take = [this](const ColorValue& color) {
        editOnce([&](ColorState& edited) { edited.setColor(color); });
    };
    QObject::connect(parts.oldSwatch, &ColorSwatch::clicked, q, [=] { take(previous); });
    QObject::connect(parts.grid, &SwatchGrid::colorChosen, q, take);
    QObject::connect(
        parts.code, &ColorCodeEdit::taken, q,
        [this](const ColorValue& color, bool hasAlpha) { takeTyped(color, hasAlpha); });
    QObject::connect(parts.addSwatch, &QToolButton::clicked, q,
                     [this] { swatches()->append(state.color()); });
    for (std::size_t i = 0; i < parts.rows.size(); ++i) {
        QObject::connect(parts.rows[i].link, &QToolButton::toggled, q, [this, i](bool linked) {
            state.setLinked(linked ? state.linked() | 1U << i : state.linked() & ~(1U << i));
        });
    }
    QObject::connect(parts.option, &ChoiceButton::chosen, q, [this](int option) {
        AppSettings().setValue(QLatin1String(OptionKey), option);
        setOption(option);
    });
    const auto goTo = [this](const ChoiceBar* bar) {
        setCurrentPage(static_cast<ColorPicker::Page>(bar->currentData().toInt()));
    };
    for (const ChoiceBar* bar : {parts.pictureBar, parts.numberBar})
        QObject::connect(bar, &ChoiceBar::chosen, q, [=] { goTo(bar); });
    QObject::connect(parts.pinBar, &ChoiceBar::chosen, q, [this](int nth) { setPinned(nth); });
}

void ColorPickerPrivate::addShortcuts() {
    for (int bit = 0; bit < 7; ++bit) {
        auto* shortcut =
            new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + bit)), q);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        QObject::connect(shortcut, &QShortcut::activated, q,
                         [this, bit] { setCurrentPage(static_cast<ColorPicker::Page>(1 << bit)); });
    }
}

void ColorPickerPrivate::begin(QObject* part, std::function<void()> cancelPart) {
    const QPointer<ColorPicker> alive(q);
    if (m_active)
        finish(m_active, true);
    if (!alive)
        return;
    m_active = part;
    m_cancelPart = std::move(cancelPart);
    m_start = state;
    Q_EMIT q->editStarted();
}

void ColorPickerPrivate::edit(QObject* part, const Change& change) {
    if (part != m_active)
        return;
    ColorState edited = state;
    change(edited, m_start);
    become(edited, true);
}

void ColorPickerPrivate::finish(QObject* part, bool accepted) {
    if (part != m_active)
        return;
    const QPointer<ColorPicker> alive(q);
    // The bits of the start, which the part alone does not know.
    if (!accepted && !(state == m_start) && !become(m_start, true))
        return;
    if (m_active != part)
        return;
    m_active = nullptr;
    m_cancelPart = nullptr;
    if (settle())
        Q_EMIT q->editFinished(accepted);
}

void ColorPickerPrivate::editOnce(const std::function<void(ColorState&)>& edit) {
    const QPointer<ColorPicker> alive(q);
    if (m_active)
        finish(m_active, true);
    if (!alive)
        return;
    ColorState edited = state;
    edit(edited);
    if (edited == state) {
        showAll(); // what was typed in another notation
        return;
    }
    QObject* const self = q;
    begin(self, [] {});
    if (alive && m_active == self)
        become(edited, true);
    if (alive)
        finish(self, true);
}

void ColorPickerPrivate::cancel() {
    if (!m_active)
        return;
    const QPointer<ColorPicker> alive(q);
    const std::function<void()> cancelPart = m_cancelPart;
    cancelPart();
    if (alive && m_active == q)
        finish(q, false);
}

bool ColorPickerPrivate::become(const ColorState& next, bool byUser) {
    const QPointer<ColorPicker> alive(q);
    const bool isOther = next.color() != state.color();
    const bool isExposed = next.stops() != state.stops();
    state = next;
    showAll();
    if (alive && isOther)
        Q_EMIT q->colorChanged(state.color());
    if (alive && isExposed)
        Q_EMIT q->exposureChanged(q->exposure());
    if (alive && byUser)
        Q_EMIT q->valueEdited(state.color());
    return !alive.isNull();
}

bool ColorPickerPrivate::settle() {
    const QPointer<ColorPicker> alive(q);
    for (std::size_t i = 0; alive && i < parts.rows.size(); ++i)
        ColorSliderLook::of(parts.rows[i].slider).settleRange();
    return !alive.isNull();
}

void ColorPickerPrivate::setColor(const ColorValue& color) {
    if (color == state.color())
        return;
    ColorState next = state;
    next.setColor(color);
    if (become(next, false) && !m_active)
        settle();
}

void ColorPickerPrivate::takeTyped(const ColorValue& color, bool hasAlpha) {
    editOnce([&](ColorState& edited) {
        ColorValue taken = color;
        if (!hasAlpha || !alphaEnabled)
            taken.alpha = edited.color().alpha;
        edited.setColor(taken);
    });
}

void ColorPickerPrivate::showAll() {
    const QPointer<ColorPicker> alive(q);
    const ColorTriple hsv = state.components(ColorModel::Hsv);
    if (picturePage == ColorPicker::WheelPage) {
        const QVector3D shown(hsv[0], hsv[1], hsv[2]);
        if (parts.wheel->hsv() != shown)
            parts.wheel->updateFromControl();
        // The light does not tell the hue of a grey, the saturation of black, or a hue of 1.
        if (parts.wheel->hsv() != shown)
            parts.wheel->setHSV(shown);
        parts.wheel->setRingValue(hsv[2]);
    }
    if (picturePage == ColorPicker::FieldPage)
        ColorFieldPrivate::of(parts.field).show(state);
    if (numberPage) {
        for (const ColorPickerRow& row : parts.rows)
            row.show(state);
    }
    if (!alive)
        return;
    parts.alpha.show(state);
    if (static_cast<float>(parts.exposureSlider->value()) != state.stops())
        parts.exposureSlider->setValue(fewestDigits(state.stops()));
    showNumber(parts.exposureNumber, state.stops());
    parts.newSwatch->setColor(state.color());
    parts.code->show(state.color(), display, alphaEnabled);
    const bool isHsv = picturePage == ColorPicker::WheelPage || numberPage == ColorPicker::HsvPage;
    parts.note->setVisible(isHsv && state.isBelowZero());
}

void ColorPickerPrivate::setDisplay(const DisplayTransform& transform) {
    display = DisplayCall(transform);
    const DisplayTransform safe = guarded(display);
    parts.wheel->setColorTransform(safe.toDisplay);
    ColorFieldPrivate::of(parts.field).display = display;
    parts.field->update();
    for (const ColorPickerRow& row : parts.rows)
        ColorSliderLook::of(row.slider).setDisplay(display);
    ColorSliderLook::of(parts.alpha.slider).setDisplay(display);
    parts.oldSwatch->setDisplayTransform(safe);
    parts.newSwatch->setDisplayTransform(safe);
    parts.grid->setDisplayTransform(safe);
    m_ownSwatches->setDisplayTransform(safe);
    sampler->setDisplay(display);
    parts.displayName->setText(transform.name);
    parts.displayName->setToolTip(transform.name);
    parts.displayName->setVisible(!transform.name.isEmpty());
    showAll();
}

void ColorPickerPrivate::setSwatches(SwatchModel* model) {
    m_swatches = model;
    parts.grid->setModel(model ? model : m_ownSwatches);
    if (model) { // which the host may delete first
        QObject::connect(model, &QObject::destroyed, q, [this, model] {
            if (!m_swatches || m_swatches == model)
                parts.grid->setModel(m_ownSwatches);
        });
    }
}

void ColorPickerPrivate::fillBars() {
    const auto fill = [this](ChoiceBar* bar, const auto& offered) {
        bar->clearChoices();
        for (const ColorPicker::Page page : offered) {
            if (pages & page)
                bar->addChoice(pageName(page), QIcon(), static_cast<int>(page));
        }
        bar->setVisible(bar->choiceCount() > 1);
    };
    fill(parts.pictureBar, PicturePages);
    fill(parts.numberBar, NumberPages);
}

void ColorPickerPrivate::setPages(ColorPicker::Pages wanted) {
    const ColorPicker::Pages known = wanted & ColorPicker::Pages(ColorPicker::AllPages);
    if (known == pages)
        return;
    pages = known;
    const auto first = [this](ColorPicker::Pages shown, const auto& offered) {
        for (const ColorPicker::Page page : offered) {
            if (!(shown & pages) && (pages & page))
                shown = page;
        }
        return shown & pages;
    };
    const ColorPicker::Pages before = shownPages();
    picturePage = first(picturePage, PicturePages);
    numberPage = first(numberPage, NumberPages);
    if (!(shownPages() & currentPage))
        currentPage = static_cast<ColorPicker::Page>(
            static_cast<int>(picturePage ? picturePage : numberPage));
    fillBars();
    layOut();
    const QPointer<ColorPicker> alive(q);
    Q_EMIT q->pagesChanged();
    if (alive && shownPages() != before)
        Q_EMIT q->shownPagesChanged();
}

void ColorPickerPrivate::setCurrentPage(ColorPicker::Page page) {
    if (!(pages & page) || (page == currentPage && (shownPages() & page)))
        return;
    const QPointer<ColorPicker> alive(q);
    if (m_active)
        finish(m_active, true);
    if (!alive)
        return;
    currentPage = page;
    (isPicture(page) ? picturePage : numberPage) = page;
    layOut();
    if (alive)
        Q_EMIT q->shownPagesChanged();
}

void ColorPickerPrivate::setOption(int option) {
    if (option == state.ycbcr())
        return;
    ColorState next = state;
    next.setYCbCr(option);
    m_start.setYCbCr(option);
    become(next, false);
}

void ColorPickerPrivate::setPinned(int nth) {
    const ColorModel::Model pins = fieldModel();
    m_pinned[static_cast<std::size_t>(pins)] = nth;
    parts.field->setPinned(ColorModel::component(pins, nth));
    showAll();
}

void ColorPickerPrivate::layOut() {
    parts.setCompact(compact);
    parts.pictures->setVisible(static_cast<bool>(picturePage));
    parts.stack->setCurrentWidget(picturePage == ColorPicker::FieldPage    ? parts.fieldPage
                                  : picturePage == ColorPicker::SwatchPage ? parts.swatchPage
                                                                           : parts.wheel);
    parts.pictureBar->setCurrentIndex(parts.pictureBar->findChoice(static_cast<int>(picturePage)));
    parts.numberBar->setCurrentIndex(parts.numberBar->findChoice(static_cast<int>(numberPage)));
    for (int i = 0; i < 3; ++i) {
        ColorPickerRow& row = parts.rows[static_cast<std::size_t>(i)];
        row.setComponent(ColorModel::component(model(), i), compact);
        row.setDecimals(decimals);
        row.setVisible(static_cast<bool>(numberPage));
        row.link->setVisible(numberPage == ColorPicker::RgbPage);
    }
    parts.alpha.setComponent(ColorModel::Alpha, compact);
    parts.alpha.setDecimals(decimals);
    const bool hasOption = numberPage == ColorPicker::YCbCrPage;
    parts.option->setVisible(hasOption);
    parts.optionLabel->setVisible(hasOption);
    const ColorModel::Model pins = fieldModel();
    const int pinned = m_pinned[static_cast<std::size_t>(pins)];
    parts.pinBar->clearChoices();
    for (int i = 0; i < 3; ++i) {
        const ColorModel::Component component = ColorModel::component(pins, i);
        parts.pinBar->addChoice(componentLetter(component));
        parts.pinBar->setChoiceToolTip(i,
                                       ColorPicker::tr("%1 stays").arg(componentName(component)));
    }
    parts.pinBar->setCurrentIndex(pinned);
    parts.field->setPinned(ColorModel::component(pins, pinned));
    showAll();
    settle();
}

QByteArray ColorPickerPrivate::save() const {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << StateMark << StateVersion << quint32(pages) << quint32(shownPages())
           << quint32(currentPage) << quint32(state.ycbcr());
    for (const int pinned : m_pinned)
        stream << quint32(pinned);
    return bytes;
}

bool ColorPickerPrivate::restore(const QByteArray& bytes) {
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_5_15);
    quint32 mark = 0;
    quint16 version = 0;
    std::array<quint32, 8> saved{};
    stream >> mark >> version;
    for (quint32& each : saved)
        stream >> each;
    const auto [offered, shown, current, option, a, b, c, e] = saved;
    const quint32 pinned[] = {a, b, c, e};
    if (stream.status() != QDataStream::Ok || mark != StateMark || version != StateVersion ||
        offered > ColorPicker::AllPages || (shown & ~offered) || option > 4 ||
        std::any_of(std::begin(pinned), std::end(pinned), [](quint32 nth) { return nth > 2; }))
        return false;
    const QPointer<ColorPicker> alive(q);
    for (std::size_t i = 0; i < m_pinned.size(); ++i)
        m_pinned[i] = static_cast<int>(pinned[i]);
    setPages(ColorPicker::Pages(static_cast<int>(offered)));
    for (int page = 1; alive && page < ColorPicker::AllPages; page *= 2) {
        if (static_cast<int>(shown) & page)
            setCurrentPage(static_cast<ColorPicker::Page>(page));
    }
    if (alive && (shown & current))
        setCurrentPage(static_cast<ColorPicker::Page>(static_cast<int>(current)));
    if (alive)
        setOption(static_cast<int>(option));
    if (alive)
        parts.option->setCurrentIndex(state.ycbcr());
    if (alive)
        layOut();
    return true;
}

} // namespace Kestrel::UI
