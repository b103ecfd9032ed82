#pragma once

#include <KxUI/draw/DrawingContext.h>

#include <functional>
#include <memory>

namespace Kestrel::UI {

class GlPictureData;

/** Pictures drawn by OpenGL beside the screen, in a context of its own that is made with the first one.
    A view that shows them stays an ordinary widget: its window is not composed by OpenGL, it may be
    moved to another window at any time, and the mouse knows nothing of it. Interface thread. */
class GlPicture {
public:
    GlPicture();
    ~GlPicture();
    GlPicture(const GlPicture&) = delete;
    GlPicture& operator=(const GlPicture&) = delete;

    /** What `draw` draws, opaque; null where OpenGL failed, and error() says why. */
    QImage take(const QSizeF& size, qreal ratio, const std::function<void(DrawingContext&)>& draw);

    /** Why the last picture is null, in words for a log. */
    QString error() const;

    /** Whether a graphics processor draws, and not a program in its place. */
    static bool hasGraphicsProcessor();

private:
    std::unique_ptr<GlPictureData> d;
    QString m_error;
};

/** Whether the name of an OpenGL renderer is that of a program. */
bool isSoftwareRenderer(const QString& name);

} // namespace Kestrel::UI
