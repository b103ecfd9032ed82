#include <KxUI/browse/FilePathEdit_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

using namespace Kestrel::UI;

bool FilePathEdit::Private::canBrowse() const {
    return !q->isReadOnly() && browser;
}

void FilePathEdit::browse() {
    KXUI_INTERFACE_THREAD(this);
    if (!d->canBrowse())
        return;
    const auto browser = d->browser; // which may be replaced by what it calls
    browser(this);
}
