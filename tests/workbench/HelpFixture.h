#pragma once

#include "TestImages.h"

#include "app/MainWindow.h"

#include <QtTest>

#include <memory>

namespace Kestrel::Test {

/** The workbench with a clip from frame 1 to 40. */
class HelpFixture {
public:
    std::unique_ptr<Workbench::MainWindow> window;

    void open() {
        for (const char* name : {"s.0001.exr", "s.0040.exr"})
            QVERIFY(writeImage(m_folder.filePath(QLatin1String(name))));
        window = std::make_unique<Workbench::MainWindow>(
            Base::TimeBase(25, false), std::size_t(64) << 20, Workbench::Theme::Dark);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        window->openPaths({QFile::encodeName(m_folder.path())});
        QTRY_VERIFY(!window->session()->sequence().isEmpty());
        goTo(25);
        QCOMPARE(current(), Base::Time(25));
    }

    void goTo(Base::Time time) { window->session()->navigator()->goTo(time); }
    Base::Time current() { return window->session()->model()->currentTime(); }

private:
    QTemporaryDir m_folder;
};

} // namespace Kestrel::Test
