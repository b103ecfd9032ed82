#include <KxUI/dock/NamedWorkspaces.h>

#include <KxUI/dock/DockLayoutError.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/FileQueue_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QBuffer>
#include <QCollator>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QPointer>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

namespace {

QString suffix() {
    return QStringLiteral(".xml");
}

bool same(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

/** Names of devices, which one system takes for them whatever follows after a dot. */
bool isReserved(const QString& name) {
    static const QRegularExpression device(
        QStringLiteral("^(con|prn|aux|nul|com[0-9]|lpt[0-9])(\\..*)?$"),
        QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

bool hasForeignCharacter(const QString& name) {
    return std::any_of(name.begin(), name.end(), [](QChar c) {
        return c.category() == QChar::Other_Control || c.isSurrogate() ||
               QStringLiteral("/\\:*?\"<>|").contains(c);
    });
}

using Outcome = FileQueue::Outcome;
using Fault = Outcome::Fault;

/** More than a layout ever has: whatever that is, it shall not fill the memory. */
constexpr qint64 LargestFile = 64 << 20;

enum class NameFault { None, Empty, Long, Character, Dot, Reserved };

NameFault faultOf(const QString& name) {
    if (name.isEmpty())
        return NameFault::Empty;
    if (name.size() > NamedWorkspaces::MaximumNameLength)
        return NameFault::Long;
    if (hasForeignCharacter(name))
        return NameFault::Character;
    if (name.startsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char('.')))
        return NameFault::Dot;
    return isReserved(name) ? NameFault::Reserved : NameFault::None;
}

// What follows runs on the queue's thread, and so leaves texts to those who show them.

QString fileOf(const QString& folder, const QString& name) {
    return QDir(folder).filePath(name + suffix());
}

QStringList namesIn(const QString& folder) {
    QStringList found;
    if (folder.isEmpty())
        return found;
    const auto files = QDir(folder).entryList({QLatin1Char('*') + suffix()}, QDir::Files);
    for (const QString& file : files) {
        const QString name = file.chopped(suffix().size());
        if (file.endsWith(suffix()) && NamedWorkspaces::cleanName(name) == name &&
            faultOf(name) == NameFault::None)
            found.append(name);
    }
    return found;
}

/** The name as it is written in a list; empty when it is not there. */
QString listedIn(const QStringList& names, const QString& name) {
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&name](const QString& other) { return same(other, name); });
    return found == names.end() ? QString() : *found;
}

Outcome outcomeOf(const QString& folder, Fault fault = Fault::None, const QString& text = {}) {
    return {fault, text, namesIn(folder), {}};
}

Outcome failure(const QString& folder, const QFileDevice& file) {
    return outcomeOf(folder, Fault::System,
                     QDir::toNativeSeparators(file.fileName()) + QLatin1String(": ") +
                         file.errorString());
}

Outcome saveFile(const QString& folder, const QString& name, const QByteArray& layout) {
    if (!QDir().mkpath(folder))
        return outcomeOf(folder, Fault::NoFolder, QDir::toNativeSeparators(folder));
    const QString old = listedIn(namesIn(folder), name);
    QSaveFile output(fileOf(folder, old.isEmpty() ? name : old));
    if (!output.open(QIODevice::WriteOnly) || output.write(layout) != layout.size() ||
        !output.commit())
        return failure(folder, output);
    return outcomeOf(folder);
}

Outcome readFile(const QString& folder, const QString& name) {
    const QString listed = listedIn(namesIn(folder), name);
    if (listed.isEmpty())
        return outcomeOf(folder, Fault::NoSuchName, name);
    QFile input(fileOf(folder, listed));
    if (!input.open(QIODevice::ReadOnly))
        return failure(folder, input);
    Outcome outcome = outcomeOf(folder);
    outcome.bytes = input.read(LargestFile);
    return outcome;
}

Outcome renameFile(const QString& folder, const QString& name, const QString& newName) {
    const QStringList names = namesIn(folder);
    const QString old = listedIn(names, name);
    if (old.isEmpty())
        return outcomeOf(folder, Fault::NoSuchName, name);
    const QString taken = listedIn(names, newName);
    if (!taken.isEmpty() && taken != old)
        return outcomeOf(folder, Fault::NameTaken, taken);
    QFile file(fileOf(folder, old));
    if (old != newName && !file.rename(fileOf(folder, newName)))
        return failure(folder, file);
    return outcomeOf(folder);
}

Outcome removeFile(const QString& folder, const QString& name) {
    const QString listed = listedIn(namesIn(folder), name);
    if (listed.isEmpty())
        return outcomeOf(folder, Fault::NoSuchName, name);
    QFile file(fileOf(folder, listed));
    if (!file.remove())
        return failure(folder, file);
    return outcomeOf(folder);
}

} // namespace

