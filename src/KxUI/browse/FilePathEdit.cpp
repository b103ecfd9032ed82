#include <KxUI/browse/FilePathEdit.h>

#include <KxUI/browse/FilePathEdit_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/kit/IconFactory.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QAction>
#include <QKeyEvent>

#include <utility>

using namespace Kestrel::UI;

FilePathEdit::Private::Private(FilePathEdit* field)
    : q(field)
    , bracket(
          field, [this] { return taken; }, [this](const FilePathValue& value) { store(value); },
          [field](const FilePathValue& value) { Q_EMIT field->valueEdited(value.text); }) {}

void FilePathEdit::Private::setUp() {
    // Not before: the field hears of its children, and looks here.
    for (QObject* child : {static_cast<QObject*>(&probe), static_cast<QObject*>(&dropProbe),
                           static_cast<QObject*>(&checkTimer)})
        child->setParent(q);
    q->setLayoutDirection(Qt::LeftToRight);
    q->setAlignment(Qt::AlignLeft);
    q->setAcceptDrops(true);
    browseAction = q->addAction(IconFactory::icon(QStringLiteral("BrowseFolder")),
                                QLineEdit::TrailingPosition);
    connect(browseAction, &QAction::triggered, q, &FilePathEdit::browse);

    const auto resolve = [this](const QString& folder) { return meaningOf(folder).path; };
    const auto put = [this](const Completion::Outcome& outcome, const QString& folder) {
        if (!outcome.name.isEmpty())
            bytes = Kestrel::UI::PathText::typed(folder, bytes) + outcome.name;
        q->selectAll();
        q->insert(outcome.text);
        q->setCursorPosition(outcome.cursor);
    };
    completer = new PathCompleter(q, resolve, put);

    connect(q, &QLineEdit::textEdited, q, [this] {
        isEdited = true;
        check();
    });
    connect(q, &QLineEdit::textChanged, q, [this](const QString& text) {
        if (isClearing)
            isCleared = true;
        else if (!std::exchange(isEdited, false) && !isStoring)
            hostSet({text.trimmed(), {}});
    });
    checkTimer.setObjectName(QStringLiteral("check"));
    checkTimer.setSingleShot(true);
    checkTimer.setInterval(CheckAfter);
    connect(&checkTimer, &QTimer::timeout, q, [this] { ask(); });
    followSettings();
}

FilePathEdit::FilePathEdit(QWidget* parent)
    : QLineEdit(parent)
    , d(std::make_unique<Private>(this)) {
    d->setUp();
}

FilePathEdit::~FilePathEdit() = default;

QString FilePathEdit::path() const {
    const QString now = text();
    return now == d->taken.text ? now : now.trimmed();
}

QByteArray FilePathEdit::rawPath() const {
    return d->meaningOf(text()).path;
}

void FilePathEdit::setRawPath(const QByteArray& path) {
    KXUI_INTERFACE_THREAD(this);
    d->hostSet(d->valueOf(path));
}

void FilePathEdit::setPath(const QString& path) {
    KXUI_INTERFACE_THREAD(this);
    const QString trimmed = path.trimmed();
    // What was given by its bytes, and is echoed by its text, keeps them.
    if (trimmed == d->taken.text.trimmed())
        return;
    d->hostSet({trimmed, {}});
}

bool FilePathEdit::isEditing() const {
    return d->bracket.isEditing();
}

FilePathEdit::Kind FilePathEdit::kind() const {
    return d->kind;
}

void FilePathEdit::setKind(Kind kind) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->kind, kind) == kind)
        return;
    d->followSettings();
}

QStringList FilePathEdit::nameFilters() const {
    return d->filters;
}

void FilePathEdit::setNameFilters(const QStringList& filters) {
    KXUI_INTERFACE_THREAD(this);
    if (filters == d->filters)
        return;
    d->filters = filters;
    d->followSettings();
}

bool FilePathEdit::acceptsSequences() const {
    return d->acceptsSequences;
}

void FilePathEdit::setAcceptsSequences(bool accepts) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->acceptsSequences, accepts) == accepts)
        return;
    d->followSettings();
}

QString FilePathEdit::baseFolder() const {
    return d->baseFolder;
}

void FilePathEdit::setBaseFolder(const QString& folder) {
    KXUI_INTERFACE_THREAD(this);
    if (folder == d->baseFolder)
        return;
    d->baseFolder = folder;
    d->followSettings();
}

bool FilePathEdit::prefersRelative() const {
    return d->prefersRelative;
}

void FilePathEdit::setPrefersRelative(bool prefers) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->prefersRelative, prefers) == prefers)
        return;
    d->followSettings();
}

void FilePathEdit::setExpander(std::function<QString(const QString&)> expander) {
    KXUI_INTERFACE_THREAD(this);
    d->expander = std::move(expander);
    d->check();
}

void FilePathEdit::setBrowser(std::function<void(FilePathEdit*)> browser) {
    KXUI_INTERFACE_THREAD(this);
    d->browser = std::move(browser);
}

QString FilePathEdit::purpose() const {
    return d->purpose;
}

void FilePathEdit::setPurpose(const QString& purpose) {
    KXUI_INTERFACE_THREAD(this);
    if (purpose == d->purpose)
        return;
    d->purpose = purpose;
    Q_EMIT settingsChanged();
}

