#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/FilePathEdit_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

using namespace Kestrel::UI;
namespace Text = Kestrel::UI::PathText;

namespace {

FileChooserDialog::Mode modeOf(FilePathEdit::Kind kind) {
    switch (kind) {
    case FilePathEdit::SaveFile:
        return FileChooserDialog::SaveFile;
    case FilePathEdit::Folder:
        return FileChooserDialog::OpenFolder;
    case FilePathEdit::OpenFile:
    case FilePathEdit::Any:
        break;
    }
    return FileChooserDialog::OpenFile;
}

} // namespace

// Begins where the field's path is, or else at its base.
void FilePathEdit::Private::openChooser() {
    if (chooser) {
        chooser->raise();
        chooser->activateWindow();
        return;
    }
    const QPointer<FilePathEdit> field(q);
    chooser = FileChooserDialog::open(
        modeOf(kind), q, purpose, filters,
        [this, field](const std::vector<FileChooserDialog::Choice>& choices) {
            if (field && !choices.empty())
                takeByUser(choices.front().path);
        });
    chooser->setAcceptsSequences(acceptsSequences);
    chooser->setFoldsSequences(acceptsSequences);
    const Text::Meaning meaning = meaningOf(q->text());
    if (!meaning && !baseFolder.isEmpty())
        chooser->setFolder(place().folder);
    else if (meaning && kind == Folder)
        chooser->setFolder(meaning.path);
    else if (meaning)
        chooser->setFileName(meaning.path);
}

void FilePathEdit::browse() {
    KXUI_INTERFACE_THREAD(this);
    if (isReadOnly() || !isEnabled())
        return;
    const QPointer<FilePathEdit> alive(this);
    if (const auto browser = d->browser) // which may be replaced by what it calls
        browser(this);
    else
        d->openChooser();
}
