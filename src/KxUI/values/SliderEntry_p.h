#pragma once

#include <QFrame>

class QKeyEvent;

namespace Kestrel::UI {

class DoubleSpinBox;

/** The field for an exact number that opens over the handle of a slider. Return takes the number,
    and so does a press elsewhere; Escape closes. Deletes itself when it is closed. */
class SliderEntry : public QFrame {
    Q_OBJECT

public:
    SliderEntry(double value, const QString& suffix, QWidget* slider);
    ~SliderEntry() override;

    /** Opens around that place of the slider and begins with the key that asked for it. */
    void open(const QPoint& place, const QKeyEvent& key);

    DoubleSpinBox* field() const { return m_field; }

Q_SIGNALS:
    void taken(double value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void closeUnlessRefused();

    DoubleSpinBox* m_field;
    bool m_refused = false;
    bool m_done = false;
};

} // namespace Kestrel::UI
