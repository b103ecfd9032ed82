#include <KxUI/browse/PathField_p.h>

#include <KxUI/files/RawName_p.h>

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

namespace Kestrel::UI {

PathField::PathField(QWidget* parent)
    : QLineEdit(parent) {
    setLayoutDirection(Qt::LeftToRight);
    setPlaceholderText(tr("Folder"));
    setAccessibleName(tr("Folder"));
}

void PathField::setPath(const QByteArray& path) {
    m_path = path;
    setText(decodedName(path));
}

void PathField::startEditing(const QString& text) {
    setFocus(Qt::ShortcutFocusReason);
    if (text.isEmpty())
        selectAll();
    else
        setText(text);
}

void PathField::stopEditing() {
    setText(decodedName(m_path));
}

bool PathField::paste() {
    const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
    if (!copied)
        return false;
    QString text = copied->text().section(QLatin1Char('\n'), 0, 0).trimmed();
    if (copied->hasUrls() && copied->urls().constFirst().isLocalFile())
        text = copied->urls().constFirst().toLocalFile();
    if (!text.startsWith(QLatin1Char('/')))
        return false;
    enter(text);
    return true;
}

void PathField::enter(const QString& text) {
    if (text == decodedName(m_path)) {
        Q_EMIT pathEntered(QByteArray(m_path));
        return;
    }
    QString path = text;
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, QDir::homePath());
    else if (!path.startsWith(QLatin1Char('/')))
        path.prepend(decodedName(m_path) + QLatin1Char('/'));
    Q_EMIT pathEntered(encodedName(path));
}

void PathField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->accept();
        enter(text());
    } else if (event->key() == Qt::Key_Escape) {
        event->accept();
        stopEditing();
        Q_EMIT left();
    } else {
        QLineEdit::keyPressEvent(event);
    }
}

} // namespace Kestrel::UI
