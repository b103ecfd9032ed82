#include <KxUI/browse/BrowserMemory_p.h>
#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/settings/AppSettings.h>

#include <QSplitter>

#include <algorithm>

namespace Kestrel::UI {

// Columns are dragged: once that is over.
void FileBrowserPrivate::rememberSoon() {
    if (!settingsKey.isEmpty() && !isRecalling)
        memorize.start();
}

void FileBrowserPrivate::remember() {
    memorize.stop();
    BrowserMemory memory;
    views->remember(memory);
    memory.showsHidden = q->showsHidden();
    memory.foldsSequences = q->foldsSequences();
    memory.side = sideWidth;
    AppSettings settings;
    memory.save(settings, settingsKey);
}

void FileBrowserPrivate::recall() {
    if (settingsKey.isEmpty())
        return;
    const QPointer<FileBrowser> self(q);
    BrowserMemory memory;
    views->remember(memory);
    memory.showsHidden = q->showsHidden();
    memory.foldsSequences = q->foldsSequences();
    AppSettings settings;
    memory.load(settings, settingsKey);
    isRecalling = true;
    views->recall(memory);
    sideWidth = memory.side;
    if (sideWidth > 0)
        splitter->setSizes({sideWidth, std::max(0, q->width() - sideWidth)});
    q->setViewMode(static_cast<FileBrowser::ViewMode>(memory.view));
    if (self)
        q->setShowsHidden(memory.showsHidden);
    if (self)
        q->setFoldsSequences(memory.foldsSequences);
    if (self)
        isRecalling = false;
}

} // namespace Kestrel::UI
