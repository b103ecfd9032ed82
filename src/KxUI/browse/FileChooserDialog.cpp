#include <KxUI/browse/FileChooserDialog.h>

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/FileChooserDialog_p.h>
#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int MostDigits = 9;
constexpr QSize FirstSize(900, 600);

} // namespace

FileChooserDialog::FileChooserDialog(QWidget* parent)
    : FileChooserDialog(OpenFile, parent) {}

FileChooserDialog::FileChooserDialog(Mode mode, QWidget* parent)
    : QDialog(parent)
    , d(std::make_unique<FileChooserDialogPrivate>(this)) {
    d->rules.mode = static_cast<NameRules::Mode>(mode);
    d->rules.isWindows = Platform::backslashSeparates();
    d->setUp();
    resize(FirstSize);
}

FileChooserDialog::~FileChooserDialog() = default;

FileChooserDialog* FileChooserDialog::open(Mode mode, QWidget* parent, const QString& purpose,
                                           const QStringList& filters,
                                           std::function<void(const std::vector<Choice>&)> done) {
    auto* dialog = new FileChooserDialog(mode, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setPurpose(purpose);
    dialog->setFilters(filters);
    if (done)
        connect(dialog, &QDialog::accepted, dialog,
                [dialog, done = std::move(done)] { done(dialog->choices()); });
    dialog->QDialog::open();
    return dialog;
}

FileChooserDialog::Mode FileChooserDialog::mode() const {
    return static_cast<Mode>(d->rules.mode);
}

void FileChooserDialog::setMode(Mode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (mode == this->mode())
        return;
    d->rules.mode = static_cast<NameRules::Mode>(mode);
    d->settingChanged();
}

QString FileChooserDialog::purpose() const {
    return d->purpose;
}

void FileChooserDialog::setPurpose(const QString& purpose) {
    KXUI_INTERFACE_THREAD(this);
    if (purpose == d->purpose)
        return;
    d->purpose = purpose;
    d->settings = ChooserSettings::of(purpose);
    d->showPurpose();
    d->settingChanged();
}

QByteArray FileChooserDialog::folder() const {
    if (d->hasBegun || d->wantedFolder.isEmpty())
        return d->form.browser->folder();
    return d->wantedFolder;
}

void FileChooserDialog::setFolder(const QByteArray& folder) {
    KXUI_INTERFACE_THREAD(this);
    if (d->hasBegun) {
        d->form.browser->setFolder(folder); // which tells of it
        return;
    }
    if (folder == d->wantedFolder)
        return;
    d->wantedFolder = folder;
    Q_EMIT folderChanged(folder);
}

void FileChooserDialog::setFileName(const QByteArray& name) {
    KXUI_INTERFACE_THREAD(this);
    const std::string path = name.toStdString();
    const std::size_t begin = NameEdits::nameBegin(path);
    const QPointer<FileChooserDialog> alive(this);
    if (begin > 0)
        setFolder(d->folderOf(path.substr(0, begin)));
    if (!alive)
        return;
    const std::string last = path.substr(begin);
    if (mode() == SaveFile) {
        d->savedName = last;
        d->setName(last);
    } else {
        d->wantedRow = bytesOf(last);
        d->setName(last, {last});
        if (alive && d->hasBegun)
            d->form.browser->select(d->wantedRow);
    }
}

QStringList FileChooserDialog::filters() const {
    return d->filterTexts;
}

void FileChooserDialog::setFilters(const QStringList& filters) {
    KXUI_INTERFACE_THREAD(this);
    if (filters == d->filterTexts)
        return;
    d->fillFilters(filters);
    d->settingChanged();
}

int FileChooserDialog::currentFilter() const {
    return d->form.filter->currentIndex();
}

void FileChooserDialog::setCurrentFilter(int index) {
    KXUI_INTERFACE_THREAD(this);
    if (index < 0 || index >= static_cast<int>(d->filters.size()) || index == currentFilter())
        return;
    d->chooseFilter(index);
    d->settingChanged();
}

QByteArray FileChooserDialog::defaultSuffix() const {
    return d->defaultSuffix;
}

void FileChooserDialog::setDefaultSuffix(const QByteArray& suffix) {
    KXUI_INTERFACE_THREAD(this);
    if (suffix == d->defaultSuffix)
        return;
    d->defaultSuffix = suffix;
    d->settingChanged();
}

bool FileChooserDialog::foldsSequences() const {
    return d->hasBegun ? d->form.browser->foldsSequences() : d->foldsWanted;
}

void FileChooserDialog::setFoldsSequences(bool folds) {
    KXUI_INTERFACE_THREAD(this);
    if (folds == foldsSequences())
        return;
    d->foldsWanted = folds;
    d->form.browser->setFoldsSequences(folds);
    Q_EMIT settingsChanged();
}

bool FileChooserDialog::acceptsSequences() const {
    return d->rules.acceptsSequences;
}

void FileChooserDialog::setAcceptsSequences(bool accepts) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->rules.acceptsSequences, accepts) != accepts)
        d->settingChanged();
}

