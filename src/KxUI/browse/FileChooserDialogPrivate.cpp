#include <KxUI/browse/FileChooserDialog_p.h>

#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/browse/NoticeLine_p.h>
#include <KxUI/browse/ReplaceSheet_p.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/PushButton.h>

#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>

namespace Kestrel::UI {
namespace {

constexpr int Pause = 150; // milliseconds after the last key until more is said

using Filter = FileChooserDialogPrivate::Filter;

QStringList patternsOf(const QString& text) {
    const auto open = text.lastIndexOf(QLatin1Char('('));
    const auto close = text.lastIndexOf(QLatin1Char(')'));
    const QString list = open >= 0 && close > open ? text.mid(open + 1, close - open - 1) : text;
    QString blanks = list;
    blanks.replace(QLatin1Char(';'), QLatin1Char(' '));
    return blanks.simplified().split(QLatin1Char(' '));
}

Filter filterOf(const QString& text) {
    Filter filter;
    filter.text = text;
    filter.patterns = patternsOf(text);
    // As everywhere, "*.*" means names without a point, too.
    if (filter.patterns.contains(QStringLiteral("*")) ||
        filter.patterns.contains(QStringLiteral("*.*")))
        filter.patterns.clear();
    std::vector<std::string> patterns;
    for (const QString& pattern : filter.patterns)
        patterns.push_back(pattern.toStdString());
    filter.suffixes = NameEdits::suffixesOf(patterns);
    return filter;
}

} // namespace

FileChooserDialogPrivate::FileChooserDialogPrivate(FileChooserDialog* dialog)
    : q(dialog)
    , question(dialog) {}

void FileChooserDialogPrivate::setUp() {
    form.build(q);
    fillFilters({});
    pause.setSingleShot(true);
    pause.setInterval(Pause);
    connectFields();
    connectBrowser();
    makeShortcuts();
    form.orderTabs(nullptr);
    settingChanged();
}

void FileChooserDialogPrivate::connectFields() {
    const auto when = [this](auto* source, auto signal, auto deed) {
        QObject::connect(source, signal, &m_listener, deed);
    };
    when(&pause, &QTimer::timeout, [this] { refreshNotice(); });
    when(form.name, &QLineEdit::textEdited, [this] { textEdited(); });
    when(form.frames, &QLineEdit::textEdited, [this] {
        rest();
        refresh();
    });
    when(form.lower, &QAbstractButton::clicked, [this] { stepVersion(-1); });
    when(form.higher, &QAbstractButton::clicked, [this] { stepVersion(1); });
    when(form.notice, &NoticeLine::nextVersionWanted, [this] { takeNextVersion(); });
    when(form.as, &ChoiceBar::chosen, [this](int kind) { chooseKind(kind); });
    when(form.padding, qOverload<int>(&QSpinBox::valueChanged),
         [this](int digits) { choosePadding(digits); });
    when(form.filter, qOverload<int>(&QComboBox::activated),
         [this](int index) { filterChosen(index); });
    when(form.ownFilter, &QAbstractButton::clicked, [this] {
        ownPattern.clear();
        applyFilter();
        form.name->setFocus();
    });
    when(form.recent, &QAbstractButton::clicked, [this] {
        auto* menu = new QMenu(form.recent);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        fillRecent(*menu);
        menu->popup(form.recent->mapToGlobal(QPoint(0, form.recent->height())));
    });
    when(form.cancel, &QAbstractButton::clicked, [this] { q->reject(); });
    when(form.accept, &QAbstractButton::clicked, [this] { q->accept(); });
    when(form.sheet, &ReplaceSheet::cancelled, [this] { escape(); });
    when(form.sheet, &ReplaceSheet::confirmed, [this] { follow(state.confirm(), m_asked); });
    when(form.sheet, &ReplaceSheet::nextVersionWanted, [this] { takeNextVersion(); });
    when(&question, &FolderQuestion::answered,
         [this](const FolderAnswer& answer) { answered(answer); });
    when(&question, &FolderQuestion::timedOut, [this] {
        m_answer = nullptr;
        follow(state.timedOut(), m_asked);
    });
}

void FileChooserDialogPrivate::connectBrowser() {
    QObject::connect(form.browser, &FileBrowser::selectionChanged, &m_listener,
                     [this] { selectionChanged(); });
    QObject::connect(form.browser, &FileBrowser::activated, &m_listener, [this] {
        const QPointer<FileChooserDialog> alive(q);
        selectionChanged();
        if (alive)
            q->accept();
    });
    QObject::connect(form.browser, &FileBrowser::folderChanged, &m_listener,
                     [this] { folderChanged(); });
    QObject::connect(form.browser->model()->gatherer(), &FileGatherer::listingChanged, &m_listener,
                     [this] { refresh(); });
}

void FileChooserDialogPrivate::makeShortcuts() {
    const auto when = [this](std::initializer_list<const char*> keys, auto deed) {
        for (const char* key : keys) {
            auto* shortcut = new QShortcut(QKeySequence(QString::fromLatin1(key)), q);
            shortcut->setContext(Qt::WidgetWithChildrenShortcut);
            QObject::connect(shortcut, &QShortcut::activated, &m_listener, [this, deed] {
                if (isSaving())
                    deed();
            });
        }
    };
    // Where a plus needs Shift, the key of the equal sign counts as one without it.
    when({"Ctrl++", "Ctrl+=", "Ctrl+Shift+*"}, [this] {
        if (QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier))
            takeNextVersion();
        else
            stepVersion(1);
    });
    when({"Ctrl+-"}, [this] { stepVersion(-1); });
}

