#pragma once

#include "media/Frame.h"

#include <QPoint>
#include <QRgb>

#include <array>
#include <optional>

namespace Kestrel::Workbench {

/** What a frame has at a pixel, before and after its grade. A plain value. */
struct PixelValues {
    /** Of the picture, from its top left corner. */
    QPoint at;
    /** Red, green and blue as the frame has them: numbers of its file where those were kept, else
        8-bit codes in 255ths. */
    std::array<double, 3> own{};
    /** Whether they are numbers of the file. */
    bool ownIsExact = false;
    /** The light that they stand for: 0 is black, 1 white. */
    std::array<double, 3> light{};
    /** What the screen shows. */
    QRgb shown = 0;

    /** Of a decoded frame and of what is shown of it, which may be the same one. Nothing outside of
        the picture, and where there is none. */
    static std::optional<PixelValues> of(const Frame& source, const Frame& shown, const QPoint& at);

    /** As "0.18 0.2 0.24 \u2192 118 122 130": the numbers of the file, or codes, then the codes that are
        shown. */
    QString text() const;
};

} // namespace Kestrel::Workbench
