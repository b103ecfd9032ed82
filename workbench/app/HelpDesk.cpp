#include "app/HelpDesk.h"

#include "play/Navigator.h"

#include <KxUI/help/HelpManager.h>

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QUrl>
#include <QVariant>

#include <charconv>
#include <string_view>

namespace Kestrel::Workbench {

namespace {

constexpr char nodeProperty[] = "helpNode";
constexpr char contents[] = "index.html";

/** Whom the pages speak to: what the server calls is a plain function. */
HelpDesk* onDuty = nullptr;

} // namespace

QByteArray helpFolder() {
    const QDir program(QCoreApplication::applicationDirPath());
    for (const QString& place :
         {QStringLiteral(KXUI_HELP_FROM_PROGRAM), QStringLiteral("help-pages")}) {
        const QString folder = QDir::cleanPath(program.absoluteFilePath(place));
        if (QFileInfo::exists(folder + QLatin1Char('/') + QLatin1String(contents)))
            return QFile::encodeName(folder);
    }
    return {};
}

HelpDesk::HelpDesk(QWidget* window, Navigator* navigator)
    : m_window(window)
    , m_navigator(navigator) {
    onDuty = this;
    UI::HelpManager* manager = UI::HelpManager::instance();
    manager->setCommonPath({});
    // Nothing but the help pages: the folder of the program is nobody's business.
    manager->clearSearchPath();
    if (const QByteArray folder = helpFolder(); !folder.isEmpty())
        manager->setSearchPath({folder.constData()});
    // The argument is the rest of the request line, which a browser fills in by itself.
    manager->setRequestHandler([](std::string command, std::string /*argument*/) {
        if (onDuty)
            onDuty->obey(command);
    });
    manager->checkNode(contents);
}

HelpDesk::~HelpDesk() {
    if (onDuty == this)
        onDuty = nullptr;
}

void HelpDesk::addPanel(QWidget* panel, const std::string& node) {
    panel->setProperty(nodeProperty, QByteArray::fromStdString(node));
    if (panel->focusPolicy() == Qt::NoFocus)
        panel->setFocusPolicy(Qt::ClickFocus);
    UI::HelpManager::instance()->checkNode(node);
}

void HelpDesk::fillMenu(QMenu* menu) {
    QAction* page = menu->addAction(tr("&Help on This Panel"), this, &HelpDesk::openPage);
    page->setShortcut(QKeySequence(Qt::Key_F1));
    page->setShortcutContext(Qt::ApplicationShortcut);
    menu->addAction(tr("&Contents"), this, &HelpDesk::openContents);
}

std::string HelpDesk::nodeOf(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget()) {
        const QVariant node = widget->property(nodeProperty);
        if (node.isValid())
            return node.toByteArray().toStdString();
    }
    return contents;
}

bool HelpDesk::obey(const std::string& command) {
    constexpr std::string_view goToFrame = "go-to-frame-";
    if (command == "go-to-start") {
        m_navigator->goToStart();
        return true;
    }
    if (command == "go-to-end") {
        m_navigator->goToEnd();
        return true;
    }
    if (command.compare(0, goToFrame.size(), goToFrame) != 0)
        return false;
    Base::Time frame = 0;
    const char* const end = command.data() + command.size();
    const auto read = std::from_chars(command.data() + goToFrame.size(), end, frame);
    if (read.ec != std::errc() || read.ptr != end)
        return false;
    m_navigator->goTo(frame);
    return true;
}

void HelpDesk::openPage() {
    const QWidget* focus = QApplication::focusWidget();
    open(nodeOf(focus ? focus : QApplication::activeWindow()));
}

void HelpDesk::openContents() {
    open(contents);
}

void HelpDesk::open(const std::string& node) {
    UI::HelpManager* manager = UI::HelpManager::instance();
    std::string url = manager->getUrl(node);
    if (url.empty())
        url = manager->getUrl(contents);
    if (url.empty())
        complain(helpFolder().isEmpty()
                     ? tr("The help pages are not installed.")
                     : tr("The help pages cannot be read at the moment. Try again."));
    else if (!QDesktopServices::openUrl(QUrl(QString::fromStdString(url))))
        complain(
            tr("No browser could be started. The page is at %1").arg(QString::fromStdString(url)));
}

void HelpDesk::complain(const QString& message) {
    auto* box =
        new QMessageBox(QMessageBox::Information, tr("Help"), message, QMessageBox::Ok, m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse);
    box->open();
}

} // namespace Kestrel::Workbench
