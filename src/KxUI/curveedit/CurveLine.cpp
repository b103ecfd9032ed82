#include <KxUI/curveedit/CurveLine_p.h>

#include <KxUI/curveedit/CurveModel.h>

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Far outside of any picture, and still exact enough for slopes.
constexpr double FarAway = 1e6;

class Lines {
public:
    Lines(const CurveModel& model, int curve, const CurvePlot& plot, double ratio)
        : m_model(model)
        , m_curve(curve)
        , m_plot(plot)
        , m_ratio(ratio) {}

    CurveLine make(int width) {
        if (!measure(width))
            return m_line;
        m_line.columns.columns.resize(std::size_t(m_end - m_first));
        m_line.density.assign(std::size_t(m_end - m_first), 0);
        read(m_first, m_end);
        return m_line;
    }

    // False where it takes all columns.
    bool renew(CurveLine& line, int width, int first, int end) {
        const bool was = line.dense;
        const auto size = line.columns.columns.size();
        const int begin = line.columns.first;
        std::swap(m_line, line);
        const bool same = measure(width) && begin == m_first && int(size) == m_end - m_first &&
                          was == m_line.dense;
        if (same && std::max(first, m_first) < std::min(end, m_end))
            read(std::max(first, m_first), std::min(end, m_end));
        std::swap(m_line, line);
        return same;
    }

private:
    bool isEven() const { return m_plot.isLinearX(); }
    CurveColumn& column(int i) { return m_line.columns.columns[std::size_t(m_begin + i)]; }

    int columnOf(double x, int low, int high) const {
        if (std::isnan(x))
            return low;
        return int(std::clamp(std::floor(m_plot.toX(x) * m_ratio), double(low), double(high)));
    }

    float rowOf(double y) const {
        return float(std::clamp(m_plot.toY(y) * m_ratio, -FarAway, FarAway));
    }

    // Which columns and which knots there are. False without any.
    bool measure(int width) {
        const int knots = m_model.knots(m_curve);
        if (knots <= 0)
            return false;
        const CurveModel::Limits limits = m_model.limits(m_curve);
        m_first = columnOf(limits.lowX, 0, width);
        m_end = std::min(width, columnOf(limits.highX, -1, width - 1) + 1);
        if (m_first >= m_end)
            return false;
        m_line.columns.first = m_first;
        m_line.firstKnot = m_model.firstKnotFrom(m_curve, edge(m_first));
        m_line.endKnot = knotsUpTo(edge(m_end));
        m_line.dense = m_line.knots() > m_end - m_first;
        return true;
    }

    double edge(int x) const { return m_plot.xAt(x / m_ratio); }

    // The index behind the last one at or before x.
    int knotsUpTo(double x) const {
        int end = m_model.firstKnotFrom(m_curve, x);
        while (end < m_model.knots(m_curve) && m_model.knot(m_curve, end).x <= x)
            ++end;
        return end;
    }

    void read(int first, int end) {
        m_count = end - first;
        m_begin = first - m_first;
        m_edges.resize(std::size_t(m_count) + 1);
        for (int i = 0; i <= m_count; ++i)
            m_edges[std::size_t(i)] = edge(first + i);
        for (int i = 0; i < m_count; ++i)
            m_line.density[std::size_t(m_begin + i)] = 0;
        if (m_line.dense)
            readRanges();
        else
            readValues();
    }

    // A value at each edge, and the knots in between.
    void readValues() {
        std::vector<double> values(m_edges.size());
        if (isEven()) {
            m_model.sample(m_curve, m_edges.front(), m_edges.back(), m_count + 1, values.data());
        } else {
            for (std::size_t i = 0; i < values.size(); ++i)
                m_model.sample(m_curve, m_edges[i], m_edges[i], 1, &values[i]);
        }
        float in = rowOf(values.front());
        for (int i = 0; i < m_count; ++i) {
            const float out = rowOf(values[std::size_t(i) + 1]);
            column(i) = {in, out, std::min(in, out), std::max(in, out), false};
            in = out;
        }
        const int firstKnot = m_model.firstKnotFrom(m_curve, m_edges.front());
        std::vector<QPointF> places(std::size_t(knotsUpTo(m_edges.back()) - firstKnot));
        m_model.places(m_curve, firstKnot, int(places.size()), places.data());
        const int first = m_line.columns.first + m_begin;
        for (const QPointF& place : places) {
            const int i = columnOf(place.x(), first, m_line.columns.end() - 1) - first;
            if (i >= m_count)
                continue; // of the next column
            CurveColumn& own = column(i);
            own.top = std::min(own.top, rowOf(place.y()));
            own.bottom = std::max(own.bottom, rowOf(place.y()));
            count(i, 1);
        }
    }

    // More knots than columns: the extremes of each, bends between the knots included.
    void readRanges() {
        std::vector<double> low(m_edges.size() - 1);
        std::vector<double> high(m_edges.size() - 1);
        if (isEven()) {
            m_model.ranges(m_curve, m_edges.front(), m_edges.back(), m_count, low.data(),
                           high.data());
        } else {
            for (std::size_t i = 0; i < low.size(); ++i)
                m_model.ranges(m_curve, m_edges[i], m_edges[i + 1], 1, &low[i], &high[i]);
        }
        int knot = m_model.firstKnotFrom(m_curve, m_edges.front());
        for (int i = 0; i < m_count; ++i) {
            const float top = rowOf(high[std::size_t(i)]);
            const float bottom = rowOf(low[std::size_t(i)]);
            column(i) = {top, bottom, top, bottom, true};
            const int next = m_model.firstKnotFrom(m_curve, m_edges[std::size_t(i) + 1]);
            count(i, next - knot);
            knot = next;
        }
    }

    void count(int i, int knots) {
        std::uint8_t& density = m_line.density[std::size_t(m_begin + i)];
        density = std::uint8_t(std::min(255, density + std::max(0, knots)));
    }

    const CurveModel& m_model;
    const int m_curve;
    const CurvePlot& m_plot;
    const double m_ratio;
    int m_first = 0; ///< of all columns
    int m_end = 0;
    int m_begin = 0; ///< of those that are read, from m_first on
    int m_count = 0;
    std::vector<double> m_edges;
    CurveLine m_line;
};

} // namespace

CurveLine CurveLine::of(const CurveModel& model, int curve, const CurvePlot& plot, double ratio,
                        int width) {
    return Lines(model, curve, plot, ratio).make(width);
}

void CurveLine::renew(const CurveModel& model, int curve, const CurvePlot& plot, double ratio,
                      int width, int first, int end) {
    if (!Lines(model, curve, plot, ratio).renew(*this, width, first, end))
        *this = of(model, curve, plot, ratio, width);
}

} // namespace Kestrel::UI
