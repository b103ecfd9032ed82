#pragma once

#include <KxUI/style/Shades_p.h>

#include <QRect>
#include <QRgb>

#include <array>
#include <cstdint>

class QPainterPath;

namespace Kestrel::UI {

/** A shape that controls are put together from. */
enum class StyleElement : std::uint8_t {
    Button,       ///< push buttons, closed combo boxes
    ToolButton,   ///< without a shape of its own until it is hovered, pressed or checked
    Field,        ///< where something is typed
    Frame,        ///< around a field that is filled by its widget
    Panel,        ///< around a group; see-through
    Indicator,    ///< of a check box
    Radio,        ///< the same, round
    Groove,       ///< what a handle slides in
    Handle,       ///< of a slider
    ScrollHandle, ///< of a scroll bar
    Progress,     ///< the part that is done
    Tab,
    Header, ///< a section of a header, the title of a dock
    Menu,   ///< behind the items of a menu
    Tip,    ///< behind the text of a tool tip
    Focus   ///< around what has the focus and no shape
};
constexpr int StyleElementCount = int(StyleElement::Focus) + 1;

/** How an element is shown. */
enum StyleState : std::uint16_t {
    StateEnabled = 1,
    StateHover = 2,
    StateSunken = 4,
    StateOn = 8,
    StateFocus = 16,
    StateDefault = 32,
    StateUpright = 64 ///< lies along a vertical line: a texture of its width is stretched in height
};

/** The sides on which an element goes over into its neighbour: square corners and no outline. */
enum StyleEdge : std::uint8_t { JoinLeft = 1, JoinTop = 2, JoinRight = 4, JoinBottom = 8 };

/** What an element looks like: a rounded rectangle. An alpha of 0 leaves something out. */
struct Bevel {
    QRgb top = 0; ///< its fill, which may change from top to bottom
    QRgb bottom = 0;
    QRgb outline = 0; ///< a line of one pixel of the device
    QRgb inner = 0;   ///< another one within it
    double radius = 0;

    bool isFlat() const { return top == bottom; }
};

/** The radius of the corners of a frame, in logical pixels: that of a bevel without a height to be
    round in. */
double frameRadius(const Bevel& bevel);

/** The looks of an element. */
Bevel bevelOf(StyleElement element, unsigned state, const Shades& shades);

/** A part of a texture and where it goes; all in pixels of the device. */
struct TextureSlice {
    QRect target;
    QRect source;
};

/** A rectangle of one colour. */
struct StyleLine {
    QRect target;
    QRgb color = 0;
};

/** How an element is drawn: parts of its texture, and lines and areas of one colour. */
struct ElementPlan {
    std::array<TextureSlice, 9> slices;
    std::array<StyleLine, 11> lines;
    int sliceCount = 0;
    int lineCount = 0;

    void add(const QRect& target, const QRect& source);
    void add(const QRect& target, QRgb color);
};

/** The shape of a texture, in pixels of the device. A row has the height of what it is drawn for
    and is repeated along it; else it is the corners of a frame of any size. */
struct TextureShape {
    int cap = 0;    ///< the ends that are drawn once
    int middle = 0; ///< between them; a multiple of the period of the dither
    int extent = 0; ///< the height of a row; 0 for a frame, which is square

    QSize size() const;
    bool operator==(const TextureShape& other) const {
        return cap == other.cap && middle == other.middle && extent == other.extent;
    }
};

/** The height of the row that an element of `height` pixels of the device is drawn by; 0 where it
    is drawn by a frame. */
int textureExtent(StyleElement element, int height, double ratio);

/** The texture for a bevel in a row of that height. */
TextureShape textureShape(StyleElement element, const Bevel& bevel, int extent, double ratio);

/** The plan for `target` by a texture of that shape. Upright rows are laid from top to bottom. */
ElementPlan planOf(const QRect& target, const TextureShape& shape, const Bevel& bevel,
                   unsigned edges, bool isUpright);

/** Small shapes that are drawn in one colour. */
enum class StyleMark : std::uint8_t {
    ArrowUp,
    ArrowDown,
    ArrowLeft,
    ArrowRight,
    Check,
    Dash,
    Dot,
    Plus,
    Minus,
    Cross,
    GripRow,   ///< dots along a horizontal line
    GripColumn ///< dots along a vertical line
};
constexpr int StyleMarkCount = int(StyleMark::GripColumn) + 1;

/** A mark in a square of side 1, to be filled. */
QPainterPath markPath(StyleMark mark);

} // namespace Kestrel::UI