// ---- settings

void FileChooserDialogPrivate::settingChanged() {
    stateRules.mode = rules.mode;
    state.setRules(stateRules);
    rules.suffixes.clear();
    for (const Filter& filter : filters)
        rules.suffixes.insert(rules.suffixes.end(), filter.suffixes.begin(), filter.suffixes.end());
    if (!defaultSuffix.isEmpty())
        rules.suffixes.push_back(NameEdits::lowered(viewOf(defaultSuffix)));
    rules.suffix = currentFilter().suffixes.empty() ? defaultSuffix.toStdString()
                                                    : currentFilter().suffixes.front();
    const auto mode = rules.mode;
    // Unless the host has given the window a title.
    if (q->windowTitle() == std::exchange(ownTitle, ChooserTexts::title(mode)))
        q->setWindowTitle(ownTitle);
    form.nameLabel->setText(ChooserTexts::nameLabel(mode));
    form.accept->setText(acceptText.isEmpty() ? ChooserTexts::acceptButton(mode) : acceptText);
    form.browser->setShowsFiles(!isFolderMode());
    form.browser->setSelectionMode(mode == NameRules::Mode::OpenFiles
                                       ? QAbstractItemView::ExtendedSelection
                                       : QAbstractItemView::SingleSelection);
    {
        const QSignalBlocker quiet(form.padding);
        form.padding->setValue(padding);
    }
    const QPointer<FileChooserDialog> alive(q);
    rest();
    refresh();
    if (alive)
        Q_EMIT q->settingsChanged();
}

void FileChooserDialogPrivate::fillFilters(const QStringList& texts) {
    filterTexts = texts;
    filters.clear();
    for (const QString& text : texts)
        filters.push_back(filterOf(text));
    if (filters.empty() || !filters.back().patterns.isEmpty())
        filters.push_back({ChooserForm::tr("All files"), {}, {}});
    const QSignalBlocker quiet(form.filter);
    form.filter->clear();
    for (const Filter& filter : filters)
        form.filter->addItem(filter.text);
    const int remembered = form.filter->findText(settings.filter);
    chooseFilter(remembered >= 0 ? remembered : 0);
}

void FileChooserDialogPrivate::chooseFilter(int index) {
    const QSignalBlocker quiet(form.filter);
    form.filter->setCurrentIndex(index);
    ownPattern.clear();
    applyFilter();
}

const FileChooserDialogPrivate::Filter& FileChooserDialogPrivate::currentFilter() const {
    return filters[static_cast<std::size_t>(std::max(0, form.filter->currentIndex()))];
}

// Another suffix goes with it, where the user chose.
void FileChooserDialogPrivate::filterChosen(int index) {
    chooseFilter(index);
    settings.filter = currentFilter().text;
    const QPointer<FileChooserDialog> alive(q);
    settingChanged();
    if (alive && isSaving() && !currentFilter().suffixes.empty() && !nameText().empty())
        setName(NameEdits::withSuffix(nameText(), rules.suffix, rules.suffixes));
}

void FileChooserDialogPrivate::applyFilter() {
    const bool isOwn = !ownPattern.isEmpty();
    form.ownFilter->setVisible(isOwn);
    form.ownFilter->setText(ChooserForm::tr("Filter: %1").arg(ownPattern) +
                            QStringLiteral("  \u00d7"));
    form.filter->setEnabled(!isOwn);
    const QStringList patterns = isOwn ? QStringList(ownPattern) : currentFilter().patterns;
    form.browser->setNameFilters(patterns.isEmpty() ? QStringList()
                                                    : QStringList(patterns.join(QLatin1Char(' '))));
}

void FileChooserDialogPrivate::showPurpose() {
    if (wantedFolder.isEmpty())
        wantedFolder = settings.folder;
    if (settings.size.isValid())
        q->resize(settings.size);
    const int remembered = form.filter->findText(settings.filter);
    if (remembered >= 0)
        chooseFilter(remembered);
    form.browser->setSettingsKey(ChooserSettings::browserKey(purpose));
    if (settings.folds) {
        foldsWanted = *settings.folds;
        form.browser->setFoldsSequences(foldsWanted);
    }
}

