#include "HelpFixture.h"

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include "panels/SequenceListPanel.h"
#include "panels/TimelinePanel.h"
#include "panels/TransportRow.h"
#include "panels/ViewerPanel.h"
#include "workspace/PageKinds.h"

#include <KxUI/help/HelpManager.h>
#include <KxUI/time/TimeField.h>
#include <KxUI/time/TimeSlider.h>

#include <QDesktopServices>
#include <QTcpSocket>
#include <QTreeView>

#include <set>

using namespace Kestrel::Workbench;
using Kestrel::Base::Time;
namespace UI = Kestrel::UI;

/** Help in the workbench: which page F1 opens, what the pages may ask for, and whether the pages
    hang together. */
class HelpDeskTest : public QObject {
    Q_OBJECT

public slots:
    /** Stands in for the user's browser. */
    void browse(const QUrl& url) { m_opened = url; }

private:
    Kestrel::Test::HelpFixture m_workbench;
    QUrl m_opened;

    static QByteArray read(const QString& name) {
        QFile file(QDir(QFile::decodeName(helpFolder())).filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static QStringList all(const QByteArray& text, const char* pattern) {
        QStringList found;
        auto matches =
            QRegularExpression(QLatin1String(pattern)).globalMatch(QString::fromUtf8(text));
        while (matches.hasNext())
            found << matches.next().captured(1);
        return found;
    }

    QByteArray post(const QByteArray& target, const QByteArray& headers) {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), quint16(m_opened.port()));
        socket.write("POST " + target + " HTTP/1.1\r\n" + headers + "\r\n");
        if (!QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::UnconnectedState; }))
            return {};
        return socket.readAll();
    }

private slots:
    void initTestCase() {
        m_workbench.open();
        QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "browse");
        // The server tells of the pages some time after the panels were made, in any order.
        for (const char* page :
             {"index.html", "viewer.html", "sequence-list.html", "timeline.html", "transport.html"})
            QTRY_VERIFY2(!UI::HelpManager::instance()->getUrl(page).empty(), page);
    }

    void f1_data() {
        const Kestrel::Test::Columns<QWidget*, QString> row("clicked", "page");
        MainWindow& window = *m_workbench.window;
        TransportRow* transport = window.timeline()->transportRow();
        // A click into the viewer, which takes no keys, ends up at the panel.
        row("viewer", window.viewer()->childAt(window.viewer()->rect().center()), "/viewer.html");
        row("list", window.list()->view()->viewport(), "/sequence-list.html");
        row("slider", window.timeline()->slider(), "/timeline.html");
        row("transport", transport->findChild<UI::TimeField*>(), "/transport.html");
    }

    void f1() {
        QFETCH(QWidget*, clicked);
        QFETCH(QString, page);
        m_opened.clear();
        QTest::mouseClick(clicked, Qt::LeftButton);
        QWidget* focus = QApplication::focusWidget();
        QVERIFY(focus);
        QTest::keyClick(focus, Qt::Key_F1);
        QCOMPARE(m_opened.host(), QStringLiteral("127.0.0.1"));
        QCOMPARE(m_opened.path(), page);
    }

    void everyPanelHasAPage() {
        QCOMPARE(HelpDesk::nodeOf(nullptr), std::string("index.html"));
        QCOMPARE(HelpDesk::nodeOf(m_workbench.window.get()), std::string("index.html"));
        for (const PageKind& kind : pageKinds()) {
            QWidget* page = m_workbench.window->page(QLatin1String(kind.id));
            QCOMPARE(HelpDesk::nodeOf(page), std::string(kind.help));
            QVERIFY2(!read(QLatin1String(kind.help)).isEmpty(), kind.help);
        }
    }

    void commands_data() {
        const Kestrel::Test::Columns<QByteArray, Time> row("target", "frame");
        row("frame 1", "/go-to-frame-1", 1);
        row("frame 7", "/go-to-frame-7", 7);
        row("beyond the clip", "/go-to-frame-9000", 40);
        row("start", "/go-to-start", 1);
        row("end", "/go-to-end", 40);
        for (const char* nonsense :
             {"/", "/go-to-frame-", "/go-to-frame-x", "/go-to-frame-3x", "/go-to-frame-+3",
              "/go-to-frame-99999999999999999999", "/go-to-start-now", "/quit"})
            row(nonsense, nonsense, 25);
    }

    void commands() {
        QFETCH(QByteArray, target);
        QFETCH(Time, frame);
        m_workbench.goTo(25);
        QCOMPARE(post(target, {}), QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
        QCOMPARE(m_workbench.current(), frame);
        m_workbench.goTo(25);
        QVERIFY(post(target, "Origin: http://elsewhere.invalid\r\n").startsWith("HTTP/1.1 404 "));
        QCOMPARE(m_workbench.current(), Time(25));
    }

    /** Every link, picture and entry of the search leads somewhere, every title can be found, and
        every page leads to all others without a script. */
    void pagesHangTogether() {
        const QDir folder(QFile::decodeName(helpFolder()));
        const QStringList pages = folder.entryList({QStringLiteral("*.html")});
        const QDir sources(QStringLiteral(KXUI_SOURCES "/docs/help/pages"));
        QCOMPARE(pages, sources.entryList({QStringLiteral("*.html")}));
        std::set<QString> places;
        QStringList links = all(read(QStringLiteral("help.js")), "\", \"(\\w[^\"]*\\.html[^\"]*)");
        const std::set<QString> searchable(links.begin(), links.end());
        QStringList files;
        for (const QString& page : pages) {
            const QByteArray text = read(page);
            places.insert(page);
            QVERIFY2(!text.contains('@'), qPrintable(page)); // Nothing is left to be filled in.
            const QByteArray navigation = text.mid(text.indexOf("<nav"));
            const QStringList reached = all(navigation.left(navigation.indexOf("</nav>")),
                                            "<a href=\"([^\"#]+)\"(?: aria-current=\"page\")?>");
            QCOMPARE(std::set<QString>(reached.begin(), reached.end()),
                     std::set<QString>(pages.begin(), pages.end()));
            QCOMPARE(all(text, "<a href=\"([^\"]+)\" aria-current=\"page\">"), QStringList(page));
            for (const QString& id : all(text, "<h2 id=\"([^\"]+)"))
                places.insert(page + QLatin1Char('#') + id);
            links += all(text, "href=\"([^\"]+\\.html[^\"]*)");
            files += all(text, "(?:src|srcset|href)=\"([^\":]+\\.(?:png|js|css))");
        }
        QCOMPARE(searchable, places);
        for (const QString& link : links)
            QVERIFY2(places.count(link) == 1, qPrintable(link));
        for (const QString& file : files) {
            const QFileInfo info(folder.filePath(file));
            QVERIFY2(info.isFile() && info.size() < 150 * 1000, qPrintable(file));
        }
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("http")); }
};

KXUI_TEST(HelpDeskTest);
#include "HelpDeskTest.moc"
