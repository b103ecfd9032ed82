#pragma once

#include "media/Samples.h"

#include <KxUI/base/Time.h>

#include <QImage>
#include <QSize>
#include <QString>

#include <cstddef>
#include <memory>

namespace Kestrel::Workbench {

/** One frame as the viewer shows it: a picture ready for the screen, or the reason why there is
    none. */
struct Frame {
    enum class State {
        Ready,      ///< `image` is the picture
        Missing,    ///< the sequence has no file for this time
        Unreadable, ///< there is a file, but no picture could be made of it
    };

    Base::Time time = Base::InvalidTime;
    State state = State::Missing;
    /** The display window, encoded for an sRGB screen; reduced when it is larger than the limit. */
    QImage image;
    /** What `image` was made from, if it was asked for; null where the file holds no more than
        `image` does, and where that is reduced. */
    std::shared_ptr<const Samples> samples;
    /** Whether another decode would not find more in the file: samples were asked for. */
    bool isComplete = false;
    /** Size of the display window in the file, in pixels. */
    QSize fullSize;
    /** Width of a pixel divided by its height. */
    double pixelAspect = 1.0;
    /** One line on the file: format, sample type, channels. */
    QString format;
    /** Why there is no picture, for the user. */
    QString message;

    /** Bytes that the frame takes in a cache; never 0. */
    std::size_t cost() const {
        const std::size_t sampleBytes = samples ? samples->rgb.size() * sizeof(samples->rgb[0]) : 0;
        return pictureCost() + sampleBytes;
    }

    /** Its bytes without samples. */
    std::size_t pictureCost() const {
        return std::size_t(image.sizeInBytes()) + sizeof(Frame) +
               std::size_t(format.size() + message.size()) * sizeof(QChar);
    }
};

using FramePtr = std::shared_ptr<const Frame>;

} // namespace Kestrel::Workbench