struct NamedWorkspaces::Private {
    explicit Private(NamedWorkspaces* owner)
        : q(owner) {}

    NamedWorkspaces* const q;
    QPointer<DockMainWindow> workspace;
    QString folder;
    QStringList names;
    QString current;
    QString wanted; // becomes the current one when the folder has it
    FileQueue files;

    using Finish = std::function<QString(const Outcome& outcome)>;

    QString problem(const QString& name) const;
    static QString problemOf(const Outcome& outcome);
    QString arrange(const QByteArray& layout) const;
    void begin(const QString& problem, const FileQueue::Work& work, const Finish& finish,
               const Done& done);
    void publish(const QStringList& found);
};

/** Why nothing can be done with that name. */
QString NamedWorkspaces::Private::problem(const QString& name) const {
    if (!workspace)
        return NamedWorkspaces::tr("There is no workspace.");
    if (folder.isEmpty())
        return NamedWorkspaces::tr("There is no folder for workspaces.");
    return problemOfName(name);
}

QString NamedWorkspaces::Private::problemOf(const Outcome& outcome) {
    switch (outcome.fault) {
    case Fault::None:
        break;
    case Fault::NoFolder:
        return NamedWorkspaces::tr("The folder \"%1\" cannot be made.").arg(outcome.text);
    case Fault::NoSuchName:
        return NamedWorkspaces::tr("There is no workspace \"%1\".").arg(outcome.text);
    case Fault::NameTaken:
        return NamedWorkspaces::tr("There is a workspace \"%1\" already.").arg(outcome.text);
    case Fault::System:
        return outcome.text;
    }
    return {};
}

QString NamedWorkspaces::Private::arrange(const QByteArray& layout) const {
    if (!workspace)
        return NamedWorkspaces::tr("There is no workspace.");
    QBuffer input;
    input.setData(layout);
    input.open(QIODevice::ReadOnly);
    DockLayoutError error;
    if (workspace->restoreWholeLayout(&input, false, &error))
        return {};
    return error.message();
}

/** Has the work done unless there is a problem already. Then `finish` says what else went wrong,
    the names are published, and who asked is told. */
void NamedWorkspaces::Private::begin(const QString& problem, const FileQueue::Work& work,
                                     const Finish& finish, const Done& done) {
    const bool refused = !problem.isEmpty();
    const auto nothing = [] { return Outcome(); };
    files.add(refused ? FileQueue::Work(nothing) : work,
              [this, problem, refused, finish, done, from = folder](const Outcome& outcome) {
                  // The pages that come and go may take this with them.
                  const QPointer<NamedWorkspaces> alive(q);
                  QString found = refused ? problem : problemOf(outcome);
                  if (found.isEmpty() && finish)
                      found = finish(outcome);
                  if (alive && !refused && from == folder)
                      publish(outcome.names);
                  if (alive && done)
                      done(found);
              });
}

/** Takes over what the folder has, and tells of what that changes. */
void NamedWorkspaces::Private::publish(const QStringList& found) {
    QStringList sorted = found;
    // Without a language numbers are not counted: "10" would stand before "9".
    const QLocale locale;
    QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    order.setNumericMode(true);
    std::sort(sorted.begin(), sorted.end(), order);
    const QStringList oldNames = std::exchange(names, sorted);
    const QString oldCurrent = std::exchange(current, listedIn(sorted, wanted));
    wanted = current;
    const QString newCurrent = current;
    const QPointer<NamedWorkspaces> alive(q);
    if (sorted != oldNames)
        Q_EMIT q->namesChanged(sorted);
    if (alive && newCurrent != oldCurrent)
        Q_EMIT q->currentChanged(newCurrent);
}

