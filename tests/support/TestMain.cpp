#include <support/TestRegistry.h>

#include <QApplication>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

namespace Kestrel::Test {

std::vector<Case>& cases() {
    static std::vector<Case> all;
    return all;
}

namespace {

// A warning that the test did not announce by QTest::ignoreMessage is a failure.
// (QT_FATAL_WARNINGS would end the process on announced ones, too.)
int countWarnings(const QString& logName) {
    QFile log(logName);
    if (!log.open(QIODevice::ReadOnly))
        return 1;
    int count = 0;
    while (!log.atEnd()) {
        const QByteArray line = log.readLine();
        // What the platform without a screen can't do is no news.
        if ((line.startsWith("QWARN") || line.startsWith("QCRITICAL")) &&
            !line.contains("This plugin does not support ")) {
            std::fprintf(stderr, "unexpected warning: %s", line.constData());
            ++count;
        }
    }
    return count;
}

int run(QObject* test, const QStringList& arguments) {
    const QTemporaryDir folder;
    const QString logName = folder.filePath(QStringLiteral("log"));
    QStringList all{arguments.first(), QStringLiteral("-o"), QStringLiteral("-,txt"),
                    QStringLiteral("-o"), logName + QStringLiteral(",txt")};
    all += arguments.mid(1);
    const int failures = QTest::qExec(test, all);
    return failures + countWarnings(logName);
}

} // namespace
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
        failures += Kestrel::Test::run(object.get(), arguments);
    }
    if (!found) {
        std::fprintf(stderr, "no test case named \"%s\"\n", wanted.c_str());
        return 1;
    }
    return failures == 0 ? 0 : 1;
}
