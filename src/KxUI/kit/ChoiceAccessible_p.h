#pragma once

#include <QAccessibleWidget>
#include <QPointer>

#include <vector>

namespace Kestrel::UI {

class ChoiceBar;
class ChoiceButton;

/** A choice bar as assistive technology sees it: a group of radio buttons, or of check boxes where
    any number may be on. Those in the menu are among them. */
class ChoiceBarAccessible : public QAccessibleWidget {
public:
    explicit ChoiceBarAccessible(ChoiceBar* bar);
    ~ChoiceBarAccessible() override;

    /** Makes Qt create this interface for choice bars and classes derived from them. */
    static void install();
    /** Others are on; and the keyboard is at another one. */
    static void tellChecked(ChoiceBar* bar);
    static void tellFocus(ChoiceBar* bar, int index);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    ChoiceBar* bar() const;
    void send(int index, QAccessible::Event type) const;

    mutable std::vector<QAccessible::Id> m_children;
};

/** One of the choices of a bar. */
class ChoiceAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    ChoiceAccessible(ChoiceBar* bar, int index);

    int index() const { return m_index; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    /** The name is its text, the description its place: "2 of 4". */
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    const QPointer<ChoiceBar> m_bar;
    const int m_index;
};

/** A choice button: a combo box whose value is what is on. */
class ChoiceButtonAccessible : public QAccessibleWidget {
public:
    explicit ChoiceButtonAccessible(ChoiceButton* button);

    /** Makes Qt create this interface for choice buttons and classes derived from them. */
    static void install();
    /** Another one is on. */
    static void tellValue(ChoiceButton* button);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    /** Opens the menu, or chooses the one above or below. */
    void doAction(const QString& name) override;

private:
    ChoiceButton* button() const;
};

} // namespace Kestrel::UI
