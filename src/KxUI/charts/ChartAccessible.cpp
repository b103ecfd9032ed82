#include <KxUI/charts/ChartAccessible_p.h>

#include <KxUI/charts/ChartLegend.h>
#include <KxUI/charts/Chart_p.h>

#include <QPointer>

#include <algorithm>

namespace Kestrel::UI {
namespace {

QString wordsOf(const ChartReadout& readout) {
    QStringList words;
    for (const ChartReadout::Item& item : readout.items)
        words += item.name.isEmpty() ? item.text : item.name + QStringLiteral(", ") + item.text;
    const QString values = words.join(QStringLiteral("; "));
    return readout.xText.isEmpty() ? values : Chart::tr("%1 at %2").arg(values, readout.xText);
}

// A series, or a slice, which is no widget.
class ItemAccessible : public QAccessibleInterface {
public:
    ItemAccessible(Chart* chart, int index)
        : m_chart(chart)
        , m_index(std::size_t(index)) {}

    bool isValid() const override { return m_chart && m_index < items().size(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(m_chart);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text kind) const override {
        if (!isValid())
            return {};
        const ChartItem item = items()[m_index];
        return kind == QAccessible::Name    ? item.name
               : kind == QAccessible::Value ? item.value
                                            : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        const QAccessibleInterface* const above = isValid() ? parent() : nullptr;
        return above ? above->rect() : QRect();
    }
    QAccessible::Role role() const override { return QAccessible::Graphic; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.readOnly = true;
        state.invisible = isValid() && !items()[m_index].isVisible;
        state.invalid = !isValid();
        return state;
    }

private:
    std::vector<ChartItem> items() const { return ChartPrivate::of(m_chart)->items(); }

    const QPointer<Chart> m_chart;
    const std::size_t m_index;
};

} // namespace

ChartAccessible::ChartAccessible(Chart* chart)
    : QAccessibleWidget(chart, QAccessible::Chart) {}

ChartAccessible::~ChartAccessible() {
    for (const QAccessible::Id id : m_children)
        QAccessible::deleteAccessibleInterface(id);
}

void ChartAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory([](const QString& name, QObject* object) {
            // The most derived class that is known is asked for last.
            auto* chart = name == QLatin1String("Kestrel::UI::Chart") ? qobject_cast<Chart*>(object)
                                                                      : nullptr;
            return static_cast<QAccessibleInterface*>(chart ? new ChartAccessible(chart) : nullptr);
        });
        return true;
    }();
    Q_UNUSED(installed)
}

void ChartAccessible::tell(Chart* chart) {
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(chart, wordsOf(ChartPrivate::of(chart)->readout));
    QAccessible::updateAccessibility(&event);
}

QString ChartAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return wordsOf(ChartPrivate::of(chart())->readout);
    const QString text = QAccessibleWidget::text(kind);
    if (kind != QAccessible::Name || !text.isEmpty())
        return text;
    return chart()->title().isEmpty() ? Chart::tr("Chart") : chart()->title();
}

// The items, then the legend.
int ChartAccessible::childCount() const {
    return int(ChartPrivate::of(chart())->items().size()) + 1;
}

QAccessibleInterface* ChartAccessible::child(int index) const {
    const int items = childCount() - 1;
    if (index < 0 || index > items)
        return nullptr;
    if (index == items)
        return QAccessible::queryAccessibleInterface(chart()->legend());
    while (int(m_children.size()) <= index)
        m_children.push_back(QAccessible::registerAccessibleInterface(
            new ItemAccessible(chart(), int(m_children.size()))));
    return QAccessible::accessibleInterface(m_children[std::size_t(index)]);
}

int ChartAccessible::indexOfChild(const QAccessibleInterface* child) const {
    for (int i = 0; i < childCount(); ++i)
        if (this->child(i) == child)
            return i;
    return -1;
}

} // namespace Kestrel::UI
