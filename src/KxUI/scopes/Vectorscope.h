#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeView.h>

namespace Kestrel::UI {

class VectorscopePrivate;

/** The chroma of a picture: its hues as directions, their strength as distances from the middle. Counts
    are exact at any brightness; zooming about the middle counts anew, as finely as before. Luma and
    chroma are those of the model's encoding, whose matrix is named in the corner, and so are the
    targets of colour bars. Pixels outside the plane are marked at its rim. A drag selects the colours
    within its path. Views of one model with several limits of luma show those of the latest.
    Interface thread. */
class KXUI_EXPORT Vectorscope : public ScopeView {
    Q_OBJECT
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY viewChanged)
    Q_PROPERTY(int gain READ gain WRITE setGain NOTIFY gainChanged)
    Q_PROPERTY(bool logRadius READ logRadius WRITE setLogRadius NOTIFY logRadiusChanged)
    Q_PROPERTY(Targets targets READ targets WRITE setTargets NOTIFY targetsChanged)
    Q_PROPERTY(Boxes boxes READ boxes WRITE setBoxes NOTIFY boxesChanged)
    Q_PROPERTY(bool iqLines READ iqLines WRITE setIQLines NOTIFY iqLinesChanged)
    Q_PROPERTY(bool skinToneLine READ skinToneLine WRITE setSkinToneLine NOTIFY skinToneLineChanged)
    Q_PROPERTY(
        double skinToneAngle READ skinToneAngle WRITE setSkinToneAngle NOTIFY skinToneAngleChanged)
    Q_PROPERTY(bool gamutHull READ gamutHull WRITE setGamutHull NOTIFY gamutHullChanged)
    Q_PROPERTY(Coloring coloring READ coloring WRITE setColoring NOTIFY coloringChanged)
    Q_PROPERTY(double lumaLower READ lumaLower NOTIFY lumaGateChanged)
    Q_PROPERTY(double lumaUpper READ lumaUpper NOTIFY lumaGateChanged)

public:
    /** Targets that are shown. */
    enum Target {
        Targets75 = 1, ///< of bars of 75 %
        Targets100 = 2 ///< of bars of 100 %
    };
    /** Bits of Target; the numbers are part of saved states, as those of what follows. */
    Q_DECLARE_FLAGS(Targets, Target)
    Q_FLAG(Targets)

    /** What is drawn around a target. */
    enum Boxes {
        SmallBoxes, ///< 2.5 % of the longest target to each side
        LargeBoxes  ///< these, and a fifth of its length and 10 degrees around
    };
    Q_ENUM(Boxes)

    /** The colours of the trace. */
    enum Coloring {
        Phosphor, ///< green, as a tube shows it
        White,    ///< without colour
        Hue       ///< that of the place
    };
    Q_ENUM(Coloring)

    explicit Vectorscope(QWidget* parent = nullptr);
    ~Vectorscope() override;

    /** How many times as large the plane is shown; 1 (at first) to 64. Setting it shows the middle. */
    double zoom() const;
    void setZoom(double zoom);
    /** How many times as large the signal is shown while everything else stays: 1 (at first), 2 or 4;
        the next lower of them. */
    int gain() const;
    void setGain(int gain);
    /** Whether distances are logarithms, so that weak colours are told apart beside strong ones; off at
        first. */
    bool logRadius() const;
    void setLogRadius(bool on);

    /** Both at first. */
    Targets targets() const;
    void setTargets(Targets targets);
    /** SmallBoxes at first. */
    Boxes boxes() const;
    void setBoxes(Boxes boxes);
    /** Whether NTSC's I and Q are shown, where they lie in the plane of the matrix; off at first. */
    bool iqLines() const;
    void setIQLines(bool shown);
    /** Whether a line shows where skin is to be expected; off at first. */
    bool skinToneLine() const;
    void setSkinToneLine(bool shown);
    /** Its direction in degrees counter-clockwise from +Cb, 0 up to but without 360; 123 at first. That
        is a convention, which no standard knows. */
    double skinToneAngle() const;
    void setSkinToneAngle(double degrees);
    /** Whether the hull of all colours with components of 0 to 1 is shown; on at first. */
    bool gamutHull() const;
    void setGamutHull(bool shown);
    /** Phosphor at first. */
    Coloring coloring() const;
    void setColoring(Coloring coloring);

    /** The luma of the pixels that are counted, both ends included; infinite at first. Ends the wrong way
        round are put right; what is not a number is no limit. */
    double lumaLower() const;
    double lumaUpper() const;
    void setLumaGate(double lower, double upper);

Q_SIGNALS:
    /** Something became another one, by whomever; sent after it did. */
    void gainChanged(int gain);
    void logRadiusChanged(bool on);
    void targetsChanged(Kestrel::UI::Vectorscope::Targets targets);
    void boxesChanged(Kestrel::UI::Vectorscope::Boxes boxes);
    void iqLinesChanged(bool shown);
    void skinToneLineChanged(bool shown);
    void skinToneAngleChanged(double degrees);
    void gamutHullChanged(bool shown);
    void coloringChanged(Kestrel::UI::Vectorscope::Coloring coloring);
    void lumaGateChanged(double lower, double upper);

private:
    VectorscopePrivate& own() const;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(Vectorscope::Targets)

} // namespace Kestrel::UI
