#pragma once

#include <KxUI/picker/ColorText_p.h>

#include <QLineEdit>

namespace Kestrel::UI {

/** A line that shows a colour's code and takes colours in every notation. What is typed is taken by
    Return and when the focus leaves, and taken back by Escape. */
class ColorCodeEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit ColorCodeEdit(QWidget* parent = nullptr);

    /** What is being typed stays. */
    void show(const ColorValue& color, const DisplayCall& display, bool withAlpha);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /** The user wrote a colour. */
    void taken(const Kestrel::UI::ColorValue& color, bool hasAlpha);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    int widthOf(const QString& text) const;
    void showShown();
    void nameShown();
    void take(bool refusalStays);

    QString m_shown;
    DisplayCall m_display;
};

} // namespace Kestrel::UI
