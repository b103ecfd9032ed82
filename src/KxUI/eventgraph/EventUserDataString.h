#pragma once

#include <KxUI/eventgraph/IEventUserData.h>

namespace Kestrel::UI {

/** User data: a text, shown as it is. */
class KXUI_EXPORT EventUserDataString : public IEventUserData {
public:
    /** Keeps the text. */
    explicit EventUserDataString(const QString& text);

    QString text() const override;

private:
    QString m_text;
};

} // namespace Kestrel::UI
