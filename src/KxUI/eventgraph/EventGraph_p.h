#pragma once

#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/dock/WidgetTracker.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QAction;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QScrollArea;
class QSplitter;
class QToolBar;
QT_END_NAMESPACE

namespace Kestrel::UI {

class StatisticsTable;

/** The parts of a profiler window. */
struct EventGraphPrivate {
    EventGraphPrivate(EventGraph* window, IEventGraphTimer* timer);

    QToolBar* makeCaptureToolBar();
    QToolBar* makeFileToolBar();
    QToolBar* makeLookToolBar();
    QAction* addLook(QToolBar* bar, const QString& text, const QString& toolTip,
                     std::function<void()> function);
    void makeSearch(QToolBar* bar);

    EventGraphMode chosenMode() const;
    EventGraphView::SaveFlags saveFlags() const;
    void find(bool backwards);
    void showStatistics(bool shown);
    void fillStatistics();
    void setCapturing(bool capturing);
    /** Asks for a file by a dialog of that title; `done` is called when one was chosen. */
    void askForFile(FileChooserDialog::Mode kind, const QString& title, const QString& filter,
                    std::function<void(const QString&)> done) const;

    /** Of the settings: whether the statistics are shown. */
    QString statisticsKey() const;
    void savePlace();

    EventGraph* const q;
    EventGraphView* view;
    QScrollArea* scrollArea;
    QSplitter* splitter;
    StatisticsTable* statistics;
    bool statisticsHaveSize = false;
    std::unique_ptr<WidgetTracker> tracker; ///< while the window remembers its place

    QAction* singleShot = nullptr;
    QAction* start = nullptr;
    QLabel* modeLabel = nullptr;
    QComboBox* mode = nullptr;
    QLabel* durationLabel = nullptr;
    QDoubleSpinBox* duration = nullptr;
    QCheckBox* hideEmptyTracks = nullptr;
    QLabel* hitTestLabel = nullptr;
    QComboBox* hitTest = nullptr;
    QAction* save = nullptr;
    QCheckBox* includeUserData = nullptr;
    QCheckBox* skipDuplicates = nullptr;
    QList<QAction*> lookActions;
    QAction* statisticsAction = nullptr;
    QLineEdit* search = nullptr;
};

} // namespace Kestrel::UI
