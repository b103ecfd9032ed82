#include "HelpFixture.h"

#include <support/TestRegistry.h>

#include <KxUI/help/HelpManager.h>

using Kestrel::Base::Time;

/** What a reader has: the pages as the workbench serves them, in a real browser. */
class HelpBrowserTest : public QObject {
    Q_OBJECT

private:
    Kestrel::Test::HelpFixture m_workbench;

    /** Lets the browser open a page and go through what it does, and returns its document then. */
    static QString documentAfter(const std::string& url) {
        const QTemporaryDir profile;
        QProcess browser;
        browser.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
        browser.setStandardErrorFile(QProcess::nullDevice());
        // Time without work is skipped, and stands still while a response is awaited.
        const QString options("--headless --no-sandbox --disable-gpu --disable-dev-shm-usage "
                              "--disable-background-networking --no-first-run "
                              "--disable-component-update --disable-sync --disable-extensions "
                              "--no-proxy-server --virtual-time-budget=20000 --dump-dom");
        browser.start(KXUI_CHROMIUM,
                      options.split(' ') + QStringList{"--user-data-dir=" + profile.path(),
                                                       QString::fromStdString(url)});
        if (!QTest::qWaitFor([&] { return browser.state() == QProcess::NotRunning; }, 120000))
            return {};
        return QString::fromUtf8(browser.readAllStandardOutput());
    }

private slots:
    void readerGoesThroughThePages() {
        m_workbench.open();
        auto* manager = Kestrel::UI::HelpManager::instance();
        manager->setSearchPath({KXUI_TEST_HELP_PAGES});
        manager->checkNode("drive.html");
        QTRY_VERIFY(!manager->getUrl("drive.html").empty());

        const QString document = documentAfter(manager->getUrl("drive.html"));
        QStringList report = document.section(QStringLiteral("<pre id=\"report\">"), 1)
                                 .section(QStringLiteral("</pre>"), 0, 0)
                                 .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        const QStringList expected{
            QStringLiteral("KxUI Workbench help: 1 of 1 pictures"),
            QStringLiteral("styled: true"),
            QStringLiteral("Sequence list - KxUI Workbench help: 1 of 1 pictures"),
            QStringLiteral("Viewer - KxUI Workbench help: 2 of 2 pictures"),
            QStringLiteral("Timeline - KxUI Workbench help: 2 of 2 pictures"),
            QStringLiteral("Grading - KxUI Workbench help: 2 of 2 pictures"),
            QStringLiteral("Scopes and statistics - KxUI Workbench help: 3 of 3 pictures"),
            QStringLiteral("Workspace - KxUI Workbench help: 2 of 2 pictures"),
            QStringLiteral("Profiler - KxUI Workbench help: 1 of 1 pictures"),
            QStringLiteral("Transport controls - KxUI Workbench help: 1 of 1 pictures"),
            QStringLiteral("found: Missing and unreadable frames, Decoded and missing frames"),
            QStringLiteral("answer: Done: look at the workbench."),
            QStringLiteral("at: /viewer.html#missing"),
            QStringLiteral("end")};
        QVERIFY2(report == expected, qPrintable(document));
        QCOMPARE(m_workbench.current(), Time(1));
    }
};

KXUI_TEST(HelpBrowserTest);
#include "HelpBrowserTest.moc"
