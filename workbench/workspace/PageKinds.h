#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace Kestrel::Workbench {

class Session;

/** A panel that the workspace can show in a tab. */
struct PageKind {
    /** Names the page in saved workspaces, so it never changes. */
    const char* id;
    /** In English; the reader sees its translation. */
    const char* title;
    /** A name of UI::IconFactory. */
    const char* icon;
    /** The help page, as "viewer.html". */
    const char* help;
    /** Makes the panel, without a parent, on a session that outlives it. */
    QWidget* (*make)(Session* session);

    QString translatedTitle() const;
};

/** Every kind, in the order of the menu. */
const std::vector<PageKind>& pageKinds();

/** The kind of that id, or null. */
const PageKind* pageKind(const QString& id);

} // namespace Kestrel::Workbench
