#include <support/TestRegistry.h>
#include <workspace/WorkspaceFuzzer.h>

#include <algorithm>

#include <sys/wait.h>
#include <unistd.h>

namespace {

int fromEnvironment(const char* name, int fallback) {
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value : fallback;
}

} // namespace

/** KXUI_FUZZ_SEED, KXUI_FUZZ_STEPS and KXUI_FUZZ_DOCUMENTS make the runs longer than the suite's.
 */
class DockFuzzTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void operations() {
        constexpr int StepsPerSeed = 500;
        int steps = fromEnvironment("KXUI_FUZZ_STEPS", 2000);
        for (int seed = fromEnvironment("KXUI_FUZZ_SEED", 1); steps > 0; ++seed) {
            const QString trouble =
                Kestrel::Fuzz::runOperations(unsigned(seed), std::min(steps, StepsPerSeed));
            QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
            steps -= StepsPerSeed;
        }
    }

    void damagedDocuments() {
        const QByteArray document = Kestrel::Fuzz::sampleLayout();
        constexpr int Batch = 100;
        const int batches = fromEnvironment("KXUI_FUZZ_DOCUMENTS", 400) / Batch;
        for (int batch = 0; batch < batches; ++batch) {
            const pid_t child = fork();
            QVERIFY(child >= 0);
            if (child == 0)
                _exit(Kestrel::Fuzz::restoreDamaged(document, unsigned(batch), Batch));
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            const QString end = WIFEXITED(status) ? QString("exit code %1").arg(WEXITSTATUS(status))
                                                  : QString("signal %1").arg(WTERMSIG(status));
            QVERIFY2(status == 0, qPrintable(QString("batch %1: %2").arg(batch).arg(end)));
        }
    }
};

KXUI_TEST(DockFuzzTest);
#include "DockFuzzTest.moc"
