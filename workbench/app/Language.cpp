#include "app/Language.h"

#include <KxUI/kit/Translations.h>

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>

#include <memory>

namespace Kestrel::Workbench {

namespace {

/** Where catalogs may be: installed or built with the program. */
QStringList catalogFolders() {
    const QDir program(QCoreApplication::applicationDirPath());
    return QStringList{program.absoluteFilePath(QStringLiteral(KXUI_TRANSLATIONS_FROM_PROGRAM)),
                       program.absoluteFilePath(QStringLiteral("translations"))} +
           QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                     QStringLiteral("kxui/translations"),
                                     QStandardPaths::LocateDirectory);
}

/** The catalog of that language, or of its language without the country. */
bool install(const QString& catalog, const QStringList& folders) {
    for (const QString& folder : folders) {
        auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
        if (translator->load(catalog, folder))
            return QCoreApplication::installTranslator(translator.release());
    }
    return false;
}

} // namespace

bool setLanguage(const QString& name) {
    const QString language = name.isEmpty() ? QLocale().name() : name;
    const QString ending = QLatin1Char('_') + language;
    install(QStringLiteral("qtbase") + ending,
            {QLibraryInfo::location(QLibraryInfo::TranslationsPath)});
    UI::Translations::install(QLocale(language));
    return install(QStringLiteral("kxui-workbench") + ending, catalogFolders()) ||
           QLocale(language).language() == QLocale::English;
}

} // namespace Kestrel::Workbench
