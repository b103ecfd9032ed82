#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

#include <QVariant>

#include <utility>
#include <vector>

namespace Kestrel::UI {

/** User data: named values, one "name = value" line each, in the order they were appended.
    Fill it before an event refers to it: the list itself is not guarded. */
class KXUI_EXPORT EventUserDataVarList : public IEventUserData {
public:
    /** An empty list. */
    EventUserDataVarList();

    /** Adds a pair; a name may stand more than once. */
    void append(const QString& name, const QVariant& value);

    QString text() const override;

private:
    std::vector<std::pair<QString, QVariant>> m_values;
};

} // namespace Kestrel::UI
