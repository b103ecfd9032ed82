#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <optional>

namespace Kestrel::UI {

/** When a search field tells its text, and which texts it remembers. */
class SearchFieldLogic : public QObject {
    Q_OBJECT

public:
    static constexpr int MostRemembered = 20;

    SearchFieldLogic();

    int delay() const { return m_delay; }
    void setDelay(int milliseconds);

    /** The user changed the text. It is told after the delay; one that became empty with the next
        turn of the event loop. */
    void edited(const QString& text);
    const QString& text() const { return m_text; }
    /** The host set it: it counts as told, unless edited() says right after that it was the user.
     */
    void set(const QString& text);
    /** Tells the text now unless it is told already. */
    void apply();
    /** As apply(), and keeps the text for the history, if there is one. */
    void use();

    bool isHistoryEnabled() const { return m_historyEnabled; }
    void setHistoryEnabled(bool enabled) { m_historyEnabled = enabled; }
    const QStringList& history() const { return m_history; }
    /** Newest first; without what is empty or twice, and without the oldest ones above the limit.
     */
    bool setHistory(const QStringList& texts);

    /** Lets the delay pass by hand, for tests. */
    void pass();

Q_SIGNALS:
    void told(const QString& text);
    void historyChanged();

private:
    QTimer m_timer;
    int m_delay = 300;
    QString m_text;
    QString m_told;
    std::optional<QString> m_toldBeforeSet;
    QStringList m_history;
    bool m_historyEnabled = true;
};

} // namespace Kestrel::UI
