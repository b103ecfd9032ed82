#pragma once

#include <KxUI/browse/BrowserState_p.h>

#include <QBasicTimer>
#include <QPixmap>
#include <QWidget>

#include <functional>
#include <utility>
#include <vector>

class QAccessibleInterface;
class QBoxLayout;
class QLabel;

namespace Kestrel::UI {

class BrowserViews;

/** A thin bar that moves while something is waited for. Takes its place also when it is still. To
    assistive tools it is a progress bar that is busy, or nothing. */
class BusyLine : public QWidget {
    Q_OBJECT

public:
    explicit BusyLine(QWidget* parent = nullptr);

    bool isBusy() const { return m_timer.isActive(); }
    void setBusy(bool busy);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    static QAccessibleInterface* accessible(const QString& className, QObject* object);

    QBasicTimer m_timer;
    int m_step = 0;
};

/** Words in the place of rows or above them, with buttons. */
class BrowserNoticeBox : public QWidget {
    Q_OBJECT

public:
    struct Choice {
        QString text;
        std::function<void()> choose;
    };

    explicit BrowserNoticeBox(QWidget* parent = nullptr);

    /** Nothing when it is the same as before: a button that is being pressed stays. */
    void say(const QString& text, std::vector<Choice> choices);

    QString text() const;

    /** Whether it is a line above rows; else it stands alone. */
    void setBanner(bool isBanner);
    bool isBanner() const { return m_isBanner; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QBoxLayout* m_layout;
    QBoxLayout* m_buttons;
    QLabel* m_text;
    std::vector<Choice> m_choices;
    bool m_isBanner = false;
};

/** Rows that cannot be used: as a picture of what they were, or as they are, greyed. */
class BrowserVeil : public QWidget {
    Q_OBJECT

public:
    explicit BrowserVeil(QWidget* parent = nullptr);

    void setPicture(const QPixmap& picture);
    bool hasPicture() const { return !m_picture.isNull(); }
    /** @param veil  how much of the rows is gone, of 255; 0 for nothing */
    void setGrey(int veil);
    bool isGrey() const { return m_grey > 0; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_picture;
    int m_grey = 0;
};

/** The list of a browser: its views, what is in front of them, and words about them. */
class BrowserArea : public QWidget {
    Q_OBJECT

public:
    explicit BrowserArea(BrowserViews* views, QWidget* parent = nullptr);

    /** Keeps the rows in sight as they are drawn now. Whether there was anything to keep. */
    bool hold();

    void show(const BrowserFace& face, const QString& text,
              std::vector<BrowserNoticeBox::Choice> choices, bool hasRows);

    const BrowserNoticeBox* notice() const { return m_notice; }
    const BrowserVeil* veil() const { return m_veil; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    BrowserViews* const m_views;
    BrowserVeil* m_veil;
    BrowserNoticeBox* m_notice;
};

} // namespace Kestrel::UI