bool FileChooserDialog::acceptsSingleFrames() const {
    return d->rules.acceptsFrames;
}

void FileChooserDialog::setAcceptsSingleFrames(bool accepts) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->rules.acceptsFrames, accepts) != accepts)
        d->settingChanged();
}

int FileChooserDialog::padding() const {
    return d->padding;
}

void FileChooserDialog::setPadding(int digits) {
    KXUI_INTERFACE_THREAD(this);
    const int limited = std::clamp(digits, 1, MostDigits);
    if (std::exchange(d->padding, limited) != limited)
        d->settingChanged();
}

FileNames::Style FileChooserDialog::patternStyle() const {
    return d->rules.style;
}

void FileChooserDialog::setPatternStyle(FileNames::Style style) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->rules.style, style) != style)
        d->settingChanged();
}

std::optional<Base::FrameRange> FileChooserDialog::frameRange() const {
    return d->rules.written;
}

void FileChooserDialog::setFrameRange(const std::optional<Base::FrameRange>& frames) {
    KXUI_INTERFACE_THREAD(this);
    if (frames == d->rules.written)
        return;
    d->rules.written = frames;
    d->settingChanged();
}

bool FileChooserDialog::confirmsReplacing() const {
    return d->stateRules.confirmsReplacing;
}

void FileChooserDialog::setConfirmsReplacing(bool confirms) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->stateRules.confirmsReplacing, confirms) != confirms)
        d->settingChanged();
}

bool FileChooserDialog::createsFolders() const {
    return d->stateRules.createsFolders;
}

void FileChooserDialog::setCreatesFolders(bool creates) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->stateRules.createsFolders, creates) != creates)
        d->settingChanged();
}

QString FileChooserDialog::acceptButtonText() const {
    return d->acceptText;
}

void FileChooserDialog::setAcceptButtonText(const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    if (text == d->acceptText)
        return;
    d->acceptText = text;
    d->settingChanged();
}

QStringList FileChooserDialog::schemes() const {
    QStringList schemes;
    for (const std::string& scheme : d->rules.schemes)
        schemes << QString::fromStdString(scheme);
    return schemes;
}

void FileChooserDialog::setSchemes(const QStringList& schemes) {
    KXUI_INTERFACE_THREAD(this);
    d->rules.schemes.clear();
    for (const QString& scheme : schemes)
        d->rules.schemes.push_back(scheme.toLower().toStdString());
    d->settingChanged();
}

QWidget* FileChooserDialog::extraWidget() const {
    return d->extra;
}

void FileChooserDialog::setExtraWidget(QWidget* widget) {
    KXUI_INTERFACE_THREAD(this);
    if (widget == d->extra)
        return;
    delete d->extra;
    d->extra = widget;
    if (widget) {
        d->form.extraRow->addWidget(widget);
        widget->show();
    }
    d->form.orderTabs(widget);
}

void FileChooserDialog::setValidator(std::function<QString(const std::vector<Choice>&)> validator) {
    KXUI_INTERFACE_THREAD(this);
    d->validator = std::move(validator);
}

std::vector<FileChooserDialog::Choice> FileChooserDialog::choices() const {
    return d->finished.empty() ? d->choices() : d->finished;
}

FileBrowser* FileChooserDialog::browser() const {
    return d->form.browser;
}

void FileChooserDialog::accept() {
    KXUI_INTERFACE_THREAD(this);
    d->tryAccept();
}

void FileChooserDialog::done(int result) {
    KXUI_INTERFACE_THREAD(this);
    d->question.stop();
    d->remember(result == Accepted);
    QDialog::done(result);
}

void FileChooserDialog::showEvent(QShowEvent* event) {
    const QPointer<FileChooserDialog> alive(this);
    d->begin();
    if (alive)
        QDialog::showEvent(event);
}

void FileChooserDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        d->escape();
    else
        QDialog::keyPressEvent(event);
}

void FileChooserDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        d->settingChanged();
}

} // namespace Kestrel::UI
