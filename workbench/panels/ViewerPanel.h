#pragma once

#include <QByteArray>
#include <QList>
#include <QTimer>
#include <QWidget>

class QLabel;

namespace Kestrel::Workbench {

class Session;
class ViewerCanvas;

/** The viewer of a session: a line on what is shown, above the picture. */
class ViewerPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit ViewerPanel(Session* session, QWidget* parent = nullptr);

signals:
    /** Files and folders were dropped on the viewer. */
    void pathsDropped(const QList<QByteArray>& paths);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void showFrame();
    void describeFrame();
    void describePixel();

    Session* m_session;
    ViewerCanvas* m_canvas;
    QLabel* m_name;
    QLabel* m_pixel;
    QLabel* m_facts;
    /** Runs until a wait for a frame is long enough to be worth a word. */
    QTimer m_patience;
};

} // namespace Kestrel::Workbench
