#include <KxUI/charts/PlotLayout_p.h>

#include <KxUI/charts/ChartAxis_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QFontMetricsF>

namespace Kestrel::UI {
namespace {

constexpr double Gap = 5; // between labels and the plot
constexpr double LongestLabel = 140;

class Arranging {
public:
    explicit Arranging(const PlotRules& rules)
        : m_rules(rules)
        , m_metrics(rules.font) {}

    // Labels need to know the height, the width needs to know the labels: once each.
    PlotLayout make() {
        PlotLayout layout;
        layout.lineHeight = m_metrics.height();
        const bool hasTitles = !m_rules.left->title().isEmpty() ||
                               (m_rules.right && !m_rules.right->title().isEmpty());
        const double top = hasTitles ? layout.lineHeight + Gap : layout.lineHeight / 2;
        const bool hasRoom = m_rules.area.height() >= 5 * layout.lineHeight;
        const double below = hasRoom
                                 ? layout.lineHeight + Gap +
                                       (m_rules.bottom->title().isEmpty() ? 0 : layout.lineHeight)
                                 : Gap;
        QRectF plot = m_rules.area.adjusted(0, top, 0, -below);
        layout.left = vertical(*m_rules.left, plot.height(), m_rules.slotsOnLeft);
        if (m_rules.right)
            layout.right = vertical(*m_rules.right, plot.height(), false);
        plot.adjust(widest(layout.left) + Gap, 0,
                    m_rules.right ? -widest(layout.right) - Gap : -layout.lineHeight / 2, 0);
        layout.plot = rectOnPixels(plot, m_rules.ratio);
        layout.bottom = hasRoom ? horizontal(*m_rules.bottom, layout.plot.width()) : Ticks();
        layout.x = scaleOf(*m_rules.bottom, layout.plot.left(), layout.plot.width());
        layout.y = scaleOf(*m_rules.left, layout.plot.bottom(), -layout.plot.height());
        if (m_rules.slotsOnLeft) // the first category is the uppermost one
            layout.y = scaleOf(*m_rules.left, layout.plot.top(), layout.plot.height());
        if (m_rules.right)
            layout.yRight = scaleOf(*m_rules.right, layout.plot.bottom(), -layout.plot.height());
        return layout;
    }

private:
    static AxisScale scaleOf(const ChartAxis& axis, double origin, double length) {
        return {axis.lower(), axis.upper(), axis.isLogarithmic(), origin, length == 0 ? 1 : length};
    }

    double labelWidth(const QString& text) const {
        return std::min(m_metrics.horizontalAdvance(text), LongestLabel);
    }

    Ticks plan(const ChartAxis& axis, double length,
               std::function<double(const QString&)> labelLength) const {
        const ChartAxisPrivate* const facts = ChartAxisPrivate::of(&axis);
        Ticks::Rules rules;
        rules.unit = m_rules.isPercent ? Ticks::Percent : axis.unit();
        rules.logarithmic = axis.isLogarithmic();
        rules.length = length;
        rules.labelLength = std::move(labelLength);
        if (!m_rules.isPercent)
            rules.formatter = facts->formatter;
        return Ticks::plan(axis.lower(), axis.upper(), rules);
    }

    // A tick for each name as far as there is room: every second, third ... else.
    Ticks names(const ChartAxis& axis, double length, double least) const {
        Ticks ticks;
        const auto count = m_rules.order.size();
        if (count == 0 || !(length > 0))
            return ticks;
        const auto every = std::max(1.0, std::ceil(least * double(count) / length));
        for (std::size_t i = 0; i < count; i += std::size_t(every)) {
            ticks.values.push_back(double(i));
            ticks.texts.append(axis.text(m_rules.order[i]));
        }
        return ticks;
    }

    Ticks vertical(const ChartAxis& axis, double length, bool isNamed) const {
        if (isNamed)
            return names(axis, length, m_metrics.height());
        return plan(axis, length, [this](const QString&) { return m_metrics.height(); });
    }

    Ticks horizontal(const ChartAxis& axis, double length) const {
        if (m_rules.hasSlots && !m_rules.slotsOnLeft) {
            double longest = 0;
            for (const QString& name : axis.categories())
                longest = std::max(longest, std::min(m_metrics.horizontalAdvance(name), 60.0));
            return names(axis, length, longest + Gap);
        }
        return plan(axis, length, [this](const QString& text) { return labelWidth(text); });
    }

    double widest(const Ticks& ticks) const {
        double width = 0;
        for (const QString& text : ticks.texts)
            width = std::max(width, labelWidth(text));
        return std::min(width, m_rules.area.width() / 3);
    }

    const PlotRules& m_rules;
    const QFontMetricsF m_metrics;
};

} // namespace

PlotLayout PlotLayout::arrange(const PlotRules& rules) {
    return Arranging(rules).make();
}

} // namespace Kestrel::UI
