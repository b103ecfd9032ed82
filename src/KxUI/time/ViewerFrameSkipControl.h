#pragma once

#include <KxUI/Export.h>

#include <QWidget>

class QLineEdit;

namespace Kestrel::UI {

/** Two buttons that skip several frames, and between them the field that says how many: 1 to 999,
    12 at first. Nothing is skipped here; the host listens. Interface thread. */
class KXUI_EXPORT ViewerFrameSkipControl : public QWidget {
    Q_OBJECT

public:
    explicit ViewerFrameSkipControl(QWidget* parent = nullptr);
    ~ViewerFrameSkipControl() override;

    /** Shows a number of frames; not echoed by incrementFieldValueChanged(). */
    void setIncrement(int increment);

public Q_SLOTS:
    /** Announces the number in the field if the user changed it. */
    void finishedEditing();
    /** The same as setIncrement(). */
    void frameIncrementChanged(int value);

Q_SIGNALS:
    /** The user typed another number of frames. */
    void incrementFieldValueChanged(int increment);
    /** The user wants to skip as many frames as the field says. */
    void skipForwardsButtonClicked();
    void skipBackwardsButtonClicked();

private:
    QLineEdit* m_increment = nullptr;
};

} // namespace Kestrel::UI
