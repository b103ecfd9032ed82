#include "workspace/BuiltInLayouts.h"

#include <QCoreApplication>

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
    <split size="350" stretch="1"/>
    <dock id="main" activePageId="Viewer" focus="true"><page id="Viewer"/></dock>
    <split size="124"/>
    <dock id="foot" activePageId="Timeline"><page id="Timeline"/></dock>
    <split size="180"/>
    <dock id="keys" activePageId="Exposure"><page id="Exposure"/></dock>
  </splitter>
  <split size="376"/>
  <dock id="right" activePageId="Grade">
    <page id="Grade"/>
    <page id="Colour"/>
    <page id="History"/>
    <page id="Sequences"/>
  </dock>
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

constexpr char scopes[] = R"(
<splitter orientation="1">
  <split size="716" stretch="1"/>
  <splitter orientation="2">
    <split size="420" stretch="1"/>
    <dock id="main" activePageId="Viewer" focus="true">
      <page id="Viewer"/>
      <page id="Sequences"/>
    </dock>
    <split size="124"/>
    <dock id="foot" activePageId="Timeline"><page id="Timeline"/></dock>
  </splitter>
  <split size="560"/>
  <splitter orientation="2">
    <split size="400" stretch="1"/>
    <dock id="right" activePageId="Scopes">
      <page id="Scopes"/>
      <page id="Grade"/>
    </dock>
    <split size="260"/>
    <dock id="figures" activePageId="Statistics"><page id="Statistics"/></dock>
  </splitter>
</splitter>)";

} // namespace

QString BuiltInLayout::translatedName() const {
    return QCoreApplication::translate("BuiltInLayout", name);
}

QByteArray BuiltInLayout::document() const {
    return QByteArray("<layout version=\"1.0\"><window>") + tree + "</window></layout>";
}

const std::vector<BuiltInLayout>& builtInLayouts() {
    static const std::vector<BuiltInLayout> layouts{
        {"review", QT_TRANSLATE_NOOP("BuiltInLayout", "&Review"), review},
        {"grade", QT_TRANSLATE_NOOP("BuiltInLayout", "&Grade"), grade},
        {"wide", QT_TRANSLATE_NOOP("BuiltInLayout", "&Wide"), wide},
        {"scopes", QT_TRANSLATE_NOOP("BuiltInLayout", "S&copes"), scopes},
    };
    return layouts;
}

} // namespace Kestrel::Workbench
