#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/Choices.h>
#include <KxUI/kit/WheelPolicy.h>

#include <QToolButton>

class QStyleOptionComboBox;
class QStylePainter;

namespace Kestrel::UI {

class ChoiceButtonPrivate;

/** A choice of many: shows the present one and opens a menu of all, with lines and titles between
    where the host wants them. Looks like a combo box, or as part of a toolbar with autoRaise.

    Up and Down, Home and End and the mouse wheel choose without the menu; Space, Return, F4 and
    Alt with Down open it. The wheel acts as wheelPolicy() says. A choice by the mouse is an edit by
    itself; a held key, or a run of notches, is one until it ends, which Escape takes back.
    Interface thread. */
class KXUI_EXPORT ChoiceButton : public QToolButton, public Choices {
    Q_OBJECT
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged
                   USER true)
    Q_PROPERTY(bool exclusive READ isExclusive WRITE setExclusive NOTIFY exclusiveChanged)
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText NOTIFY
                   placeholderTextChanged)
    Q_PROPERTY(Kestrel::UI::WheelPolicy::Policy wheelPolicy READ wheelPolicy WRITE setWheelPolicy
                   NOTIFY wheelPolicyChanged)
    Q_PROPERTY(int count READ choiceCount NOTIFY countChanged)

public:
    /** An exclusive button without choices. */
    explicit ChoiceButton(QWidget* parent = nullptr);
    ~ChoiceButton() override;

    /** A line in the menu, above the choice that is added next. */
    void addSeparator();
    /** The same, with a title for what follows. */
    void addSection(const QString& title);

    /** Shown while none is on. */
    QString placeholderText() const;
    void setPlaceholderText(const QString& text);

    /** `WheelWhenFocused` at first. Where several may be on, the wheel never chooses. */
    WheelPolicy::Policy wheelPolicy() const;
    void setWheelPolicy(WheelPolicy::Policy policy);

    /** Wide enough for every choice, so that it stays when another one is chosen. */
    QSize sizeHint() const override;
    /** The same with a text of a few letters, which stands for the longer ones. */
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** As Choices::setCurrentIndex(). */
    void setCurrentIndex(int index);
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** Another choice is the current one, by whomever. */
    void currentIndexChanged(int index);
    /** Others are on, by whomever. Before currentIndexChanged(). */
    void checkedChanged();
    /** The user chose, also what was on already. */
    void chosen(int index);

    /** The user begins to change what is on. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user chose this one, which was not on; where several may be on, it may have been: ask
        isChoiceChecked(). */
    void valueEdited(int index);
    /** The edit is over. Not accepted: it was taken back. */
    void editFinished(bool accepted);

    /** Setters had an effect. */
    void countChanged(int count);
    void exclusiveChanged(bool exclusive);
    void placeholderTextChanged(const QString& text);
    void wheelPolicyChanged(Kestrel::UI::WheelPolicy::Policy policy);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    friend class ChoiceButtonPrivate;
    friend class ChoiceButtonAccessible;

    void paintPanel(QStylePainter& painter, const QStyleOptionComboBox& combo);
    ChoiceButtonPrivate& d() const;
};

} // namespace Kestrel::UI
