#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeView.h>

namespace Kestrel::UI {

class WaveformScopePrivate;

/** The values of each column of a picture: what is bright where. Counts are exact at any brightness and
    zoom, single pixels of large pictures are seen, and what lies beyond the axis is drawn beside it,
    never in its first or last line. A drag selects a range of values of the channel that it begins in.
    Views of one model that ask for rows and for columns show what the latest of them asks for.
    Interface thread. */
class KXUI_EXPORT WaveformScope : public ScopeView {
    Q_OBJECT
    Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(
        Orientation orientation READ orientation WRITE setOrientation NOTIFY orientationChanged)
    Q_PROPERTY(Coloring coloring READ coloring WRITE setColoring NOTIFY coloringChanged)
    Q_PROPERTY(Envelope envelope READ envelope WRITE setEnvelope NOTIFY envelopeChanged)
    Q_PROPERTY(Limits limits READ limits WRITE setLimits NOTIFY limitsChanged)
    Q_PROPERTY(double lower READ lower NOTIFY rangeChanged)
    Q_PROPERTY(double upper READ upper NOTIFY rangeChanged)
    Q_PROPERTY(bool secondUnitShown READ isSecondUnitShown WRITE setSecondUnitShown NOTIFY
                   secondUnitChanged)

public:
    /** What is shown; the numbers are part of saved states, as those of what follows. */
    enum Mode {
        Luma,        ///< by the matrix of the model's encoding
        RgbOverlay,  ///< red, green and blue on each other, as light that adds up
        RgbParade,   ///< side by side
        RgbStack,    ///< one above the other
        YCbCrParade, ///< luma, Cb and Cr side by side, the same codes at the same height
        YCbCrStack   ///< one above the other
    };
    Q_ENUM(Mode)

    /** What stands for the picture. */
    enum Orientation {
        Columns, ///< its columns, with values upwards
        Rows     ///< its rows, with values rightwards
    };
    Q_ENUM(Orientation)

    /** The colours of the trace. */
    enum Coloring {
        Plain,   ///< each channel in its own colour
        Phosphor ///< luma green, as a tube shows it; the others in their own colours
    };
    Q_ENUM(Coloring)

    /** Lines along the lowest and the highest values. */
    enum Envelope {
        NoEnvelope,      ///< none
        InstantEnvelope, ///< of the picture
        PeakEnvelope,    ///< of all pictures since resetPeak()
        BothEnvelopes    ///< both
    };
    Q_ENUM(Envelope)

    /** Values that are marked as limits. */
    enum Limits {
        NoLimits, ///< none
        Legal,    ///< 0 and 1
        EbuR103   ///< -44/876 and 920/876, about -5 % and 105 %
    };
    Q_ENUM(Limits)

    explicit WaveformScope(QWidget* parent = nullptr);
    ~WaveformScope() override;

    /** Luma at first. */
    Mode mode() const;
    void setMode(Mode mode);
    /** Columns at first. */
    Orientation orientation() const;
    void setOrientation(Orientation orientation);
    /** Plain at first. */
    Coloring coloring() const;
    void setColoring(Coloring coloring);
    /** NoEnvelope at first. */
    Envelope envelope() const;
    void setEnvelope(Envelope envelope);
    /** NoLimits at first. */
    Limits limits() const;
    void setLimits(Limits limits);

    /** The values at the ends of the axis without zoom; -0.1 to 1.1 at first. The axis of Cb and Cr has
        the same codes at its ends. Ends that are the wrong way round, or have nothing between them,
        are put right. */
    double lower() const;
    double upper() const;
    void setRange(double lower, double upper);
    /** From the smallest finite value to the largest, which are counted first where nobody has: the
        range may change later than this returns. */
    void fitRange();

    /** A unit for labels at the other side, Code10 at first, and whether they are there; not at first.
        Beside a parade of luma and chroma, that side has the labels of chroma. */
    ScopeUnit secondUnit() const;
    void setSecondUnit(ScopeUnit unit);
    bool isSecondUnitShown() const;
    void setSecondUnitShown(bool shown);

public Q_SLOTS:
    /** Forgets what PeakEnvelope has reached. */
    void resetPeak();

Q_SIGNALS:
    /** Something became another one, by whomever; sent after it did. */
    void modeChanged(Kestrel::UI::WaveformScope::Mode mode);
    void orientationChanged(Kestrel::UI::WaveformScope::Orientation orientation);
    void coloringChanged(Kestrel::UI::WaveformScope::Coloring coloring);
    void envelopeChanged(Kestrel::UI::WaveformScope::Envelope envelope);
    void limitsChanged(Kestrel::UI::WaveformScope::Limits limits);
    void rangeChanged(double lower, double upper);
    void secondUnitChanged();

private:
    WaveformScopePrivate& own() const;
};

} // namespace Kestrel::UI
