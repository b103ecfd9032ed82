#pragma once

#include <KxUI/color/ColorWheel.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/picker/ColorCodeEdit_p.h>
#include <KxUI/picker/ColorField_p.h>
#include <KxUI/picker/ColorPicker.h>
#include <KxUI/picker/ColorPickerRow_p.h>
#include <KxUI/picker/ColorSwatch.h>
#include <KxUI/picker/SwatchGrid.h>
#include <KxUI/picker/SwatchModel.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QPointer>

#include <array>
#include <functional>

class QBoxLayout;
class QGridLayout;
class QStackedWidget;
class QToolButton;

namespace Kestrel::UI {

class ColorSampler;

/** The widgets that a picker consists of. */
struct ColorPickerParts {
    static constexpr int LeastStops = -8; ///< of the slider; numbers go further
    static constexpr int MostStops = 8;

    QBoxLayout* halves = nullptr;
    QWidget* pictures = nullptr; ///< the half with wheel, field and swatches
    ChoiceBar* pictureBar = nullptr;
    QStackedWidget* stack = nullptr;
    ColorWheel* wheel = nullptr;
    QWidget* fieldPage = nullptr;
    ColorField* field = nullptr;
    ChoiceBar* pinBar = nullptr;
    QWidget* swatchPage = nullptr;
    SwatchGrid* grid = nullptr;
    QToolButton* addSwatch = nullptr;

    QWidget* numbers = nullptr; ///< the other half
    ChoiceBar* numberBar = nullptr;
    std::array<ColorPickerRow, 3> rows;
    ColorPickerRow alpha;
    QLabel* exposureLabel = nullptr;
    LinearSlider* exposureSlider = nullptr;
    DoubleSpinBox* exposureNumber = nullptr;
    QLabel* optionLabel = nullptr;
    ChoiceButton* option = nullptr;
    QLabel* note = nullptr;
    ColorSwatch* oldSwatch = nullptr;
    ColorSwatch* newSwatch = nullptr;
    ColorCodeEdit* code = nullptr;
    QToolButton* pipette = nullptr;
    QLabel* displayName = nullptr;

    void build(ColorPicker* picker);
    /** Texts that the language and the width decide. */
    void nameParts(bool isCompact);
    void setCompact(bool isCompact);

private:
    void buildPictures(ColorPicker* picker);
    void buildNumbers(ColorPicker* picker);
    void buildRows(QGridLayout* layout);
    QLayout* makeBottom();
    void orderTabs();
};

/** The state of a picker, the edit that goes on in one of its parts, and what all of them show. */
class ColorPickerPrivate {
public:
    explicit ColorPickerPrivate(ColorPicker* picker);
    static ColorPickerPrivate& of(const ColorPicker* picker) { return *picker->d; }

    /** By the host. */
    void setColor(const ColorValue& color);
    /** Something that is an edit by itself. */
    void editOnce(const std::function<void(ColorState&)>& edit);
    void cancel();
    bool isEditing() const { return m_active != nullptr; }

    void setDisplay(const DisplayTransform& transform);
    void setPages(ColorPicker::Pages wanted);
    void setCurrentPage(ColorPicker::Page page);
    ColorPicker::Pages shownPages() const { return picturePage | numberPage; }
    SwatchModel* swatches() const { return m_swatches ? m_swatches.data() : m_ownSwatches; }
    void setSwatches(SwatchModel* model);
    void setOption(int option);
    /** Which of its three the field of the present model has pinned. */
    void setPinned(int nth);
    void layOut();
    void showAll();
    QByteArray save() const;
    bool restore(const QByteArray& bytes);

    ColorPicker* q;
    ColorState state;
    ColorValue previous;
    DisplayCall display;
    ColorPicker::Pages pages = ColorPicker::Pages(ColorPicker::AllPages);
    ColorPicker::Page currentPage = ColorPicker::WheelPage;
    ColorPicker::Pages picturePage = ColorPicker::WheelPage;
    ColorPicker::Pages numberPage = ColorPicker::RgbPage;
    bool alphaEnabled = true;
    bool compact = false;
    int decimals = 4;
    ColorPickerParts parts;
    ColorSampler* sampler = nullptr;

private:
    using Change = std::function<void(ColorState& edited, const ColorState& start)>;

    void watchParts();
    void watchSampler();
    void sample(const ColorValue& color);
    void watchRow(const ColorPickerRow& row);
    template <class Part, class Value, class Edit>
    void watch(Part* part, void (Part::*edited)(Value), Edit change);
    void begin(QObject* part, std::function<void()> cancelPart);
    void edit(QObject* part, const Change& change);
    void finish(QObject* part, bool accepted);
    /** Shows a state and tells of it. False where the picker is gone. */
    bool become(const ColorState& next, bool byUser);
    bool settle();
    void takeTyped(const ColorValue& color, bool hasAlpha);
    void addShortcuts();
    void fillBars();
    ColorModel::Model model() const;
    ColorModel::Model fieldModel() const;

    ColorState m_start;
    QObject* m_active = nullptr;
    std::function<void()> m_cancelPart;
    QPointer<SwatchModel> m_swatches;
    SwatchModel* m_ownSwatches = nullptr;
    std::array<int, 4> m_pinned{0, 0, 2, 0}; ///< by model
};

} // namespace Kestrel::UI
