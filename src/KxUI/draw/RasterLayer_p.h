#pragma once

#include <KxUI/draw/PainterDrawingContext.h>

#include <QByteArray>
#include <QImage>

#include <functional>
#include <vector>

namespace Kestrel::UI {

/** Calls of a drawing context, to be drawn by a painter later, or not at all where an image of the same
    calls is there already. */
class RasterLayer {
public:
    bool isEmpty() const { return m_calls.empty(); }
    void clear();

    /** A call, and bytes that tell it from any other. */
    void add(const QByteArray& key, std::function<void(DrawingContext&)> call);

    /** What tells layers apart. */
    const QByteArray& key() const { return m_key; }
    /** The calls on transparent ground. */
    QImage toImage(const QSizeF& size, const QSize& pixels, qreal ratio) const;

private:
    QByteArray m_key;
    std::vector<std::function<void(DrawingContext&)>> m_calls;
};

/** Bytes of a call: its name, then its arguments. */
class CallKey {
public:
    explicit CallKey(char name)
        : m_bytes(1, name) {}

    /** A value without padding or pointers. */
    template <class Value>
    CallKey& with(const Value* values, int count) {
        m_bytes.append(reinterpret_cast<const char*>(&count), int(sizeof count));
        m_bytes.append(reinterpret_cast<const char*>(values), count * int(sizeof(Value)));
        return *this;
    }
    CallKey& with(const QRectF& rect) { return with(&rect, 1); }
    CallKey& with(const QColor& color) {
        const quint64 rgba = color.isValid() ? quint64(color.rgba64()) : ~quint64(0);
        return with(&rgba, 1).with(QByteArray(1, char(color.isValid())));
    }
    CallKey& with(const QByteArray& bytes) { return with(bytes.constData(), int(bytes.size())); }
    CallKey& with(const LineStroke& stroke) {
        const double numbers[]{double(stroke.width), double(stroke.style)};
        return with(stroke.color).with(numbers, 2);
    }

    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

} // namespace Kestrel::UI
