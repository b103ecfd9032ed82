#pragma once

#include "ToolLine.h"
#include "app/MainWindow.h"
#include "panels/RenderTimesPanel.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <memory>

namespace Kestrel::Workbench {

/** Shows without a screen that the program does its work: lists the folders, decodes their
    sequences and saves pictures of the window and of each widget, dark and light, at screen scale 1
    and 2. */
class Tour {
public:
    /** @param paths  what to open, absolute, at least one */
    Tour(const ToolLine& line, QList<QByteArray> paths);

    /** Makes the tour and prints its tables to standard output. The second scale is made by another
        process of this program, since a process has one scale. Returns the exit code: 0, or 1 when
        something could not be saved. */
    int run();

private:
    void visitFolder(const QByteArray& folder);
    void waitForSizes();
    void capturePlayback();
    void showcase();
    void restForFigures();
    void savePictures(Theme theme);
    void saveLayouts();
    void saveDamaged();
    void saveGrading();
    void saveScopes();
    void saveProfiler();
    void saveRenderTimes();
    void saveTasks();
    static void wait(int milliseconds);
    void save(QWidget* widget, const QString& name);
    bool waitFor(const std::function<bool()>& done, int seconds);
    int runOtherScale(int scale);

    ToolLine m_line;
    QList<QByteArray> m_paths;
    int m_scale;
    bool m_failed = false;
    Theme m_theme = Theme::Dark;
    MainWindow m_window;
    std::unique_ptr<RenderTimesPanel> m_times; ///< on the window's session
};

} // namespace Kestrel::Workbench
