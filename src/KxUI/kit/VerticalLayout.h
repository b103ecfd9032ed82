#pragma once

#include <KxUI/Export.h>

#include <QVBoxLayout>

namespace Kestrel::UI {

/** A column of widgets as panels are made of: without margins, and with the same gap everywhere.
    Interface thread. */
class KXUI_EXPORT VerticalLayout : public QVBoxLayout {
    Q_OBJECT

public:
    /** Distances in pixels: between what belongs together, between sections, and around a panel. */
    static constexpr int Gap = 6;
    static constexpr int SectionGap = 12;
    static constexpr int Margin = 8;

    /** Without margins, `Gap` between the items. Lays out `parent` when it is given. */
    explicit VerticalLayout(QWidget* parent = nullptr);
    /** With `margin` pixels on all sides and `spacing` between the items. */
    VerticalLayout(int margin, int spacing, QWidget* parent = nullptr);
};

} // namespace Kestrel::UI
