#pragma once

#include <QAccessibleWidget>
#include <QPointer>

#include <map>
#include <utility>
#include <vector>

namespace Kestrel::UI {

class CurveView;
class CurveViewPrivate;
struct CurveKnot;

/** A curve view as assistive technology sees it: a chart whose items are the knots that can be
    edited: all of them while they are few, else the selected ones. */
class CurveViewAccessible : public QAccessibleWidget {
public:
    /** With more knots than this, those that are not selected are told by their number alone. */
    static constexpr int MostChildren = 200;

    explicit CurveViewAccessible(CurveView* view);
    ~CurveViewAccessible() override;

    /** Another knot is selected; the selected one is somewhere else. */
    static void tellSelection(CurveView* view);
    static void tellValue(CurveView* view);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    /** The name is "Curves" unless the host gives another one, the value what is selected. */
    QString text(QAccessible::Text kind) const override;

private:
    CurveView* view() const;
    std::vector<CurveKnot> knots() const;
    QAccessibleInterface* childOf(const CurveKnot& knot) const;

    mutable std::map<std::pair<int, int>, QAccessible::Id> m_children;
};

/** One of the knots. Its value is its y, which can be set: one edit. */
class CurveKnotAccessible : public QAccessibleInterface,
                            public QAccessibleValueInterface,
                            public QAccessibleActionInterface {
public:
    CurveKnotAccessible(CurveView* view, int curve, int knot);

    int curve() const { return m_curve; }
    int knot() const { return m_knot; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    /** The name is "Knot 3 of 8", with several curves after theirs; the value "x 0.25  y 0.4". */
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

    /** It can be selected. */
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    void moveTo(CurveViewPrivate& view, double y);

    const QPointer<CurveView> m_view;
    const int m_curve;
    const int m_knot;
};

} // namespace Kestrel::UI
