#include <KxUI/kit/Translations.h>

#include <KxUI/kit/platform/LibraryFile_p.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>
#include <QTranslator>

#include <memory>

namespace Kestrel::UI {

namespace {

QStringList catalogFolders() {
    QStringList folders;
    const QString library = QString::fromStdU16String(libraryFile().u16string());
    if (!library.isEmpty()) {
        const QDir folder = QFileInfo(library).dir();
        for (const char* way : {KXUI_TRANSLATIONS_FROM_LIBRARY, "../../translations"})
            folders += folder.absoluteFilePath(QLatin1String(way));
    }
    return folders + QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                               QStringLiteral(KXUI_DATA_FOLDER "/translations"),
                                               QStandardPaths::LocateDirectory);
}

/** The first language of the list that is there. False stands for English, which the texts are
    written in: who prefers it to German must not get German for want of an English catalog. */
bool loadFirst(QTranslator& translator, const QStringList& languages, bool& found) {
    const QStringList folders = catalogFolders();
    for (QString language : languages) {
        const QLocale::Language spoken = QLocale(language).language();
        found = spoken == QLocale::English || spoken == QLocale::C;
        if (found)
            return false;
        const QString catalog =
            QStringLiteral("kxui_") + language.replace(QLatin1Char('-'), QLatin1Char('_'));
        for (const QString& folder : folders) {
            found = translator.load(catalog, folder);
            if (found)
                return true;
        }
    }
    return false;
}

} // namespace

bool Translations::install(const QLocale& locale) {
    static QPointer<QTranslator> installed;
    if (!QCoreApplication::instance())
        return false;
    delete installed; // which takes it out of the application, too
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    bool found = false;
    if (loadFirst(*translator, locale.uiLanguages(), found)) {
        installed = translator.release();
        QCoreApplication::installTranslator(installed);
    }
    return found;
}

} // namespace Kestrel::UI
