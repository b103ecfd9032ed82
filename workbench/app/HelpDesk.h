#pragma once

#include <QByteArray>
#include <QObject>

#include <string>

class QMenu;
class QWidget;

namespace Kestrel::Workbench {

class Navigator;

/** The folder of the help pages, in the bytes of the file system: installed with the program, or
    beside it where it was built. Empty when there is none. */
QByteArray helpFolder();

/** Opens the help page of the panel that has the focus in the user's browser, and does what the
    buttons of the pages ask for. The pages speak to the help desk that was made last. Interface
    thread. */
class HelpDesk : public QObject {
    Q_OBJECT

public:
    /** @param window     borrowed; where complaints are shown
        @param navigator  borrowed; outlives the help desk */
    HelpDesk(QWidget* window, Navigator* navigator);
    ~HelpDesk() override;

    /** Names a panel's page, as "viewer.html", and asks the help server for it now, so that its
        answer is there when the user wants the page. Lets a click into the panel give it the
        focus, so that the panel that was used last is the one that help is about. */
    void addPanel(QWidget* panel, const std::string& node);

    /** Adds the entries of the help menu; F1 works in every window of the program. */
    void fillMenu(QMenu* menu);

    /** The page of the panel that a widget belongs to, or the contents. */
    static std::string nodeOf(const QWidget* widget);

    /** Does what a page asks for: "go-to-start", "go-to-end" or "go-to-frame-N". False, and nothing
        done, for anything else. */
    bool obey(const std::string& command);

public slots:
    /** Opens the page of the panel that has the focus. */
    void openPage();
    void openContents();

private:
    void open(const std::string& node);
    void complain(const QString& message);

    QWidget* m_window;
    Navigator* m_navigator;
};

} // namespace Kestrel::Workbench
