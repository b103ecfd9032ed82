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
        const int knots = m_model.knots(m_curve);
        if (knots <= 0)
            return m_line;
        const CurveModel::Limits limits = m_model.limits(m_curve);
        const int first = columnOf(limits.lowX, 0, width);
        const int end = std::min(width, columnOf(limits.highX, -1, width - 1) + 1);
        if (first >= end)
            return m_line;
        m_count = end - first;
        m_line.columns.first = first;
        m_line.columns.columns.resize(std::size_t(m_count));
        m_line.density.assign(std::size_t(m_count), 0);
        m_edges.resize(std::size_t(m_count) + 1);
        for (int i = 0; i <= m_count; ++i)
            m_edges[std::size_t(i)] = m_plot.xAt((first + i) / m_ratio);
        m_line.firstKnot = m_model.firstKnotFrom(m_curve, m_edges.front());
        m_line.endKnot = m_model.firstKnotFrom(m_curve, m_edges.back());
        while (m_line.endKnot < knots && m_model.knot(m_curve, m_line.endKnot).x <= m_edges.back())
            ++m_line.endKnot;
        if (m_line.knots() > m_count)
            readRanges();
        else
            readValues();
        return m_line;
    }

private:
    bool isEven() const { return m_plot.isLinearX(); }
    CurveColumn& column(int i) { return m_line.columns.columns[std::size_t(i)]; }

    int columnOf(double x, int low, int high) const {
        if (std::isnan(x))
            return low;
        return int(std::clamp(std::floor(m_plot.toX(x) * m_ratio), double(low), double(high)));
    }

    float rowOf(double y) const {
        return float(std::clamp(m_plot.toY(y) * m_ratio, -FarAway, FarAway));
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
        std::vector<QPointF> places(std::size_t(m_line.knots()));
        m_model.places(m_curve, m_line.firstKnot, m_line.knots(), places.data());
        for (const QPointF& place : places) {
            const int i =
                std::clamp(columnOf(place.x(), 0, m_line.columns.end()) - m_line.columns.first, 0,
                           m_count - 1);
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
        int knot = m_line.firstKnot;
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
        std::uint8_t& density = m_line.density[std::size_t(i)];
        density = std::uint8_t(std::min(255, density + std::max(0, knots)));
    }

    const CurveModel& m_model;
    const int m_curve;
    const CurvePlot& m_plot;
    const double m_ratio;
    int m_count = 0;
    std::vector<double> m_edges;
    CurveLine m_line;
};

} // namespace

CurveLine CurveLine::of(const CurveModel& model, int curve, const CurvePlot& plot, double ratio,
                        int width) {
    return Lines(model, curve, plot, ratio).make(width);
}

} // namespace Kestrel::UI