void FileChooserDialogPrivate::begin() {
    if (hasBegun) {
        finished.clear();
        return;
    }
    hasBegun = true;
    form.browser->setFoldsSequences(foldsWanted && rules.acceptsSequences);
    const QPointer<FileChooserDialog> alive(q);
    if (!wantedFolder.isEmpty())
        form.browser->setFolder(wantedFolder);
    else if (form.browser->folder().isEmpty())
        form.browser->home();
    if (!alive)
        return;
    if (!isSaving()) {
        form.browser->setFocus();
        if (!wantedRow.isEmpty())
            form.browser->select(wantedRow);
        return;
    }
    form.name->setFocus();
    const std::string name = nameText();
    const auto shownLength = [&](std::size_t from, std::size_t length) {
        return static_cast<int>(
            decodedName(bytesOf(std::string_view(name).substr(from, length))).size());
    };
    const std::size_t from = NameEdits::nameBegin(name);
    form.name->setSelection(shownLength(0, from),
                            shownLength(from, NameEdits::stemLength(name, rules.suffixes)));
}

void FileChooserDialogPrivate::remember(bool isAccepted) {
    FavoritesModel* const places = form.browser->favoritesView()->favoritesModel();
    if (isAccepted && places)
        places->noteUsed(form.browser->folder());
    if (purpose.isEmpty() || !hasBegun)
        return;
    ChooserSettings now = ChooserSettings::of(purpose); // another dialog may have added to it
    now.size = q->size();
    now.filter = form.filter->currentText();
    if (rules.acceptsSequences)
        now.folds = form.browser->foldsSequences();
    if (isAccepted) {
        now.folder = form.browser->folder();
        for (const Choice& choice : finished)
            now.use(choice.path);
    }
    now.save(purpose);
}

// ---- the fields

std::string FileChooserDialogPrivate::nameText() const {
    return encodedName(form.name->text()).toStdString();
}

void FileChooserDialogPrivate::setName(const std::string& name,
                                       const std::vector<std::string>& rows) {
    chosen = rows;
    if (rows.empty()) {
        form.name->setText(decodedName(bytesOf(name)));
    } else {
        std::vector<std::string> shown;
        for (const std::string& row : rows)
            shown.push_back(FileTexts::name(row).toStdString());
        form.name->setText(QString::fromStdString(FileNames::joined(shown)));
    }
    rest();
    refresh();
}

// What was asked, of the disk or the user, is not wanted any more.
void FileChooserDialogPrivate::rest() {
    question.stop();
    state.edited();
    showPhase(m_asked);
}

void FileChooserDialogPrivate::textEdited() {
    chosen.clear();
    rest();
    if (isSaving())
        savedName = nameText();
    refreshFields(reading());
    pause.start();
}

void FileChooserDialogPrivate::selectionChanged() {
    std::vector<std::string> rows;
    for (const FileInfo& info : form.browser->selection()) {
        if (info.isDir() != isFolderMode())
            continue;
        rows.push_back(info.isSequence() ? info.rawFrameName().toStdString()
                                         : std::string(info.rawFileName()));
    }
    if (rows.empty() && (isSaving() || chosen.empty()))
        return;
    form.frames->clear();
    if (isSaving())
        savedName = rows.front();
    setName({}, rows);
}

void FileChooserDialogPrivate::folderChanged() {
    isDenied = false;
    rest();
    if (isSaving() && hasBegun)
        askWritability();
    const QPointer<FileChooserDialog> alive(q);
    refresh();
    if (alive)
        Q_EMIT q->folderChanged(form.browser->folder());
}

void FileChooserDialogPrivate::chooseKind(int kind) {
    const std::string name = nameText();
    setName(kind == ChooserForm::Sequence
                ? NameEdits::asSequence(name, rules.style, padding, rules.suffixes)
                : NameEdits::asSingle(name));
}

void FileChooserDialogPrivate::choosePadding(int digits) {
    const QPointer<FileChooserDialog> alive(q);
    padding = digits;
    setName(NameEdits::withDigits(nameText(), rules.style, digits));
    if (alive)
        Q_EMIT q->settingsChanged();
}

void FileChooserDialogPrivate::stepVersion(int by) {
    const auto version = NameEdits::versionOf(nameText());
    if (version && *version + by >= 0)
        setName(NameEdits::withVersion(nameText(), *version + by));
}

