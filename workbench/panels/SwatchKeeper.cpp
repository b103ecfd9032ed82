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

struct Contents {
    QByteArray bytes;
    QString error; ///< empty where the file was read
};

/** No pipe, which would not answer. */
Contents read(const QString& path) {
    QFile file(path);
    Contents contents;
    if (!QFileInfo(path).isFile())
        contents.error = SwatchKeeper::tr("This is no file.");
    else if (!file.open(QIODevice::ReadOnly))
        contents.error = file.errorString();
    else
        contents.bytes = file.read(largestFile);
    return contents;
}

/** Copies a file beside itself; the name of the copy, or an empty one where that fails. */
QString copied(const QString& path) {
    constexpr int most = 100;
    for (int number = 1; number <= most; ++number) {
        const QString copy = QStringLiteral("%1.damaged-%2").arg(path).arg(number);
        if (QFile::copy(path, copy))
            return copy;
        if (!QFile::exists(copy))
            break;
    }
    return {};
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
        const Contents file = QFile::exists(path) ? read(path) : Contents();
        tell(keeper, [this, file] {
            if (file.error.isEmpty())
                take(file.bytes);
            else
                emit failed(tr("The swatches can not be read: %1").arg(file.error));
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
    m_isDamaged = m_keeps && !error.isEmpty();
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

void SwatchKeeper::importFile(const QString& path) {
    const QPointer<SwatchKeeper> keeper(this);
    later([this, keeper, path] {
        const Contents file = read(path);
        tell(keeper, [this, path, file] {
            if (file.error.isEmpty())
                add(path, file.bytes);
            else
                emit failed(tr("%1: %2").arg(QDir::toNativeSeparators(path), file.error));
        });
    });
}

void SwatchKeeper::add(const QString& path, const QByteArray& bytes) {
    UI::SwatchModel added;
    added.setDisplayTransform(m_swatches->displayTransform());
    QString error;
    added.setContent(bytes, &error);
    bool fits = true;
    for (int row = 0; row < added.count() && fits; ++row)
        fits = m_swatches->append(added.color(row), added.name(row));
    if (!fits)
        error = tr("There is no room for all of its colours.");
    if (!error.isEmpty())
        emit failed(tr("%1: %2").arg(QDir::toNativeSeparators(path), error));
}

void SwatchKeeper::exportFile(const QString& path) {
    const bool isPalette = path.endsWith(QLatin1String(".gpl"), Qt::CaseInsensitive);
    write(path,
          m_swatches->content(isPalette ? UI::SwatchModel::PaletteForm : UI::SwatchModel::OwnForm),
          false);
}

void SwatchKeeper::save() {
    m_rest.stop();
    write(m_path, m_swatches->content(), m_isDamaged);
    m_isDamaged = false;
}

/** @param keepsOld  copies what is there before */
void SwatchKeeper::write(const QString& path, const QByteArray& bytes, bool keepsOld) {
    const QPointer<SwatchKeeper> keeper(this);
    later([this, keeper, path, bytes, keepsOld] {
        const QString copy = keepsOld ? copied(path) : QString();
        if (keepsOld && copy.isEmpty()) {
            tell(keeper, [this] {
                m_isDamaged = true; // the next change tries again
                emit failed(tr("The swatches can not be saved: what could not be read of them "
                               "would be lost."));
            });
            return;
        }
        if (keepsOld)
            tell(keeper, [this, copy] {
                emit failed(tr("What could not be read of the swatches is kept in %1")
                                .arg(QDir::toNativeSeparators(copy)));
            });
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
