#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace Kestrel::UI {

/** What lies around the pipette, large, with its colour and a few words. A window beside the
    pointer that takes no input. */
class SampleMagnifier : public QWidget {
public:
    SampleMagnifier();

    /** `pixels` may be null; `shown` invalid: there is no colour. */
    void setContent(const QImage& pixels, const QColor& shown, const QString& words);

    /** Beside the pointer, on that side of it which is away from `from`, and on its screen. */
    void moveBeside(const QPoint& pointer, const QPoint& from);
    /** Where it goes: `screen` is what it stays in. */
    static QPoint placeBeside(const QSize& size, const QPoint& pointer, const QPoint& from,
                              const QRect& screen);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintPixels(QPainter& painter, const QRect& field) const;

    QImage m_pixels;
    QColor m_shown;
    QString m_words;
};

} // namespace Kestrel::UI
