#pragma once

#include <KxUI/browse/ChooserTexts_p.h>

#include <QWidget>

class QLabel;

namespace Kestrel::UI {

class PushButton;

/** The line under a name: a sign, a text that is cut where there is no room, and sometimes a button.
    It keeps its height when it says nothing, so that nothing moves. */
class NoticeLine : public QWidget {
    Q_OBJECT

public:
    explicit NoticeLine(QWidget* parent = nullptr);

    const ChooserTexts::Notice& notice() const { return m_notice; }
    void tell(const ChooserTexts::Notice& notice);

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void nextVersionWanted();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void color();
    void elide();

    ChooserTexts::Notice m_notice;
    QLabel* m_sign;
    QLabel* m_text;
    PushButton* m_next;
};

/** The sign of a warning or an error in its colour, to be seen on the palette's window. */
QPixmap noticeSign(ChooserTexts::Notice::Kind kind, const QWidget& widget);

/** The colour that says so in text. */
QColor noticeColor(ChooserTexts::Notice::Kind kind, const QPalette& palette);

} // namespace Kestrel::UI
