#include <KxUI/charts/LineSpans_p.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace Kestrel::UI {
namespace {

class SpanMaker {
public:
    SpanMaker(const LineData& data, const AxisScale& x, const AxisScale& y, LineJoin join)
        : m_data(data)
        , m_x(x)
        , m_y(y)
        , m_join(join) {}

    std::vector<LineSpan> make(int left, int columns) {
        std::vector<LineSpan> spans;
        spans.reserve(std::size_t(columns));
        std::size_t begin = m_data.firstFrom(m_x.value(left));
        std::size_t inColumn = 1; // mostly as many as in the one before
        for (int column = left; column < left + columns && begin <= m_data.size(); ++column) {
            const std::size_t end =
                m_data.firstNear(m_x.value(column + 1), begin, begin + inColumn);
            m_top = std::numeric_limits<double>::infinity();
            m_bottom = -m_top;
            addExtent(begin, end);
            addCrossing(begin, column);
            addCrossing(end, column + 1);
            if (m_top <= m_bottom)
                spans.push_back({column, m_top, m_bottom});
            inColumn = std::max<std::size_t>(end - begin, 1);
            begin = end;
        }
        return spans;
    }

private:
    void add(double pixel) {
        if (!std::isnan(pixel)) {
            m_top = std::min(m_top, pixel);
            m_bottom = std::max(m_bottom, pixel);
        }
    }

    void addExtent(std::size_t begin, std::size_t end) {
        Extent extent = m_data.extent(begin, end);
        if (extent.isEmpty() || (m_y.isLogarithmic && extent.highest <= 0))
            return;
        // Of what no logarithm has, the end of the axis is seen.
        if (m_y.isLogarithmic)
            extent.lowest = std::max(extent.lowest, std::min(m_y.lower, extent.highest));
        add(m_y.pixel(extent.highest));
        add(m_y.pixel(extent.lowest));
    }

    // Where the line from the point before `next` to that comes through an edge of a column.
    void addCrossing(std::size_t next, double edge) {
        if (m_join == LineJoin::None || next == 0 || next >= m_data.size())
            return;
        const double before = m_data.y(next - 1);
        const double after = m_data.y(next);
        if (!std::isfinite(before) || !std::isfinite(after))
            return;
        const double from = m_y.pixel(before);
        if (m_join == LineJoin::Steps) {
            add(from);
            return;
        }
        const double x0 = m_data.x(next - 1);
        const double x1 = m_data.x(next);
        const double part = x1 > x0 ? (m_x.value(edge) - x0) / (x1 - x0) : 0;
        add(from + (m_y.pixel(after) - from) * std::clamp(part, 0.0, 1.0));
    }

    const LineData& m_data;
    const AxisScale& m_x;
    const AxisScale& m_y;
    const LineJoin m_join;
    double m_top = 0;
    double m_bottom = 0;
};

} // namespace

std::vector<LineSpan> lineSpans(const LineData& data, const AxisScale& x, const AxisScale& y,
                                LineJoin join, int left, int columns) {
    if (data.size() == 0 || columns <= 0)
        return {};
    return SpanMaker(data, x, y, join).make(left, columns);
}

std::vector<std::vector<QPointF>> lineRuns(const LineData& data, const AxisScale& x,
                                           const AxisScale& y, LineJoin join, double right) {
    std::vector<std::vector<QPointF>> runs(1);
    std::size_t i = data.firstFrom(x.lower);
    i -= i > 0 ? 1 : 0;
    for (; i < data.size(); ++i) {
        const QPointF point(x.pixel(data.x(i)), y.pixel(data.y(i)));
        if (!std::isfinite(data.y(i)) || std::isnan(point.y()) || std::isnan(point.x())) {
            if (!runs.back().empty())
                runs.emplace_back();
            continue;
        }
        std::vector<QPointF>& run = runs.back();
        if (join == LineJoin::Steps && !run.empty())
            run.emplace_back(point.x(), run.back().y());
        run.push_back(point);
        if (point.x() > right)
            break;
    }
    if (runs.back().empty())
        runs.pop_back();
    return runs;
}

std::size_t pointsWithin(const LineData& data, const AxisScale& x) {
    const std::size_t begin = data.firstFrom(x.lower);
    return data.firstFrom(x.upper, begin) - begin;
}

} // namespace Kestrel::UI
