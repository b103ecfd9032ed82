#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeView.h>

namespace Kestrel::UI {

class HistogramScopePrivate;

/** How often the values of each channel occur: exact counts at any zoom, with what lies below and
    above the range, infinities and what is no number told apart. The bars at the sides tell how much is
    beyond, and a click on them selects those pixels; a drag selects a range of values, and on the
    axis it pans. Saturation and hue have an axis of their own, from 0 to 1 and once around.
    Interface thread. */
class KXUI_EXPORT HistogramScope : public ScopeView {
    Q_OBJECT
    Q_PROPERTY(Layout layout READ layout WRITE setLayout NOTIFY layoutChanged)
    Q_PROPERTY(Channels channels READ channels WRITE setChannels NOTIFY channelsChanged)
    Q_PROPERTY(Axis axis READ axis WRITE setAxis NOTIFY axisChanged)
    Q_PROPERTY(bool logCounts READ logCounts WRITE setLogCounts NOTIFY logCountsChanged)
    Q_PROPERTY(bool cumulative READ cumulative WRITE setCumulative NOTIFY cumulativeChanged)
    Q_PROPERTY(bool equalArea READ equalArea WRITE setEqualArea NOTIFY equalAreaChanged)
    Q_PROPERTY(FullHeight fullHeight READ fullHeight WRITE setFullHeight NOTIFY fullHeightChanged)
    Q_PROPERTY(double fullShare READ fullShare WRITE setFullShare NOTIFY fullHeightChanged)

public:
    /** Where channels are drawn; the numbers are part of saved states. */
    enum Layout {
        Overlay,   ///< on each other, as light that adds up
        Stacked,   ///< one above the other
        SideBySide ///< one beside the other
    };
    Q_ENUM(Layout)

    /** The channels to show, as bits of `1 << ScopeHistogram::Channel`. */
    enum Channel {
        Red = 1 << ScopeHistogram::Red,
        Green = 1 << ScopeHistogram::Green,
        Blue = 1 << ScopeHistogram::Blue,
        Alpha = 1 << ScopeHistogram::Alpha,
        Luma = 1 << ScopeHistogram::Luma,
        Largest = 1 << ScopeHistogram::Largest, ///< the largest of red, green and blue
        Saturation = 64,  ///< by rgbToHsv(), 0 to 1; what is shown of it is counted only then
        Hue = 128,        ///< likewise, around from red over green to blue; greys have none
        AllChannels = 255 ///< all of these
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

    /** How many pixels reach up to the upper edge; the numbers are part of saved states. */
    enum FullHeight {
        /** Those of the tallest column, but for those of black, white and the ends of the axis, which
            a border may fill. */
        TallestInside,
        TallOnes, ///< so many that 99.5 % of the columns stay below
        Share     ///< fullShare() of all, whatever the picture
    };
    Q_ENUM(FullHeight)

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
    /** Whether areas stand for pixels on axes that are not linear: columns that cover more values are
        drawn lower. Off at first. */
    bool equalArea() const;
    void setEqualArea(bool on);

    /** TallestInside at first. While the model is interactive, the height stays what it was, so that
        curves do not pump. */
    FullHeight fullHeight() const;
    void setFullHeight(FullHeight rule);
    /** The share of pixels that fills the height by Share: 0.0001 to 1, 0.02 at first. */
    double fullShare() const;
    void setFullShare(double share);

Q_SIGNALS:
    /** Something became another one, by whomever; sent after it did. */
    void layoutChanged(Kestrel::UI::HistogramScope::Layout layout);
    void channelsChanged(Kestrel::UI::HistogramScope::Channels channels);
    void axisChanged(Kestrel::UI::HistogramScope::Axis axis);
    void rangeChanged(double lower, double upper);
    void logCountsChanged(bool on);
    void cumulativeChanged(bool on);
    void equalAreaChanged(bool on);
    void fullHeightChanged();

private:
    HistogramScopePrivate& own() const;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(HistogramScope::Channels)

} // namespace Kestrel::UI
