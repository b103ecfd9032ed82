#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QPalette>

namespace Kestrel::UI {

/** The colours by which channels are told apart in curves, scopes, buttons and texts, to be seen on
    a palette's window and on its base: lines with a contrast of 3 or more, texts with 4.5 or more
    (WCAG 2.1, 1.4.11 and 1.4.3), as far as any colour has that to both. Ask at each painting:
    nothing here follows a palette that changes. Thread-safe as a value. */
class KXUI_EXPORT ChannelColors {
public:
    /** What is told apart. The axes look as red, green and blue, as is usual in 3-D views. */
    enum Channel {
        Red,
        Green,
        Blue,
        Alpha, ///< violet, which is far from the three and from grey
        Luma,  ///< neutral; also for all channels at once
        X,
        Y,
        Z
    };

    /** The colours for a palette, in its current colour group. */
    static ChannelColors of(const QPalette& palette);

    /** For curves, marks and fills; as saturated as the contrast allows. */
    QColor line(Channel channel) const;
    /** For texts and thin symbols. */
    QColor text(Channel channel) const;

private:
    ChannelColors(const QColor& window, const QColor& base);

    QColor visible(Channel channel, double contrast) const;

    QColor m_window;
    QColor m_base;
    double m_windowLuminance = 0;
    double m_baseLuminance = 0;
};

} // namespace Kestrel::UI
