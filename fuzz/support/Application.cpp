// Linked to targets that make widgets: one application for all runs, without a screen.

#include <QApplication>
#include <QStandardPaths>

// What the platform keeps until the end; nothing of it grows with the runs.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\nleak:libqoffscreen\n";
}

extern "C" const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// Freed pictures of windows are large: kept aside, they would cost more than all the rest.
extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=8";
}

extern "C" int LLVMFuzzerInitialize(int*, char*** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    // Printing takes longer than most runs.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    // Never deleted: the library's own statics may be gone by then.
    static int count = 1;
    static QApplication* const application = new QApplication(count, *arguments);
    (void)application;
    return 0;
}
