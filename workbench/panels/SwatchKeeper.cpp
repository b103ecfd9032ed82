#include "panels/SwatchKeeper.h"

#include <KxUI/picker/SwatchModel.h>
#include <KxUI/settings/AppSettings.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QRunnable>
#include <QSaveFile>
#include <QThreadPool>

#include <functional>
#include <utility>

namespace Kestrel::Workbench {

namespace {

constexpr int restBeforeSaving = 500; // milliseconds
constexpr qint64 largestFile = 8 << 20;

/** One after the other, so that the last list is the one in the file. */
void later(std::function<void()> work) {
    static QThreadPool* const thread = [] {
        auto* pool = new QThreadPool(QCoreApplication::instance());
        pool->setMaxThreadCount(1);
        return pool;
    }();
    thread->start(QRunnable::create(std::move(work)));
}

/** On the interface thread, if the keeper is still there. */
template <typename Tell>
void tell(const QPointer<SwatchKeeper>& keeper, Tell what) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [keeper, what] {
            if (keeper)
                what();
        },
        Qt::QueuedConnection);
}

} // namespace

QString SwatchKeeper::standardPath() {
    return QFileInfo(UI::AppSettings().fileName()).dir().filePath(QStringLiteral("swatches"));
}

SwatchKeeper::SwatchKeeper(UI::SwatchModel* swatches, const QString& path, QObject* parent)
    : QObject(parent)
    , m_swatches(swatches)
    , m_path(path) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(restBeforeSaving);
    connect(&m_rest, &QTimer::timeout, this, &SwatchKeeper::save);
    const QPointer<SwatchKeeper> keeper(this);
    later([this, keeper, path] {
        QFile file(path);
        if (!file.exists()) {
            tell(keeper, [this] { take({}); });
            return;
        }
        const bool opened = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
        const QByteArray bytes = opened ? file.read(largestFile) : QByteArray();
        const QString error = file.errorString();
        tell(keeper, [this, opened, bytes, error] {
            if (opened)
                take(bytes);
            else
                emit failed(tr("The swatches can not be read: %1").arg(error));
        });
    });
}

SwatchKeeper::~SwatchKeeper() {
    if (m_rest.isActive())
        save();
}

void SwatchKeeper::take(const QByteArray& bytes) {
    UI::SwatchModel added; // meanwhile
    for (int row = 0; row < m_swatches->count(); ++row)
        added.append(m_swatches->color(row), m_swatches->name(row));
    QString error;
    m_keeps = bytes.isEmpty() || m_swatches->setContent(bytes, &error);
    for (int row = added.count() - 1; m_keeps && !bytes.isEmpty() && row >= 0; --row)
        m_swatches->insert(0, added.color(row), added.name(row));
    if (!error.isEmpty())
        emit failed(tr("%1: %2").arg(QDir::toNativeSeparators(m_path), error));
    if (!m_keeps)
        return;
    const auto changed = [this] { m_rest.start(); };
    using Model = QAbstractItemModel;
    connect(m_swatches, &Model::dataChanged, this, changed);
    connect(m_swatches, &Model::rowsInserted, this, changed);
    connect(m_swatches, &Model::rowsRemoved, this, changed);
    connect(m_swatches, &Model::rowsMoved, this, changed);
    connect(m_swatches, &Model::modelReset, this, changed);
    if (added.count() > 0)
        m_rest.start();
}

void SwatchKeeper::save() {
    m_rest.stop();
    const QPointer<SwatchKeeper> keeper(this);
    later([this, keeper, path = m_path, bytes = m_swatches->content()] {
        QDir().mkpath(QFileInfo(path).path());
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
            file.commit())
            return;
        tell(keeper, [this, error = file.errorString()] {
            emit failed(tr("The swatches can not be saved: %1").arg(error));
        });
    });
}

} // namespace Kestrel::Workbench
