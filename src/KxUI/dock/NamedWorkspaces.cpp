#include <KxUI/dock/NamedWorkspaces.h>

#include <KxUI/dock/DockLayoutError.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/kit/InterfaceThread_p.h>

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

/** Says what went wrong to who wants to know; returns whether nothing did. */
bool tell(const QString& problem, QString* error) {
    if (error)
        *error = problem;
    return problem.isEmpty();
}

} // namespace

struct NamedWorkspaces::Private {
    QPointer<DockMainWindow> workspace;
    QString folder;
    QStringList names;
    QString current;

    QString file(const QString& name) const { return QDir(folder).filePath(name + suffix()); }

    /** The name as it is written in the list; empty when it is not there. */
    QString listed(const QString& name) const {
        const auto found = std::find_if(names.begin(), names.end(), [&name](const QString& other) {
            return same(other, name);
        });
        return found == names.end() ? QString() : *found;
    }

    QStringList read() const;
    QString problem(const QString& name) const;
    QString problemOfListed(const QString& name) const;
    QString write(const QString& name) const;
    QString arrange(const QString& name) const;
    void publish(NamedWorkspaces* owner, const QString& wanted);
};

QStringList NamedWorkspaces::Private::read() const {
    QStringList found;
    if (folder.isEmpty())
        return found;
    const auto files = QDir(folder).entryList({QLatin1Char('*') + suffix()}, QDir::Files);
    for (const QString& file : files) {
        const QString name = file.chopped(suffix().size());
        if (file.endsWith(suffix()) && cleanName(name) == name && problemOfName(name).isEmpty())
            found.append(name);
    }
    // Without a language numbers are not counted: "10" would stand before "9".
    const QLocale locale;
    QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    order.setNumericMode(true);
    std::sort(found.begin(), found.end(), order);
    return found;
}

/** Why nothing can be done with that name. */
QString NamedWorkspaces::Private::problem(const QString& name) const {
    if (!workspace)
        return NamedWorkspaces::tr("There is no workspace.");
    if (folder.isEmpty())
        return NamedWorkspaces::tr("There is no folder for workspaces.");
    return problemOfName(name);
}

QString NamedWorkspaces::Private::problemOfListed(const QString& name) const {
    const QString problem = this->problem(name);
    if (problem.isEmpty() && listed(name).isEmpty())
        return NamedWorkspaces::tr("There is no workspace \"%1\".").arg(name);
    return problem;
}

QString NamedWorkspaces::Private::write(const QString& name) const {
    if (!QDir().mkpath(folder))
        return NamedWorkspaces::tr("The folder \"%1\" cannot be made.")
            .arg(QDir::toNativeSeparators(folder));
    QSaveFile output(file(name));
    if (!output.open(QIODevice::WriteOnly))
        return output.errorString();
    if (!workspace->saveLayout(&output, nullptr)) {
        const QString problem = output.errorString();
        output.cancelWriting();
        return problem;
    }
    return output.commit() ? QString() : output.errorString();
}

QString NamedWorkspaces::Private::arrange(const QString& name) const {
    QFile input(file(name));
    if (!input.open(QIODevice::ReadOnly))
        return input.errorString();
    DockLayoutError error;
    if (workspace->restoreWholeLayout(&input, false, &error))
        return {};
    return error.message();
}

/** Reads the folder, makes the workspace of the wanted name the current one, and tells of both. */
void NamedWorkspaces::Private::publish(NamedWorkspaces* owner, const QString& wanted) {
    const QStringList oldNames = std::exchange(names, read());
    const QString oldCurrent = std::exchange(current, listed(wanted));
    const QStringList newNames = names;
    const QString newCurrent = current;
    const QPointer<NamedWorkspaces> alive(owner);
    if (newNames != oldNames)
        Q_EMIT owner->namesChanged(newNames);
    if (alive && newCurrent != oldCurrent)
        Q_EMIT owner->currentChanged(newCurrent);
}

NamedWorkspaces::NamedWorkspaces(DockMainWindow* workspace)
    : QObject(workspace)
    , d(std::make_unique<Private>()) {
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
    const QPointer<NamedWorkspaces> alive(this);
    Q_EMIT folderChanged(folder);
    if (alive)
        refresh();
}

QStringList NamedWorkspaces::names() const {
    return d->names;
}

bool NamedWorkspaces::contains(const QString& name) const {
    return !d->listed(cleanName(name)).isEmpty();
}

QString NamedWorkspaces::current() const {
    return d->current;
}

QString NamedWorkspaces::cleanName(const QString& text) {
    return text.simplified();
}

QString NamedWorkspaces::problemOfName(const QString& text) {
    const QString name = cleanName(text);
    if (name.isEmpty())
        return NamedWorkspaces::tr("A workspace needs a name.");
    if (name.size() > MaximumNameLength)
        return NamedWorkspaces::tr("The name has more than %1 characters.").arg(MaximumNameLength);
    if (hasForeignCharacter(name))
        return NamedWorkspaces::tr("A name cannot have one of the characters / \\ : * ? \" < > |");
    if (name.startsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char('.')))
        return NamedWorkspaces::tr("A name cannot begin or end with a dot.");
    if (isReserved(name))
        return NamedWorkspaces::tr("\"%1\" is a name that some systems keep for themselves.")
            .arg(name);
    return {};
}

void NamedWorkspaces::refresh() {
    d->publish(this, d->current);
}

bool NamedWorkspaces::save(const QString& text, QString* error) {
    const QString name = cleanName(text);
    QString problem = d->problem(name);
    if (problem.isEmpty()) {
        const QString old = d->listed(name);
        problem = d->write(old.isEmpty() ? name : old);
    }
    if (problem.isEmpty())
        d->publish(this, name);
    return tell(problem, error);
}

bool NamedWorkspaces::restore(const QString& text, QString* error) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = cleanName(text);
    const QPointer<NamedWorkspaces> alive(this);
    QString problem = d->problemOfListed(name);
    if (problem.isEmpty())
        problem = d->arrange(d->listed(name));
    // The pages that came and went may have taken this with them.
    if (problem.isEmpty() && alive)
        d->publish(this, name);
    return tell(problem, error);
}

bool NamedWorkspaces::rename(const QString& text, const QString& newText, QString* error) {
    const QString name = cleanName(text);
    const QString newName = cleanName(newText);
    QString problem = d->problemOfListed(name);
    if (problem.isEmpty())
        problem = problemOfName(newName);
    if (problem.isEmpty() && !same(name, newName) && contains(newName))
        problem = NamedWorkspaces::tr("There is a workspace \"%1\" already.").arg(newName);
    const QString old = d->listed(name);
    if (problem.isEmpty() && old != newName) {
        QFile file(d->file(old));
        if (!file.rename(d->file(newName)))
            problem = file.errorString();
        else
            d->publish(this, same(d->current, name) ? newName : d->current);
    }
    return tell(problem, error);
}

bool NamedWorkspaces::remove(const QString& text, QString* error) {
    KXUI_INTERFACE_THREAD(this);
    const QString name = cleanName(text);
    QString problem = d->problemOfListed(name);
    if (problem.isEmpty()) {
        QFile file(d->file(d->listed(name)));
        if (!file.remove())
            problem = file.errorString();
        else
            d->publish(this, d->current);
    }
    return tell(problem, error);
}

} // namespace Kestrel::UI
