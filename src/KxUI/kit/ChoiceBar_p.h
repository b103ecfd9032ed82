#pragma once

#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceBarLayout_p.h>
#include <KxUI/kit/Choices_p.h>

#include <optional>
#include <vector>

class QKeyEvent;
class QPainter;

namespace Kestrel::UI {

/** The data of a ChoiceBar, and how it is drawn. */
class ChoiceBarPrivate : public ChoicesPrivate {
public:
    /** Stands for the part that opens the menu where the number of a choice is
     * asked. */
    static constexpr int MenuPart = -2;

    /** In pixels: around a label, between icon and text, and of the menu's arrow.
     */
    static constexpr int PaddingX = 9;
    static constexpr int PaddingY = 4;
    static constexpr int LabelGap = 4;
    static constexpr int ArrowRoom = 14;

    explicit ChoiceBarPrivate(ChoiceBar* bar)
        : ChoicesPrivate(bar)
        , q(bar) {}

    void tell(ChoiceSignal signal, int value) override;
    void shown(bool sizes) override;

    const std::vector<ChoiceWidth>& widths();
    const ChoiceBarLayout& layout();
    /** Forgets what follows from texts, font and style. */
    void forgetSizes();
    void forgetLayout() { m_layout.reset(); }
    int height() const;
    int menuWidth() const;
    /** The choice at a point, `MenuPart`, or -1. */
    int partAt(const QPoint& point);

    /** Where the keyboard is; -1 without choices. */
    int cursor() const;
    /** To a choice by the keyboard: chooses it where the bar is exclusive. */
    void goTo(int index, const QKeyEvent& event);
    void openMenu();
    /** Where `key` leads from the cursor, -1 for nowhere; empty for another key.
     */
    std::optional<int> wayOf(int key) const;
    bool handleKey(const QKeyEvent& event);
    /** Whether a shortcut of the window must not get it. */
    bool isOwn(const QKeyEvent& event) const;

    /** Registers the letters of the choices. */
    void grabLetters();
    /** A letter's shortcut was used. */
    void letterUsed(int id);

    void setHovered(int part);
    void setPressed(int part);

    void paint(QPainter& painter);

    ChoiceBar* const q;
    Qt::ToolButtonStyle buttonStyle = Qt::ToolButtonTextBesideIcon;
    bool uniformSizes = false;
    int keyboardAt = -1; ///< where the bar is not exclusive
    int hovered = -1;
    int pressed = -1;

private:
    struct Look;
    /** What is painted on: the bar's size in whole device pixels, and how many of these there are to
        a unit of it. */
    struct Canvas {
        QSizeF size;
        double ratio;
    };

    int iconSize() const;
    Qt::ToolButtonStyle style() const;
    Look lookOf(int part);
    void paintPart(QPainter& painter, int part, const QRect& rect, const Canvas& canvas);
    void paintFocus(QPainter& painter, double ratio);
    void paintLabel(QPainter& painter, const Choice& choice, const QRect& rect, const Look& look);
    void paintMenuLabel(QPainter& painter, const QRect& rect, const Look& look);

    std::optional<std::vector<ChoiceWidth>> m_widths;
    std::optional<ChoiceBarLayout> m_layout;
    QMenu* m_menu = nullptr;
    std::vector<int> m_letters; ///< identifiers of shortcuts; 0 for a choice without a letter
    bool m_lettersKnown = false;
};

} // namespace Kestrel::UI
