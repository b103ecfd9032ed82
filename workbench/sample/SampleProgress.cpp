#include "sample/SampleProgress.h"

#include "sample/SampleGenerator.h"

#include <QEventLoop>

#include <cstdio>

namespace Kestrel::Workbench {

SampleResult provideSample() {
    const QString folder = SampleGenerator::standardFolder();
    SampleGenerator generator(folder);
    if (generator.exists())
        return {folder, {}};

    std::printf("Writing the sample to %s\n", folder.toUtf8().constData());
    std::fflush(stdout);

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
