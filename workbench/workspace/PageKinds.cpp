#include "workspace/PageKinds.h"

#include "panels/ColorPanel.h"
#include "panels/ExposureCurvePanel.h"
#include "panels/GradePanel.h"
#include "panels/HistoryPanel.h"
#include "panels/RenderTimesPanel.h"
#include "panels/ScopesPanel.h"
#include "panels/SequenceListPanel.h"
#include "panels/StatisticsPanel.h"
#include "panels/TimelinePanel.h"
#include "panels/ViewerPanel.h"

#include <QCoreApplication>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

template <typename Panel>
QWidget* make(Session* session) {
    return new Panel(session);
}

template <>
QWidget* make<SequenceListPanel>(Session* /*session*/) {
    return new SequenceListPanel;
}

} // namespace

const std::vector<PageKind>& pageKinds() {
    static const std::vector<PageKind> kinds{
        {"Sequences", QT_TRANSLATE_NOOP("PageKind", "Sequences"), "PageSequences",
         "sequence-list.html", make<SequenceListPanel>},
        {"Viewer", QT_TRANSLATE_NOOP("PageKind", "Viewer"), "PageViewer", "viewer.html",
         make<ViewerPanel>},
        {"Timeline", QT_TRANSLATE_NOOP("PageKind", "Timeline"), "PageTimeline", "timeline.html",
         make<TimelinePanel>},
        {"Grade", QT_TRANSLATE_NOOP("PageKind", "Grade"), "PageGrade", "grading.html",
         make<GradePanel>},
        {"Exposure", QT_TRANSLATE_NOOP("PageKind", "Exposure"), "CurvePresets", "grading.html",
         make<ExposureCurvePanel>},
        {"Colour", QT_TRANSLATE_NOOP("PageKind", "Colour"), "Pipette", "grading.html",
         make<ColorPanel>},
        {"History", QT_TRANSLATE_NOOP("PageKind", "History"), "PageHistory", "grading.html",
         make<HistoryPanel>},
        {"Scopes", QT_TRANSLATE_NOOP("PageKind", "Scopes"), "PageScopes", "scopes.html",
         make<ScopesPanel>},
        {"Statistics", QT_TRANSLATE_NOOP("PageKind", "Statistics"), "PageStatistics", "scopes.html",
         make<StatisticsPanel>},
        {"RenderTimes", QT_TRANSLATE_NOOP("PageKind", "Render Times"), "PageRenderTimes",
         "render-times.html", make<RenderTimesPanel>},
    };
    return kinds;
}

const PageKind* pageKind(const QString& id) {
    const auto& kinds = pageKinds();
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&id](const PageKind& kind) {
        return id == QLatin1String(kind.id);
    });
    return found == kinds.end() ? nullptr : &*found;
}

QString PageKind::translatedTitle() const {
    return QCoreApplication::translate("PageKind", title);
}

} // namespace Kestrel::Workbench
