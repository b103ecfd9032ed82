#include <KxUI/dock/DockTreeEdit_p.h>

namespace Kestrel::UI {

namespace {

int runningEdits = 0;

} // namespace

DockTreeEdit::DockTreeEdit() {
    ++runningEdits;
}

DockTreeEdit::~DockTreeEdit() {
    --runningEdits;
}

bool DockTreeEdit::isRunning() {
    return runningEdits > 0;
}

} // namespace Kestrel::UI
