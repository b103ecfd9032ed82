#pragma once

#include <QJsonObject>
#include <QMap>
#include <QPoint>
#include <QVariantMap>
#include <QWidget>

namespace Kestrel::UI {
class ChoiceButton;
class ScopeModel;
class ScopeView;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

/** A scope with the menu that it is chosen by. The scope is made when the cell is shown first, and
    each kind comes back as it was left. */
class ScopeCell : public QWidget {
    Q_OBJECT

public:
    /** @param model  borrowed; outlives the cell */
    ScopeCell(UI::ScopeModel* model, const QString& kind, QWidget* parent = nullptr);

    /** The id of the kind that is chosen. */
    QString kind() const;
    /** Ignores what no kind has. */
    void setKind(const QString& id);

    /** The scope; null until the cell is shown. */
    UI::ScopeView* view() const { return m_view; }

    /** The kind and the settings of the scopes that were shown here. */
    QJsonObject saveState() const;
    void restoreState(const QJsonObject& state);

signals:
    /** The user asks to see a pixel of the full frame. */
    void pixelRequested(const QPoint& pixel);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void makeView();
    void keepSettings();

    UI::ScopeModel* m_model;
    UI::ChoiceButton* m_choice;
    UI::ScopeView* m_view = nullptr;
    /** The kind of the view. */
    QString m_kind;
    /** By kind, of those that are not shown. */
    QMap<QString, QVariantMap> m_settings;
};

} // namespace Kestrel::Workbench
