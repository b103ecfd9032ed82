#pragma once

#include <QAbstractButton>
#include <QByteArray>

#include <functional>

namespace Kestrel::UI {

/** A part of a path bar: a component's name, an arrow, or the dots. Keys that go along the bar are
    left to it. */
class CrumbButton : public QAbstractButton {
    Q_OBJECT

public:
    enum Part { Name, Arrow, Dots };

    CrumbButton(Part part, QWidget* bar);

    Part part() const { return m_part; }
    /** Where it goes to, or whose folders it shows. */
    const QByteArray& path() const { return m_path; }
    /** The index of its component. */
    int index() const { return m_index; }
    /** `shown` is what is painted, on one line. */
    void show(int index, const QByteArray& path, const QString& shown, bool isLast);
    /** Its menu is open. */
    void setMenuOpen(bool open);

    QSize sizeHint() const override;

    static constexpr int ArrowWidth = 24; ///< large enough to be hit

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintBackground(QPainter& painter) const;
    void paintArrow(QPainter& painter) const;

    Part m_part;
    QByteArray m_path;
    int m_index = 0;
    bool m_isLast = false;
    bool m_menuOpen = false;
};

} // namespace Kestrel::UI