bool FilePathEdit::checks() const {
    return d->checks;
}

void FilePathEdit::setChecks(bool checks) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->checks, checks) == checks)
        return;
    d->followSettings();
}

FilePathEdit::Validity FilePathEdit::validity() const {
    return d->validity;
}

QString FilePathEdit::validityText() const {
    return d->validityText;
}

void FilePathEdit::finishEditing() {
    KXUI_INTERFACE_THREAD(this);
    d->takeTyped();
}

void FilePathEdit::chooseRawPath(const QByteArray& path) {
    KXUI_INTERFACE_THREAD(this);
    d->takeByUser(path);
}

void FilePathEdit::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<FilePathEdit> alive(this);
    if (d->bracket.cancel() && alive)
        d->restoreText();
}

// Another kind of path: other names are completed, and the same text may be right or wrong.
void FilePathEdit::Private::followSettings() {
    const bool takesFiles = kind != Folder;
    completer->setTakesFiles(takesFiles, acceptsSequences, takesFiles ? patterns() : QStringList());
    showButtons();
    const QPointer<FilePathEdit> alive(q);
    check();
    if (alive)
        Q_EMIT q->settingsChanged();
}

// `Images (*.exr *.dpx)` or patterns alone; none where one of them takes all.
QStringList FilePathEdit::Private::patterns() const {
    QStringList all;
    for (const QString& filter : filters) {
        const auto open = filter.lastIndexOf(QLatin1Char('('));
        const bool isLabelled = open >= 0 && filter.endsWith(QLatin1Char(')'));
        const QString list = isLabelled ? filter.mid(open + 1, filter.size() - open - 2) : filter;
        all += list.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    return all.contains(QStringLiteral("*")) ? QStringList() : all;
}

Kestrel::UI::PathText::Place FilePathEdit::Private::place() const {
    namespace Text = Kestrel::UI::PathText;
    Text::Place place;
    place.home = bytesOf(Platform::homeDirectory());
    place.folder = bytesOf(Platform::fromUtf8(Platform::currentDirectory()));
    if (!baseFolder.isEmpty()) {
        const Text::Meaning base = Text::meaningOf(baseFolder, {}, place);
        if (base)
            place.folder = base.path;
    }
    return place;
}

Kestrel::UI::PathText::Meaning FilePathEdit::Private::meaningOf(const QString& text) const {
    const QString expanded = expander ? expander(text) : text;
    return Kestrel::UI::PathText::meaningOf(expanded, expanded == text ? bytes : QByteArray(),
                                            place());
}

Kestrel::UI::FilePathValue FilePathEdit::Private::valueOf(const QByteArray& path) const {
    namespace Text = Kestrel::UI::PathText;
    QByteArray way = path;
    if (prefersRelative && !baseFolder.isEmpty() && Text::isAbsolute(path)) {
        const Text::Place from = place();
        way = Text::relativeTo(Text::meaningOf(path, from).path, from.folder);
    }
    return {Text::shown(way), way};
}

Kestrel::UI::FilePathValue FilePathEdit::Private::typed() const {
    namespace Text = Kestrel::UI::PathText;
    const QString now = q->text();
    if (now == taken.text && bytes == taken.bytes)
        return taken;
    if (!bytes.isEmpty() && now == Text::shown(bytes))
        return {now, bytes};
    const QString text = Text::pasted(now);
    const QByteArray kept = bytes.isEmpty() ? QByteArray() : Text::typed(text, bytes);
    return {text, !kept.isEmpty() && Text::shown(kept) == text ? kept : QByteArray()};
}

void FilePathEdit::Private::replaceText(const QString& text) {
    if (text == q->text())
        return;
    isStoring = true;
    const QPointer<FilePathEdit> alive(q);
    if (isUndoable) {
        q->selectAll();
        q->insert(text);
    } else {
        q->setText(text);
    }
    if (alive)
        isStoring = false;
}

void FilePathEdit::Private::store(const FilePathValue& value) {
    const bool isOther = value.text != taken.text || value.bytes != taken.bytes;
    taken = value;
    bytes = value.bytes;
    const QPointer<FilePathEdit> alive(q);
    replaceText(value.text);
    if (alive)
        check();
    if (alive && isOther)
        Q_EMIT q->pathChanged(value.text);
}

void FilePathEdit::Private::hostSet(const FilePathValue& value) {
    const bool isShown = value == taken && q->text() == value.text;
    if (isShown)
        return;
    bracket.hostSet(value);
    isUndoable = false;
    store(value);
}

bool FilePathEdit::Private::takeTyped() {
    const FilePathValue value = typed();
    if (value == taken) {
        isUndoable = true;
        replaceText(value.text); // blanks that do not count
        return false;
    }
    isUndoable = true;
    return bracket.editOnce(value);
}

bool FilePathEdit::Private::restoreText() {
    if (q->text() == taken.text)
        return false;
    bytes = taken.bytes;
    isUndoable = true;
    const QPointer<FilePathEdit> alive(q);
    replaceText(taken.text);
    if (alive)
        check();
    return true;
}

void FilePathEdit::Private::takeByUser(const QByteArray& path) {
    if (path.isEmpty())
        return;
    isUndoable = true;
    bracket.editOnce(valueOf(path));
}
