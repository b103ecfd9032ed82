#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <cstdint>
#include <functional>
#include <memory>

namespace Kestrel::UI {

/** Small pictures for the rows of a browser. They are the host's: the library opens no picture file. */
class KXUI_EXPORT IThumbnailSource {
public:
    /** Takes a picture, or a null one where there is none. May be called from any thread, once. */
    using Answer = std::function<void(const QImage&)>;

    virtual ~IThumbnailSource();

    /** Asks for the picture of a file. Called on the interface thread and must return at once; the
        answer may come whenever it likes, or never. For a sequence the path is that of its middle
        frame.
        @param path      in the system's encoding
        @param modified  seconds since 1970, or 0 where it is not known; part of what a picture is kept by
        @param size      in device pixels; the picture should fit into it
        @param answer    takes the picture
    @return what keeps the request alive: dropping it takes the request back. */
    virtual std::shared_ptr<void> request(const QByteArray& path, std::int64_t modified,
                                          const QSize& size, Answer answer) = 0;
};

} // namespace Kestrel::UI
