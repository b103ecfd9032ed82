#include "app/Language.h"
#include "app/MainWindow.h"
#include "workspace/BuiltInLayouts.h"

#include <KxUI/curves/Curve.h>
#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/kit/Translations.h>
#include <KxUI/time/TransportControlsWidget.h>

#include <support/TestRegistry.h>

#include <QtWidgets>

#include <sstream>

using namespace Kestrel;

namespace {

struct Entry {
    QString source;
    QStringList translations; // one a plural form
    bool finished = true;
};

QList<Entry> readCatalog(const QString& catalog) {
    QFile file(QStringLiteral(KXUI_SOURCES) + QLatin1Char('/') + catalog);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader xml(&file);
    QList<Entry> entries;
    bool plural = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto is = [&xml](const char* name) { return xml.name() == QLatin1String(name); };
        if (is("message")) {
            plural = xml.attributes().hasAttribute(QLatin1String("numerus"));
        } else if (is("source")) {
            entries.append({xml.readElementText(), {}, true});
        } else if (is("translation")) {
            entries.last().finished = !xml.attributes().hasAttribute(QLatin1String("type"));
            if (!plural)
                entries.last().translations.append(xml.readElementText());
        } else if (is("numerusform")) {
            entries.last().translations.append(xml.readElementText());
        }
    }
    if (xml.hasError())
        entries.clear();
    return entries;
}

/** What has to be the same in a text and its translation: placeholders, and blanks at the ends. */
QStringList marks(const QString& text) {
    static const QRegularExpression mark(QStringLiteral("%[1-9n]|^ +| +$|\\.\\.\\.$|&(?=\\w)"));
    QStringList found;
    for (auto match = mark.globalMatch(text); match.hasNext();)
        found.append(match.next().captured());
    found.sort();
    return found;
}

QChar mnemonic(const QString& text) {
    const int at = int(text.indexOf(QRegularExpression(QStringLiteral("&\\w"))));
    return at < 0 ? QChar() : text.at(at + 1).toLower();
}

QList<const QWidget*> menusOf(const Workbench::MainWindow& window) {
    QList<const QWidget*> menus{window.menuBar()};
    for (const QMenu* menu : window.findChildren<QMenu*>())
        menus.append(menu);
    return menus;
}

/** Two entries of one menu that want the same key, or nothing. */
QString clash(const Workbench::MainWindow& window) {
    for (const QWidget* menu : menusOf(window)) {
        QMap<QChar, QString> keys;
        for (const QAction* action : menu->actions()) {
            const QChar key = mnemonic(action->text());
            if (!key.isNull() && keys.contains(key))
                return keys.value(key) + QStringLiteral(", ") + action->text();
            keys.insert(key, action->text());
        }
    }
    return {};
}

/** The texts of everything in `root` that are on `english`. */
QStringList leftIn(const QObject& root, const QSet<QString>& english) {
    QStringList left;
    QList<const QObject*> all{&root};
    for (const QObject* object : root.findChildren<QObject*>())
        all.append(object);
    for (const QObject* object : all) {
        for (const char* name : {"text", "toolTip", "title", "windowTitle", "placeholderText",
                                 "accessibleName", "suffix"}) {
            const QString text = object->property(name).toString();
            if (english.contains(text))
                left.append(text);
        }
        if (const auto* box = qobject_cast<const QComboBox*>(object)) {
            for (int i = 0; i < box->count(); ++i) {
                if (english.contains(box->itemText(i)))
                    left.append(box->itemText(i));
            }
        }
    }
    return left;
}

} // namespace

class TranslationTest : public QObject {
    Q_OBJECT

private slots:
    void catalogsAreCompleteAndSound_data() {
        QTest::addColumn<QString>("catalog");
        QTest::newRow("library") << QStringLiteral("src/KxUI/translations/kxui_de.ts");
        QTest::newRow("workbench") << QStringLiteral("workbench/translations/kxui-workbench_de.ts");
    }
    // Of what is in the catalogs only: a text that is new in the code is shown in English until the
    // catalogs are brought up to date.
    void catalogsAreCompleteAndSound() {
        QFETCH(QString, catalog);
        const QList<Entry> entries = readCatalog(catalog);
        QVERIFY(!entries.isEmpty());
        for (const Entry& entry : entries) {
            QVERIFY2(entry.finished, qPrintable(entry.source));
            for (const QString& translation : entry.translations) {
                QVERIFY2(!translation.isEmpty(), qPrintable(entry.source));
                QVERIFY2(marks(translation) == marks(entry.source), qPrintable(translation));
            }
        }
    }

