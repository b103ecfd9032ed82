#include <KxUI/values/SearchFieldLogic_p.h>

#include <QPointer>

#include <algorithm>

namespace Kestrel::UI {

SearchFieldLogic::SearchFieldLogic() {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SearchFieldLogic::apply);
}

void SearchFieldLogic::setDelay(int milliseconds) {
    m_delay = std::max(0, milliseconds);
    if (m_timer.isActive())
        edited(m_text);
}

void SearchFieldLogic::edited(const QString& text) {
    if (m_toldBeforeSet && text == m_text)
        m_told = *m_toldBeforeSet;
    m_toldBeforeSet.reset();
    m_text = text;
    // Never from within the change of a line edit, which a listener must not delete meanwhile.
    m_timer.start(text.isEmpty() ? 0 : m_delay);
}

void SearchFieldLogic::set(const QString& text) {
    m_timer.stop();
    m_toldBeforeSet = m_told;
    m_text = text;
    m_told = text;
}

void SearchFieldLogic::apply() {
    m_timer.stop();
    if (m_told == m_text)
        return;
    m_told = m_text;
    const QString text = m_text; // a listener may set another one
    Q_EMIT told(text);
}

void SearchFieldLogic::use() {
    const QString used = m_text.trimmed();
    const QPointer<SearchFieldLogic> alive(this);
    apply();
    if (!alive || used.isEmpty() || !m_historyEnabled)
        return;
    if (setHistory(QStringList(used) + m_history))
        Q_EMIT historyChanged();
}

bool SearchFieldLogic::setHistory(const QStringList& texts) {
    QStringList kept;
    for (const QString& text : texts) {
        if (!text.trimmed().isEmpty() && !kept.contains(text) && kept.size() < MostRemembered)
            kept += text;
    }
    const bool differs = kept != m_history;
    m_history = kept;
    return differs;
}

void SearchFieldLogic::pass() {
    if (m_timer.isActive())
        apply();
}

} // namespace Kestrel::UI
