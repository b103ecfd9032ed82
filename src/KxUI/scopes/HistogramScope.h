#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeView.h>

namespace Kestrel::UI {

class HistogramScopePrivate;

/** How often the values of each channel occur: exact counts at any zoom, with what lies below and
    above the range, infinities and what is no number told apart. A click on the bars at the sides
    selects the pixels beyond that side; a drag selects a range of values. Interface thread. */
class KXUI_EXPORT HistogramScope : public ScopeView {
    Q_OBJECT
    Q_PROPERTY(Layout layout READ layout WRITE setLayout NOTIFY layoutChanged)
    Q_PROPERTY(Channels channels READ channels WRITE setChannels NOTIFY channelsChanged)
    Q_PROPERTY(Axis axis READ axis WRITE setAxis NOTIFY axisChanged)
    Q_PROPERTY(bool logCounts READ logCounts WRITE setLogCounts NOTIFY logCountsChanged)
    Q_PROPERTY(bool cumulative READ cumulative WRITE setCumulative NOTIFY cumulativeChanged)

public:
    /** Where channels are drawn; the numbers are part of saved states. */
    enum Layout {
        Overlay, ///< on each other, as light that adds up
        Stacked  ///< one above the other
    };
    Q_ENUM(Layout)

    /** The channels to show, as bits of `1 << ScopeHistogram::Channel`. */
    enum Channel {
        Red = 1 << ScopeHistogram::Red,
        Green = 1 << ScopeHistogram::Green,
        Blue = 1 << ScopeHistogram::Blue,
        Alpha = 1 << ScopeHistogram::Alpha,
        Luma = 1 << ScopeHistogram::Luma,
        Largest = 1 << ScopeHistogram::Largest ///< the largest of red, green and blue
    };
    /** Bits of Channel. */
    Q_DECLARE_FLAGS(Channels, Channel)
    Q_FLAG(Channels)

    /** What is spread evenly; the numbers are part of saved states. */
    enum Axis {
        LinearAxis,   ///< the value
        LogAxis,      ///< stops, with room for 0 and below
        TransferAxis, ///< what sRGB makes of it: for pictures that store light
        PqAxis        ///< what SMPTE ST 2084 makes of it, 1.0 being the encoding's white
    };
    Q_ENUM(Axis)

    explicit HistogramScope(QWidget* parent = nullptr);
    ~HistogramScope() override;

    /** Overlay at first. */
    Layout layout() const;
    void setLayout(Layout layout);
    /** Red, green, blue and luma at first. */
    Channels channels() const;
    void setChannels(Channels channels);
    /** LinearAxis at first. */
    Axis axis() const;
    void setAxis(Axis axis);

    /** The values at the ends of the axis without zoom; -0.1 to 1.1 at first. Ends that are the wrong
        way round, or have nothing between them, are put right. */
    double lower() const;
    double upper() const;
    void setRange(double lower, double upper);
    /** From the smallest finite value of the present result to the largest. */
    void fitRange();

    /** Whether heights are logarithms of counts, so that rare values are seen; off at first. */
    bool logCounts() const;
    void setLogCounts(bool on);
    /** Whether a line shows how many pixels are at or below each value; off at first. */
    bool cumulative() const;
    void setCumulative(bool on);

Q_SIGNALS:
    /** Something became another one, by whomever; sent after it did. */
    void layoutChanged(Kestrel::UI::HistogramScope::Layout layout);
    void channelsChanged(Kestrel::UI::HistogramScope::Channels channels);
    void axisChanged(Kestrel::UI::HistogramScope::Axis axis);
    void rangeChanged(double lower, double upper);
    void logCountsChanged(bool on);
    void cumulativeChanged(bool on);

private:
    HistogramScopePrivate& own() const;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(HistogramScope::Channels)

} // namespace Kestrel::UI
