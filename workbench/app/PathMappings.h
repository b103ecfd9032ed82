#pragma once

#include <KxUI/files/PathRemap.h>

#include <QObject>

#include <vector>

class QWidget;

namespace Kestrel::Workbench {

/** How paths of other machines are found on this one: rules of the user, edited in a window and kept
    in the settings. */
class PathMappings : public QObject {
    Q_OBJECT

public:
    explicit PathMappings(QObject* parent = nullptr);

    UI::PathRemap remap() const { return UI::PathRemap(m_rules); }

    /** A path as this machine has it. */
    QByteArray mapped(const QByteArray& path) const;

    /** Takes the rules of the last time, and keeps them from now on. */
    void remember();

    /** Begins to edit them, above a window; returns at once. */
    void edit(QWidget* window);

signals:
    void changed();

private:
    void set(const std::vector<UI::PathRule>& rules);

    std::vector<UI::PathRule> m_rules;
    bool m_remembers = false;
};

} // namespace Kestrel::Workbench
