#pragma once

#include <QScrollArea>

namespace Kestrel::UI {

class EventGraphView;
struct ViewColors;

/** The times above a view, which stay in sight while the view scrolls downwards. */
class TimeRuler : public QWidget {
    Q_OBJECT

public:
    TimeRuler(EventGraphView& view, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int scrolled() const;
    void paintRange(QPainter& painter, const ViewColors& colors) const;
    void paintTicks(QPainter& painter, const ViewColors& colors) const;
    void paintSelected(QPainter& painter, const ViewColors& colors) const;

    EventGraphView& m_view;
};

/** Scrolls a view under its ruler. */
class EventGraphScrollArea : public QScrollArea {
    Q_OBJECT

public:
    /** Takes the view. */
    explicit EventGraphScrollArea(EventGraphView* view);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void placeRuler();

    TimeRuler* m_ruler;
};

} // namespace Kestrel::UI
