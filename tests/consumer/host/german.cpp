#include <KxUI/kit/Translations.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return Kestrel::UI::Translations::install(QLocale(QLocale::German)) ? 0 : 1;
}