NamedWorkspaces::NamedWorkspaces(DockMainWindow* workspace)
    : QObject(workspace)
    , d(std::make_unique<Private>(this)) {
    d->workspace = workspace;
}

NamedWorkspaces::~NamedWorkspaces() = default;

DockMainWindow* NamedWorkspaces::workspace() const {
    return d->workspace;
}

QString NamedWorkspaces::folder() const {
    return d->folder;
}

void NamedWorkspaces::setFolder(const QString& folder) {
    KXUI_INTERFACE_THREAD(this);
    if (folder == d->folder)
        return;
    d->folder = folder;
    d->wanted.clear();
    const QPointer<NamedWorkspaces> alive(this);
    Q_EMIT folderChanged(folder);
    if (alive)
        d->publish({});
    if (alive)
        refresh();
}

QStringList NamedWorkspaces::names() const {
    return d->names;
}

bool NamedWorkspaces::contains(const QString& name) const {
    return !listedIn(d->names, cleanName(name)).isEmpty();
}

QString NamedWorkspaces::current() const {
    return d->current;
}

void NamedWorkspaces::setCurrent(const QString& name) {
    KXUI_INTERFACE_THREAD(this);
    d->wanted = cleanName(name);
    const QString listed = listedIn(d->names, d->wanted);
    if (listed == d->current) {
        refresh();
        return;
    }
    d->current = listed;
    Q_EMIT currentChanged(listed);
}

QString NamedWorkspaces::cleanName(const QString& text) {
    return text.simplified();
}

QString NamedWorkspaces::problemOfName(const QString& text) {
    const QString name = cleanName(text);
    switch (faultOf(name)) {
    case NameFault::None:
        break;
    case NameFault::Empty:
        return NamedWorkspaces::tr("A workspace needs a name.");
    case NameFault::Long:
        return NamedWorkspaces::tr("The name has more than %1 characters.").arg(MaximumNameLength);
    case NameFault::Character:
        return NamedWorkspaces::tr("A name cannot have one of the characters / \\ : * ? \" < > |");
    case NameFault::Dot:
        return NamedWorkspaces::tr("A name cannot begin or end with a dot.");
    case NameFault::Reserved:
        return NamedWorkspaces::tr("\"%1\" is a name that some systems keep for themselves.")
            .arg(name);
    }
    return {};
}

void NamedWorkspaces::refresh() {
    const auto read = [folder = d->folder] { return outcomeOf(folder); };
    d->begin({}, read, {}, {});
}

void NamedWorkspaces::save(const QString& text, const Done& done) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = cleanName(text);
    const QString problem = d->problem(name);
    QBuffer layout;
    layout.open(QIODevice::WriteOnly);
    if (problem.isEmpty())
        d->workspace->saveLayout(&layout, nullptr);
    const auto write = [folder = d->folder, name, bytes = layout.data()] {
        return saveFile(folder, name, bytes);
    };
    const auto finish = [this, name](const Outcome&) {
        d->wanted = name;
        return QString();
    };
    d->begin(problem, write, finish, done);
}

void NamedWorkspaces::restore(const QString& text, const Done& done) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = cleanName(text);
    const auto read = [folder = d->folder, name] { return readFile(folder, name); };
    const auto finish = [this, name](const Outcome& outcome) {
        const QPointer<NamedWorkspaces> alive(this);
        const QString problem = d->arrange(outcome.bytes);
        if (alive && problem.isEmpty())
            d->wanted = name;
        return problem;
    };
    d->begin(d->problem(name), read, finish, done);
}

void NamedWorkspaces::rename(const QString& text, const QString& newText, const Done& done) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = cleanName(text);
    const QString newName = cleanName(newText);
    QString problem = d->problem(name);
    if (problem.isEmpty())
        problem = problemOfName(newName);
    const auto move = [folder = d->folder, name, newName] {
        return renameFile(folder, name, newName);
    };
    const auto finish = [this, name, newName](const Outcome&) {
        if (same(d->wanted, name))
            d->wanted = newName;
        return QString();
    };
    d->begin(problem, move, finish, done);
}

void NamedWorkspaces::remove(const QString& text, const Done& done) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = cleanName(text);
    const auto erase = [folder = d->folder, name] { return removeFile(folder, name); };
    d->begin(d->problem(name), erase, {}, done);
}

} // namespace Kestrel::UI