void FileChooserDialogPrivate::takeNextVersion() {
    std::vector<std::string> names;
    const auto shown = m_answer ? m_answer : listing();
    for (int i = 0; i < shown->size(); ++i)
        names.emplace_back(shown->item(i).name);
    const QPointer<FileChooserDialog> alive(q);
    setName(NameEdits::withNextFreeVersion(nameText(), names));
    if (alive)
        form.name->setFocus();
}

void FileChooserDialogPrivate::fillRecent(QMenu& menu) {
    for (const QByteArray& path : settings.recent) {
        QString shown = FileTexts::name(viewOf(path));
        shown.replace(QLatin1Char('&'), QLatin1String("&&"));
        QObject::connect(menu.addAction(shown), &QAction::triggered, &m_listener,
                         [this, path] { goTo(path); });
    }
    if (settings.recent.empty())
        menu.addAction(ChooserForm::tr("None yet"))->setEnabled(false);
}

// A file that was used before.
void FileChooserDialogPrivate::goTo(const QByteArray& path) {
    const QPointer<FileChooserDialog> alive(q);
    q->setFileName(path);
    if (alive)
        form.name->setFocus();
}

// ---- what the fields say

NameInput FileChooserDialogPrivate::input() const {
    return {nameText(), chosen, form.frames->text().toStdString()};
}

// Of the folder that is shown, even while the one before is still seen.
std::shared_ptr<const FileListing> FileChooserDialogPrivate::listing() const {
    auto listing = form.browser->model()->gatherer()->listing();
    if (listing->directory() == form.browser->model()->gatherer()->directory())
        return listing;
    return std::make_shared<const FileListing>();
}

NameReading FileChooserDialogPrivate::reading() const {
    return readName(input(), rules, *listing());
}

void FileChooserDialogPrivate::refresh() {
    refreshFields(reading());
    refreshNotice();
}

void FileChooserDialogPrivate::refreshFields(const NameReading& now) {
    const std::string name = nameText();
    const bool isSequence = NameEdits::patternOf(name).has_value();
    ChooserForm::Fields fields;
    fields.mode = rules.mode;
    fields.choosesKind = rules.acceptsSequences && rules.acceptsFrames;
    fields.hasVersion = NameEdits::versionOf(name).has_value();
    fields.hasPadding = rules.acceptsSequences && (isSequence || !rules.acceptsFrames);
    fields.hasFilters = filters.size() > 1;
    fields.hasFrames =
        now.targets.size() == 1 && now.targets.front().isSequence && now.targets.front().item >= 0;
    form.showFields(fields);
    if (fields.hasFrames) {
        const NameTarget& target = now.targets.front();
        const auto shown = listing();
        const auto& item = target.in(*shown).item(target.item);
        form.frames->setPlaceholderText(ChooserTexts::range({item.first, item.last, item.step}));
    }
    form.as->setCurrentIndex(isSequence ? ChooserForm::Sequence : ChooserForm::SingleFile);
    if (const auto pattern = NameEdits::patternOf(name)) {
        const QSignalBlocker quiet(form.padding);
        form.padding->setValue(pattern->digits);
    }
    if (isFolderMode())
        form.name->setPlaceholderText(form.browser->folderText());
    const bool canEnter = isFolderMode() || !form.browser->selection().empty();
    form.accept->setEnabled(!isDenied &&
                            (now.meaning != NameReading::Meaning::Nothing || canEnter));
}

void FileChooserDialogPrivate::refreshNotice() {
    pause.stop();
    const NameReading now = reading();
    const QPointer<FileChooserDialog> alive(q);
    QString refused = ChooserTexts::problem(state, now);
    if (refused.isEmpty() && isDenied)
        refused = ChooserForm::tr("You have no permission to write in this folder.");
    auto notice = ChooserTexts::notice(now, folderToBeMade(now));
    if (refused.isEmpty() && notice.kind != ChooserTexts::Notice::Kind::Error && validator &&
        now.meaning == NameReading::Meaning::Names && now.problem == NameProblem::None) {
        const auto ask = validator; // which may delete the dialog
        refused = ask(choices());
        if (!alive)
            return;
    }
    if (!refused.isEmpty())
        say(refused);
    else
        form.notice->tell(notice);
    const bool isWrongRange =
        now.problem == NameProblem::FramesUnreadable || now.problem == NameProblem::FramesNotThere;
    QPalette colors = form.name->palette();
    if (isWrongRange)
        colors.setColor(QPalette::Text, noticeColor(ChooserTexts::Notice::Kind::Error, colors));
    form.frames->setPalette(isWrongRange ? colors : QPalette());
    if (notice.kind == ChooserTexts::Notice::Kind::Error)
        form.accept->setEnabled(false);
}

void FileChooserDialogPrivate::say(const QString& problem) {
    form.notice->tell({ChooserTexts::Notice::Kind::Error, problem, false});
}

} // namespace Kestrel::UI
