#include <KxUI/style/TextRuns_p.h>

#include <KxUI/style/BrushTextures_p.h>

#include <QHash>
#include <QPainter>

namespace Kestrel::UI {
namespace {

constexpr int LongestRun = 64;

// Characters of scripts that are written from left to right, one glyph after the other.
bool isPlain(const QString& text, bool hasMnemonics) {
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code < 0x20 || code > 0x24f || (hasMnemonics && code == '&'))
            return false;
    }
    return true;
}

} // namespace

bool TextRuns::draw(QPainter* painter, const QRect& rect, int flags, const QString& text) {
    constexpr int Mnemonics = Qt::TextShowMnemonic | Qt::TextHideMnemonic;
    constexpr int Known = int(Qt::AlignHorizontal_Mask) | int(Qt::AlignVertical_Mask) | Mnemonics |
                          Qt::TextSingleLine | Qt::TextDontClip;
    constexpr int Unknown = Qt::AlignJustify | Qt::AlignBaseline;
    if (text.isEmpty() || text.size() > LongestRun || (flags & ~Known) || (flags & Unknown) ||
        painter->layoutDirection() == Qt::RightToLeft || !isPlain(text, flags & Mnemonics) ||
        !copiesPixels(painter) || painter->deviceTransform().type() > QTransform::TxScale)
        return false;
    const QFont& font = painter->font();
    const uint place = uint(qHash(text)) + uint(font.weight()) + uint(font.pixelSize()) * 31U;
    Run& run = m_runs[(place ^ place >> 8) % m_runs.size()];
    if (run.text != text || run.font != font) {
        run.text = text;
        run.font = font;
        run.glyphs = QStaticText(text);
        run.glyphs.setTextFormat(Qt::PlainText);
        run.glyphs.prepare(QTransform(), font);
    }
    const QSizeF size = run.glyphs.size();
    if (!(flags & Qt::TextDontClip) &&
        (size.width() > rect.width() || size.height() > rect.height()))
        return false;
    double x = rect.x();
    double y = rect.y();
    if (flags & Qt::AlignHCenter)
        x += (rect.width() - size.width()) / 2;
    else if (flags & Qt::AlignRight)
        x += rect.width() - size.width();
    if (flags & Qt::AlignVCenter)
        y += (rect.height() - size.height()) / 2;
    else if (flags & Qt::AlignBottom)
        y += rect.height() - size.height();
    painter->drawStaticText(QPointF(x, y), run.glyphs);
    return true;
}

} // namespace Kestrel::UI
