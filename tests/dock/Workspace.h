#pragma once

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockSanity_p.h>
#include <KxUI/dock/DockSplitter.h>

#include <QCloseEvent>
#include <QtTest>

namespace Kestrel::Test {

/** A host page: named like its title, with a layout state, and able to refuse to close. */
class Page : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString layoutState MEMBER m_layoutState)

public:
    explicit Page(const QString& name) {
        setObjectName(name);
        setWindowTitle(name);
        setFocusPolicy(Qt::StrongFocus);
    }
    bool m_refuses = false;
    QString m_layoutState;

protected:
    void closeEvent(QCloseEvent* event) override { event->setAccepted(!m_refuses); }
};

/** A workspace whose pages are made once by name, and that counts what it is told. */
class Workspace : public UI::DockMainWindow {
    Q_OBJECT

public:
    Workspace() {
        setAttribute(Qt::WA_DeleteOnClose, false);
        resize(900, 600);
    }
    ~Workspace() override {
        for (const QPointer<Page>& page : qAsConst(m_pages))
            delete page;
    }

    Page* page(const QString& name) {
        QPointer<Page>& page = m_pages[name];
        if (!page)
            page = new Page(name);
        return page;
    }

    QWidget* createPage(QString& id) override {
        ++m_created;
        return id.startsWith(QLatin1String("none")) ? nullptr : page(id);
    }

    /** A pane with pages, at the end of the main window. */
    UI::Dock* pane(const QStringList& names, const QString& id = QString()) {
        UI::Dock* dock = createDock();
        dock->setObjectName(id);
        addWidget(dock);
        for (const QString& name : names)
            dock->addWidget(page(name), false, false);
        return dock;
    }

    QByteArray saved() {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        saveLayout(&buffer, nullptr);
        return buffer.data();
    }

    bool restored(QByteArray document) {
        QBuffer buffer(&document);
        buffer.open(QIODevice::ReadOnly);
        return restoreLayout(&buffer, false);
    }

    bool wholeRestored(QByteArray document, UI::DockLayoutError* error = nullptr) {
        QBuffer buffer(&document);
        buffer.open(QIODevice::ReadOnly);
        return restoreWholeLayout(&buffer, false, error);
    }

    QHash<QString, QPointer<Page>> m_pages;
    int m_created = 0;
};

inline void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

inline QStringList names(const UI::Dock* dock) {
    QStringList result;
    for (int i = 0; dock && i < dock->count(); ++i)
        result.append(dock->widget(i)->objectName());
    return result;
}

inline void show(QWidget& window) {
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    settle();
}

} // namespace Kestrel::Test

#define SANE(workspace) QCOMPARE(Kestrel::UI::checkSanity(workspace), QString())
