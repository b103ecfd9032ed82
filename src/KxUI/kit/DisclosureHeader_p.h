#pragma once

#include <KxUI/kit/DisclosureHeaderLayout_p.h>

#include <QFont>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <optional>

namespace Kestrel::UI {

class Disclosure;
class DisclosurePrivate;

/** The line of a section that is always seen, and where its user acts. */
class DisclosureHeader : public QWidget {
    Q_OBJECT

public:
    DisclosureHeader(Disclosure* section, DisclosurePrivate* owner);

    Disclosure* section() const { return m_section; }
    void addWidget(QWidget* widget);
    /** The last widget in the order of the Tab key. */
    QWidget* lastInTabOrder();
    /** Title, summary or what else is shown became another one. */
    void shownChanged();
    void grabLetter();
    /** The user switches the check box. */
    void switchCheck();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /** What follows from texts, font and widgets; measured once for all that ask.
     */
    struct Measures {
        QFont titleFont;
        DisclosureHeaderParts parts;
        int height = 0;
    };

    const Measures& measures() const;
    Measures measure() const;
    DisclosureHeaderLayout layoutNow() const;
    bool handleKey(const QKeyEvent& event);
    bool isOwn(const QKeyEvent& event) const;
    void placeWidgets();

    QColor ground() const;
    void paintGround(QPainter& painter);
    void paintArrow(QPainter& painter, const QRect& place);
    void paintCheck(QPainter& painter, const QRect& place);
    void paintDot(QPainter& painter, const QRect& place);
    void paintTexts(QPainter& painter, const DisclosureHeaderLayout& layout);

    Disclosure* const m_section;
    DisclosurePrivate* const d;
    QVector<QPointer<QWidget>> m_widgets;
    mutable std::optional<Measures> m_measures;
    int m_letter = 0;
    bool m_pressed = false;
    bool m_onCheck = false; ///< the press was on the check box
};

} // namespace Kestrel::UI
