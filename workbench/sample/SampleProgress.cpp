#include "sample/SampleProgress.h"

#include "sample/SampleGenerator.h"

#include <QEventLoop>
#include <QProgressDialog>

#include <cstdio>
#include <memory>

namespace Kestrel::Workbench {

SampleResult provideSample(bool window) {
    const QString folder = SampleGenerator::standardFolder();
    SampleGenerator generator(folder);
    if (generator.exists())
        return {folder, {}};

    std::unique_ptr<QProgressDialog> dialog;
    if (window) {
        dialog = std::make_unique<QProgressDialog>(
            SampleGenerator::tr("Writing the sample, once: two shots of numbered frames..."),
            SampleGenerator::tr("Cancel"), 0, 0);
        dialog->setWindowTitle(QStringLiteral("KxUI Workbench"));
        dialog->setMinimumDuration(0);
        dialog->setMinimumWidth(420);
        dialog->setAutoClose(false);
        dialog->setAutoReset(false);
        QObject::connect(dialog.get(), &QProgressDialog::canceled, &generator,
                         &SampleGenerator::cancel);
        QObject::connect(&generator, &SampleGenerator::progressed, dialog.get(),
                         [&dialog](int done, int total) {
                             dialog->setMaximum(total);
                             dialog->setValue(done);
                         });
        dialog->show();
    } else {
        std::printf("Writing the sample to %s\n", folder.toUtf8().constData());
        std::fflush(stdout);
    }

    SampleResult result;
    QEventLoop loop;
    QObject::connect(&generator, &SampleGenerator::finished, &loop,
                     [&](bool ok, const QString& message) {
                         result.message = message;
                         if (ok)
                             result.folder = folder;
                         loop.quit();
                     });
    generator.start();
    loop.exec();
    return result;
}

} // namespace Kestrel::Workbench
