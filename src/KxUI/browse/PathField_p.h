#pragma once

#include <QByteArray>
#include <QLineEdit>

namespace Kestrel::UI {

/** The path of a folder as a text to edit. What is not edited keeps its bytes. */
class PathField : public QLineEdit {
    Q_OBJECT

public:
    explicit PathField(QWidget* parent = nullptr);

    QByteArray path() const { return m_path; }
    void setPath(const QByteArray& path);

    /** Takes the focus; the text that is given replaces the path. */
    void startEditing(const QString& text = QString());

    /** Shows path() again. */
    void stopEditing();

    /** Goes to the path that was copied, if one was. */
    bool paste();

Q_SIGNALS:
    void pathEntered(const QByteArray& path);
    /** Editing was given up by Escape. */
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enter(const QString& text);

    QByteArray m_path;
};

} // namespace Kestrel::UI
