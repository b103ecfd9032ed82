#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeView.h>

namespace Kestrel::UI {

class ColorSpaceScopePrivate;

/** The colours of a picture as a cloud in space: a disc for each cell of the model's solid that has
    pixels, larger the more it has, in the cell's colour. Pixels beyond the solid are rings next to
    where they would be.

    Dragging with the left button turns the cloud; with Shift it selects the colours in a rectangle,
    with Control those in a line drawn by hand. Keys beside those of all scopes: Control and the arrows
    turn by 5 degrees, with Shift by 45; 1, 2 and 3 look from the front, from the side and from
    above; 0 goes home. The arrows move a cursor that names the nearest cell. Interface thread. */
class KXUI_EXPORT ColorSpaceScope : public ScopeView {
    Q_OBJECT
    Q_PROPERTY(Space space READ space WRITE setSpace NOTIFY spaceChanged)
    Q_PROPERTY(Projection projection READ projection WRITE setProjection NOTIFY projectionChanged)
    Q_PROPERTY(double yaw READ yaw WRITE setYaw NOTIFY orbitChanged)
    Q_PROPERTY(double pitch READ pitch WRITE setPitch NOTIFY orbitChanged)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY viewChanged)
    Q_PROPERTY(int minimumCount READ minimumCount WRITE setMinimumCount NOTIFY minimumCountChanged)
    Q_PROPERTY(bool hasSlab READ hasSlab NOTIFY slabChanged)
    Q_PROPERTY(GamutWires gamutWires READ gamutWires WRITE setGamutWires NOTIFY gamutWiresChanged)

public:
    /** Where colours lie; the numbers are part of saved states. */
    enum Space {
        RgbCube,    ///< red to the right, green upwards, blue to the front
        YCbCrSolid, ///< Cb to the right, luma upwards, Cr to the front
        HsvCone     ///< hue around, value upwards from the tip, saturation outwards
    };
    Q_ENUM(Space)

    /** How space comes onto the plane; the numbers are part of saved states. */
    enum Projection {
        Perspective, ///< what is nearer is larger
        Orthographic ///< parallels stay parallel
    };
    Q_ENUM(Projection)

    /** Places to look from. */
    enum NamedView {
        HomeView,  ///< from the front right and above, in perspective and without zoom
        FrontView, ///< along the third axis, orthographic as what follows
        SideView,  ///< along the first axis
        TopView    ///< down the second axis
    };
    Q_ENUM(NamedView)

    /** Lines in space, as bits; the numbers are part of saved states. */
    enum GamutWire {
        LegalWire = 1,   ///< where signals of 0 to 1 end
        Rec709Wire = 2,  ///< the same of ITU-R BT.709's primaries, in a signal of BT.2020's
        Rec2020Wire = 4, ///< the same of ITU-R BT.2020's primaries, in a signal of BT.709's
        GreyAxis = 8,    ///< from black to white
        AllWires = 15    ///< all of these
    };
    /** Bits of GamutWire. */
    Q_DECLARE_FLAGS(GamutWires, GamutWire)
    Q_FLAG(GamutWires)

    explicit ColorSpaceScope(QWidget* parent = nullptr);
    ~ColorSpaceScope() override;

    /** RgbCube at first. */
    Space space() const;
    void setSpace(Space space);
    /** Perspective at first. */
    Projection projection() const;
    void setProjection(Projection projection);

    /** Degrees around the cloud, -180 up to 180, 0 being the front, and above it, -90 to 90. */
    double yaw() const;
    double pitch() const;
    void setYaw(double degrees);
    void setPitch(double degrees);
    void setOrbit(double yaw, double pitch);

    /** How many times larger than without zoom; 1 to 64. Setting it keeps the middle of what is
        seen. */
    double zoom() const;
    void setZoom(double factor);

    /** Cells of fewer pixels are not shown; 1 (at first) or more. */
    int minimumCount() const;
    void setMinimumCount(int pixels);

    /** Only cells whose luma lies within the slab are shown, if there is one; none at first. */
    bool hasSlab() const;
    double slabLower() const;
    double slabUpper() const;
    /** Ends that are the wrong way round, or no numbers, are put right. */
    void setSlab(double lower, double upper);
    void clearSlab();

    /** LegalWire and GreyAxis at first. */
    GamutWires gamutWires() const;
    void setGamutWires(GamutWires wires);

public Q_SLOTS:
    /** Looks from there. */
    void showView(Kestrel::UI::ColorSpaceScope::NamedView view);

Q_SIGNALS:
    /** Something became another one, by whomever; sent after it did. */
    void spaceChanged(Kestrel::UI::ColorSpaceScope::Space space);
    void projectionChanged(Kestrel::UI::ColorSpaceScope::Projection projection);
    void orbitChanged(double yaw, double pitch);
    void minimumCountChanged(int pixels);
    void slabChanged();
    void gamutWiresChanged(Kestrel::UI::ColorSpaceScope::GamutWires wires);

private:
    ColorSpaceScopePrivate& own() const;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ColorSpaceScope::GamutWires)

} // namespace Kestrel::UI
