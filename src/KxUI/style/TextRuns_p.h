#pragma once

#include <QFont>
#include <QStaticText>
#include <QString>

#include <array>

class QPainter;
class QRect;

namespace Kestrel::UI {

/** Texts of controls, laid out once: that costs as much as drawing their glyphs. Interface thread. */
class TextRuns {
public:
    /** Draws a single line as QPainter::drawText() would with these flags, in the painter's pen.
        False, and nothing is drawn, for what needs more than that: line breaks, mnemonics, text from
        right to left, text that does not fit, painters that do not copy pixels. */
    bool draw(QPainter* painter, const QRect& rect, int flags, const QString& text);

    void clear() { m_runs = {}; }

private:
    struct Run {
        QString text;
        QFont font;
        QStaticText glyphs;
    };

    std::array<Run, 256> m_runs; // by a hash; the last one of those that share a place stays
};

} // namespace Kestrel::UI
