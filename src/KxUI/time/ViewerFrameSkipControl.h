#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

/** Two buttons that skip several frames, and between them the field that says how many: 1 to 999,
    12 at first. Nothing is skipped here; the host listens. Interface thread. */
class KXUI_EXPORT ViewerFrameSkipControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int increment READ increment WRITE setIncrement NOTIFY incrementChanged)

public:
    explicit ViewerFrameSkipControl(QWidget* parent = nullptr);
    ~ViewerFrameSkipControl() override;

    /** Shows a number of frames; not echoed by incrementFieldValueChanged(). */
    void setIncrement(int increment);
    /** The number set or announced last. */
    int increment() const;

public Q_SLOTS:
    /** Announces the number in the field if the user changed it. */
    void finishedEditing();
    /** The same as setIncrement(). */
    void frameIncrementChanged(int value);

Q_SIGNALS:
    /** The user typed another number of frames. */
    void incrementFieldValueChanged(int increment);
    /** The number became another one, by whomever. */
    void incrementChanged(int increment);
    /** The user wants to skip as many frames as the field says; a number that was being typed was
        announced before, one that can not be used is gone. */
    void skipForwardsButtonClicked();
    void skipBackwardsButtonClicked();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
