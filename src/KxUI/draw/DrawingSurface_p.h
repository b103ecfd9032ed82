#pragma once

#include <KxUI/draw/Drawing.h>
#include <KxUI/draw/GlPicture_p.h>

#include <QString>

#include <functional>

class QWidget;

namespace Kestrel::UI {

/** What a view draws itself by, and the way back to the painter where OpenGL fails. Interface
    thread. */
class DrawingSurface {
public:
    /** For `widget`, which outlives it. `changed` is called, never while the widget paints, after OpenGL failed and
        the painter took over. */
    explicit DrawingSurface(QWidget* widget, std::function<void()> changed = {});

    /** What the host wants; the painter at first. */
    Drawing drawing() const { return m_wanted; }
    void setDrawing(Drawing drawing);

    /** Whether OpenGL is what draws. */
    bool usesOpenGL() const;
    /** Why the painter draws though OpenGL was asked for, in words for a log; else empty. */
    QString problem() const { return m_problem; }

    /** Paints the widget; called in its paintEvent(). `draw` fills the whole widget, and is called
        twice where OpenGL fails. */
    void paint(const std::function<void(DrawingContext&)>& draw);

private:
    QWidget* const m_widget;
    const std::function<void()> m_changed;
    Drawing m_wanted = Drawing::Painter;
    QString m_problem;
    GlPicture m_picture;
};

} // namespace Kestrel::UI
