#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeResult.h>
#include <KxUI/scopes/ScopeSelection.h>

#include <QFlags>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace Kestrel::UI {

/** The picture that scopes show and what was counted of it. Views borrow a model and say what they
    need while they are visible; without a visible view, nothing is counted.

    Counting runs on threads of the model's own, at most four. What is newest is counted next, and what
    came between is not; a pass that runs is finished, or a film that is quicker than its counts would
    never show any. The last image always gets its result. Neither the interface thread nor the
    destructor waits for a pass: one that hangs in the host's transform keeps its copies of image and
    encoding and dies when it returns, and after two seconds others count in its place. Interface
    thread. */
class KXUI_EXPORT ScopeModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QRect region READ region WRITE setRegion NOTIFY changed)
    Q_PROPERTY(int row READ row WRITE setRow NOTIFY changed)
    Q_PROPERTY(bool interactive READ isInteractive WRITE setInteractive NOTIFY changed)
    Q_PROPERTY(double maximumRate READ maximumRate WRITE setMaximumRate NOTIFY changed)

public:
    /** What changed() says. */
    enum Change {
        Image = 1,      ///< image()
        Region = 2,     ///< region() or row()
        Encoding = 4,   ///< encoding()
        Sample = 8,     ///< sample()
        Result = 16,    ///< result()
        Reference = 32, ///< reference()
        Selection = 64, ///< selection()
        Pace = 128      ///< isInteractive() or maximumRate()
    };
    /** Bits of Change. */
    Q_DECLARE_FLAGS(Changes, Change)
    Q_FLAG(Changes)

    /** What is counted; the numbers of ScopeRequest::Part. */
    enum Part {
        Values = ScopeRequest::Values,     ///< for histograms and statistics
        Waveform = ScopeRequest::Waveform, ///< by the WaveformRange of require()
        Vectors = ScopeRequest::Vectors,   ///< by its VectorRange
        Solid = ScopeRequest::Solid,       ///< by setSolidRange()
        Hues = ScopeRequest::Hues          ///< for histograms of hue and saturation
    };
    /** Bits of Part. */
    Q_DECLARE_FLAGS(Parts, Part)
    Q_FLAG(Parts)

    explicit ScopeModel(QObject* parent = nullptr);
    ~ScopeModel() override;

    /** The picture, empty at first. Setting one counts it, even if it is the same. */
    const ScopeImage& image() const;
    void setImage(const ScopeImage& image);

    /** The part of it that is counted, in pixels of the full frame; null: all. */
    QRect region() const;
    void setRegion(const QRect& fullFramePixels);

    /** The one row of the full frame that is counted, inside region(); -1: all. */
    int row() const;
    void setRow(int row);

    /** What values mean. */
    const ScopeEncoding& encoding() const;
    void setEncoding(const ScopeEncoding& encoding);

    /** The pixel that scopes mark, in the full frame, as a host reports it from its viewer; none at
        first, and none outside the picture. With a transform it is read by a thread, and comes with
        changed(); a transform that throws means no sample. */
    std::optional<ScopeSample> sample() const;
    void setSample(const QPoint& fullFramePixel, int radius = 0);
    void clearSample();

    /** A result to compare with, kept by hold(); null without one. */
    std::shared_ptr<const ScopeResult> reference() const;
    /** Keeps the present result, not its pixels. Nothing without one. */
    void hold();
    void clearReference();

    /** What a scope's brush covers; nothing at first. */
    const ScopeSelection& selection() const;
    void setSelection(const ScopeSelection& selection);

    /** The edges of the cube that Solid is counted in. */
    ValueRange solidRange() const;
    void setSolidRange(const ValueRange& range);

    /** While a user drags or plays, one of interactiveRowStep() rows may stand for all; the whole
        picture is counted when that ends. Off at first. */
    bool isInteractive() const;
    void setInteractive(bool interactive);
    /** 1 (at first): all rows, always. 1 to 64. */
    int interactiveRowStep() const;
    void setInteractiveRowStep(int rows);

    /** Passes that may begin in a second: 25 at first, 0.1 to 1000. The last image gets its result
        nevertheless. */
    double maximumRate() const;
    void setMaximumRate(double perSecond);

    /** What was counted last; never null, empty at first. */
    std::shared_ptr<const ScopeResult> result() const;
    /** Whether result() belongs to all that is set and needed: no pass waits or runs. */
    bool isCurrent() const;

    /** A view that is seen needs these parts, until it asks for other ones; no parts: none. Where
        several ask for ranges, one is counted that covers them all, with the smallest of their bins as
        far as ValueRange allows; rows instead of columns, and the limits of luma, are those of the
        latest who asked. Forgotten when `who` is destroyed. */
    void require(const QObject* who, Parts parts, const WaveformRange& waveform = WaveformRange(),
                 const VectorRange& vectors = VectorRange());
    /** What all who asked need. */
    Parts requiredParts() const;

    /** Looks for the first pixel that is chosen, from the upper left, among those that are counted,
        or those of them in a part of the full frame, and tells `who` by found(); a later search ends
        this one. */
    void find(const QObject* who, const ScopeSelection& wanted,
              const QRect& fullFramePixels = QRect());

    /** Passes that have begun so far. */
    quint64 passCount() const;

Q_SIGNALS:
    /** One or more things changed, after they were stored. */
    void changed(Kestrel::UI::ScopeModel::Changes changes);
    /** Where the pixel is that `who` has asked for, in the full frame; not sent where there is none. */
    void found(const QObject* who, const QPoint& fullFramePixel);

protected:
    /** Takes what the threads have counted. */
    bool event(QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ScopeModel::Changes)
Q_DECLARE_OPERATORS_FOR_FLAGS(ScopeModel::Parts)

} // namespace Kestrel::UI