    // What the library shows by itself: the menus of panes, the focus actions, the profiler.
    void germanLibrary() {
        const QString catalog = QStringLiteral("src/KxUI/translations/kxui_de.ts");
        QSet<QString> english;
        QSet<QString> german;
        for (const Entry& entry : readCatalog(catalog)) {
            german.unite(QSet<QString>(entry.translations.begin(), entry.translations.end()));
            english.insert(entry.source);
        }
        english.subtract(german);
        QVERIFY(UI::Translations::install(QLocale(QLocale::German)));
        UI::DockMainWindow window;
        UI::Dock* pane = window.createDock();
        window.addWidget(pane);
        auto* page = new QWidget;
        page->setObjectName(QStringLiteral("page"));
        page->setWindowTitle(QStringLiteral("Seite"));
        pane->addWidget(page, false, false);
        for (QMenu* menu : pane->findChildren<QMenu*>())
            Q_EMIT menu->aboutToShow();
        for (const QAction* action : {window.nextDockAction(), window.prevDockAction(),
                                      window.nextTabAction(), window.prevTabAction()})
            QVERIFY2(german.contains(action->text()), qPrintable(action->text()));
        UI::TransportControlsWidget controls;
        for (const QObject* root :
             {static_cast<QObject*>(&window), static_cast<QObject*>(UI::EventGraph::instance()),
              static_cast<QObject*>(&controls)})
            QCOMPARE(leftIn(*root, english), QStringList());
        QVERIFY(UI::Translations::install(QLocale::c()));
    }

    void germanWorkbench() {
        QCOMPARE(clash({Base::TimeBase(24, false), 1 << 20, Workbench::Theme::Dark}), QString());
        QVERIFY(!Workbench::setLanguage(QStringLiteral("xx")));
        QVERIFY(Workbench::setLanguage(QStringLiteral("de_AT")));
        QCOMPARE(UI::DockMainWindow::tr("Next Pane"), QStringLiteral("Nächster Bereich"));

        QSet<QString> translated;
        for (const Entry& entry :
             readCatalog(QStringLiteral("workbench/translations/kxui-workbench_de.ts")))
            translated.unite(QSet<QString>(entry.translations.begin(), entry.translations.end()));

        Workbench::MainWindow window(Base::TimeBase(24, false), 1 << 20, Workbench::Theme::Dark);
        QCOMPARE(clash(window), QString());
        int germanTexts = 0;
        for (const QWidget* menu : menusOf(window)) {
            for (const QAction* action : menu->actions())
                germanTexts += translated.contains(action->text()) ? 1 : 0;
        }
        QVERIFY(germanTexts > 30);

        // A text whose translation is not found where it is looked for stays English.
        QSet<QString> english;
        for (const Entry& entry :
             readCatalog(QStringLiteral("workbench/translations/kxui-workbench_de.ts"))) {
            if (!translated.contains(entry.source))
                english.insert(entry.source);
        }
        for (const Workbench::BuiltInLayout& layout : Workbench::builtInLayouts()) {
            window.arrange(layout);
            for (const auto* button : window.findChildren<QAbstractButton*>())
                QVERIFY2(!english.contains(button->text()), qPrintable(button->text()));
            for (const auto* label : window.findChildren<QLabel*>())
                QVERIFY2(!english.contains(label->text()), qPrintable(label->text()));
        }

        // What is written for programs to read is the same in every language.
        QLocale::setDefault(QLocale(QLocale::German));
        std::ostringstream curve;
        curve << UI::Curve(8, 3);
        QCOMPARE(curve.str(), std::string("(0, 0), (0.5, 0.5), (1, 1)"));
        QLocale::setDefault(QLocale::c());
    }
};

KXUI_TEST(TranslationTest);
#include "TranslationTest.moc"
