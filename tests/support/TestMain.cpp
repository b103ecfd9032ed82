#include <support/TestRegistry.h>

#include <QApplication>
#include <QStandardPaths>
#include <QtTest>

#include <cstdio>

namespace Kestrel::Test {

std::vector<Case>& cases() {
    static std::vector<Case> all;
    return all;
}

} // namespace Kestrel::Test

// test_ROOM [CASE [QtTest arguments]]: runs one case, or all of them.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);

    QStringList arguments = application.arguments();
    const std::string wanted = arguments.size() > 1 && !arguments.at(1).startsWith(QLatin1Char('-'))
                                   ? arguments.takeAt(1).toStdString()
                                   : std::string();
    int failures = 0;
    bool found = false;
    for (const auto& testCase : Kestrel::Test::cases()) {
        if (!wanted.empty() && wanted != testCase.name)
            continue;
        found = true;
        const auto object = testCase.make();
        failures += QTest::qExec(object.get(), arguments);
    }
    if (!found) {
        std::fprintf(stderr, "no test case named \"%s\"\n", wanted.c_str());
        return 1;
    }
    return failures == 0 ? 0 : 1;
}
