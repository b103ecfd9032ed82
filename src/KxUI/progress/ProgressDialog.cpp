#include <KxUI/progress/ProgressDialog.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/progress/ProgressDialog_p.h>
#include <KxUI/progress/ProgressRow_p.h>

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>

namespace Kestrel::UI {

ProgressDialog::ProgressDialog(QWidget* parent)
    : QDialog(parent)
    , d(std::make_unique<Private>(this)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    // Tab begins at the first button; nothing has the focus before.
    setFocusPolicy(Qt::StrongFocus);
    d->makeWidgets();
    setFocus();
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        if (isVisible())
            d->savePlace();
    });
}

ProgressDialog::~ProgressDialog() {
    // The manager may be a child, which goes after what is here.
    if (d->manager)
        disconnect(d->manager, nullptr, this, nullptr);
}

ProgressDialog* ProgressDialog::follow(const std::shared_ptr<ProgressTask>& task, QWidget* parent,
                                       bool modal) {
    auto* const dialog = new ProgressDialog(parent);
    auto* const manager = new ProgressManager(dialog);
    manager->setKeptFor(std::chrono::milliseconds(0));
    dialog->setWindowModality(modal ? Qt::WindowModal : Qt::NonModal);
    dialog->d->isFollowing = true;
    dialog->setManager(manager);
    manager->add(task);
    manager->look();
    return dialog;
}

ProgressManager* ProgressDialog::manager() const {
    return d->manager;
}

void ProgressDialog::setManager(ProgressManager* manager) {
    KXUI_INTERFACE_THREAD(this);
    if (manager == d->manager)
        return;
    if (d->manager)
        disconnect(d->manager, nullptr, this, nullptr);
    d->clear();
    d->manager = manager;
    if (!manager)
        return;
    connect(manager, &ProgressManager::taskAdded, this, [this](int row) { d->addRow(row); });
    connect(manager, &ProgressManager::taskChanged, this,
            [this](int first, int last) { d->refresh(first, last); });
    connect(manager, &ProgressManager::taskAboutToBeRemoved, this,
            [this](int row) { d->removeRow(row); });
    connect(manager, &QObject::destroyed, this, [this] { d->clear(); });
    for (int row = 0; row < manager->count(); ++row)
        d->addRow(row);
}

std::chrono::milliseconds ProgressDialog::showAfter() const {
    return d->showAfter;
}

void ProgressDialog::setShowAfter(std::chrono::milliseconds time) {
    d->showAfter = time;
}

bool ProgressDialog::opensByItself() const {
    return d->opensByItself;
}

void ProgressDialog::setOpensByItself(bool opens) {
    if (opens == d->opensByItself)
        return;
    d->opensByItself = opens;
    Q_EMIT settingsChanged();
}

bool ProgressDialog::closesWhenIdle() const {
    return d->closesWhenIdle;
}

void ProgressDialog::setClosesWhenIdle(bool closes) {
    if (closes == d->closesWhenIdle)
        return;
    d->closesWhenIdle = closes;
    Q_EMIT settingsChanged();
}

bool ProgressDialog::remembersPlace() const {
    return d->remembersPlace;
}

void ProgressDialog::setRemembersPlace(bool remembers) {
    KXUI_INTERFACE_THREAD(this);
    if (remembers == d->remembersPlace)
        return;
    if (remembers && objectName().isEmpty())
        setObjectName(QStringLiteral("ProgressDialog"));
    d->remembersPlace = remembers;
    d->isPlaced = false;
    Q_EMIT settingsChanged();
}

void ProgressDialog::reject() {
    if (!isModal()) {
        d->hideByUser();
    } else if (d->manager) {
        d->manager->cancelAll(); // the dialog stays until it has ended
        d->refresh(0, d->manager->count() - 1);
    }
}

void ProgressDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept();
    else
        QDialog::keyPressEvent(event);
}

void ProgressDialog::closeEvent(QCloseEvent* event) {
    // Who quits the program asks all windows to close, and must not be refused by one that only shows.
    event->setAccepted(!isModal() || !d->manager || d->manager->isIdle());
    reject();
}

void ProgressDialog::showEvent(QShowEvent* event) {
    d->visibleFor.start();
    d->restorePlace();
    // Whoever asks for it again wants to see what was hidden, too.
    for (ProgressRow* row : d->rows)
        row->show();
    if (d->manager)
        d->refresh(0, d->manager->count() - 1);
    d->fit();
    QDialog::showEvent(event);
}

void ProgressDialog::hideEvent(QHideEvent* event) {
    if (!event->spontaneous())
        d->savePlace();
    QDialog::hideEvent(event);
}

} // namespace Kestrel::UI
