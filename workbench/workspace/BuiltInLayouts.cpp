#include "workspace/BuiltInLayouts.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace Kestrel::Workbench {

namespace {

// Sizes are shares of what there is. What has a stretch takes the room that a larger window brings.

constexpr char review[] = R"(
<splitter orientation="1">
  <split size="400"/>
  <dock id="left" activePageId="Sequences"><page id="Sequences"/></dock>
  <split size="876" stretch="1"/>
  <splitter orientation="2">
    <split size="530" stretch="1"/>
    <dock id="main" activePageId="Viewer" focus="true"><page id="Viewer"/></dock>
    <split size="124"/>
    <dock id="foot" activePageId="Timeline"><page id="Timeline"/></dock>
  </splitter>
</splitter>)";

constexpr char grade[] = R"(
<splitter orientation="1">
  <split size="900" stretch="1"/>
  <splitter orientation="2">
    <split size="530" stretch="1"/>
    <dock id="main" activePageId="Viewer" focus="true"><page id="Viewer"/></dock>
    <split size="124"/>
    <dock id="foot" activePageId="Timeline"><page id="Timeline"/></dock>
  </splitter>
  <split size="376"/>
  <dock id="right" activePageId="Sequences"><page id="Sequences"/></dock>
</splitter>)";

constexpr char wide[] = R"(
<splitter orientation="2">
  <split size="530" stretch="1"/>
  <dock id="main" activePageId="Viewer" focus="true">
    <page id="Viewer"/>
    <page id="Sequences"/>
  </dock>
  <split size="124"/>
  <dock id="foot" activePageId="Timeline"><page id="Timeline"/></dock>
</splitter>)";

/** Where the window is when it fills nothing, as its position with the frame and its size without.
 */
QRect placeOf(const QWidget& window) {
    if (!window.isMaximized() && !window.isFullScreen())
        return QRect(window.pos(), window.size());
    const QPoint frame = window.geometry().topLeft() - window.pos();
    const QRect normal = window.normalGeometry();
    return QRect(normal.topLeft() - frame, normal.size());
}

} // namespace

QString BuiltInLayout::translatedName() const {
    return QCoreApplication::translate("BuiltInLayout", name);
}

QByteArray BuiltInLayout::document(const QWidget& window) const {
    const QRect place = placeOf(window);
    const auto attribute = [](const char* key, int value) {
        return QByteArray(" ") + key + "=\"" + QByteArray::number(value) + "\"";
    };
    QByteArray document = "<layout version=\"1.0\"><window";
    document += attribute("x", place.x()) + attribute("y", place.y());
    document += attribute("w", place.width()) + attribute("h", place.height());
    document += attribute("screen", qMax(0, QGuiApplication::screens().indexOf(window.screen())));
    document += attribute("maximized", int(window.isMaximized()));
    document += attribute("fullscreen", int(window.isFullScreen()));
    return document + ">" + tree + "</window></layout>";
}

const std::vector<BuiltInLayout>& builtInLayouts() {
    static const std::vector<BuiltInLayout> layouts{
        {"review", QT_TRANSLATE_NOOP("BuiltInLayout", "&Review"), review},
        {"grade", QT_TRANSLATE_NOOP("BuiltInLayout", "&Grade"), grade},
        {"wide", QT_TRANSLATE_NOOP("BuiltInLayout", "&Wide"), wide},
    };
    return layouts;
}

} // namespace Kestrel::Workbench
