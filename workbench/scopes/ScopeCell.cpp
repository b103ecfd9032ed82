#include "scopes/ScopeCell.h"

#include "scopes/ScopeKinds.h"

#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/scopes/ScopeView.h>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

const QString kindKey = QStringLiteral("scope");
const QString settingsKey = QStringLiteral("settings");

} // namespace

ScopeCell::ScopeCell(UI::ScopeModel* model, const QString& kind, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_choice(new UI::ChoiceButton) {
    m_choice->setAutoRaise(true);
    m_choice->setAccessibleName(tr("Scope"));
    for (const ScopeKind& each : scopeKinds())
        m_choice->addChoice(each.translatedTitle(), {}, QLatin1String(each.id));
    m_choice->setCurrentIndex(std::max(0, scopeKindIndex(kind)));
    auto* line = new QHBoxLayout;
    line->addWidget(m_choice);
    line->addStretch(1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(line);
    connect(m_choice, &UI::ChoiceButton::currentIndexChanged, this, [this] {
        if (m_view)
            makeView();
    });
}

QString ScopeCell::kind() const {
    return m_choice->currentData().toString();
}

void ScopeCell::setKind(const QString& id) {
    const int index = scopeKindIndex(id);
    if (index >= 0)
        m_choice->setCurrentIndex(index);
}

void ScopeCell::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!m_view)
        makeView();
}

void ScopeCell::makeView() {
    keepSettings();
    const bool hadFocus = m_view && m_view->hasFocus();
    delete m_view;
    m_kind = kind();
    m_view = scopeKinds().at(std::size_t(scopeKindIndex(m_kind))).make();
    m_view->setAccessibleName(m_choice->choiceText(m_choice->currentIndex()));
    m_view->restoreState(m_settings.value(m_kind));
    m_view->setModel(m_model);
    connect(m_view, &UI::ScopeView::pixelRequested, this, &ScopeCell::pixelRequested);
    layout()->addWidget(m_view);
    static_cast<QVBoxLayout*>(layout())->setStretchFactor(m_view, 1);
    if (hadFocus)
        m_view->setFocus();
}

void ScopeCell::keepSettings() {
    if (m_view)
        m_settings[m_kind] = m_view->saveState();
}

QJsonObject ScopeCell::saveState() const {
    QJsonObject settings;
    for (auto each = m_settings.begin(); each != m_settings.end(); ++each)
        settings[each.key()] = QJsonObject::fromVariantMap(each.value());
    if (m_view)
        settings[m_kind] = QJsonObject::fromVariantMap(m_view->saveState());
    return {{kindKey, kind()}, {settingsKey, settings}};
}

void ScopeCell::restoreState(const QJsonObject& state) {
    const QJsonObject settings = state.value(settingsKey).toObject();
    for (auto each = settings.begin(); each != settings.end(); ++each)
        m_settings[each.key()] = each.value().toObject().toVariantMap();
    if (m_view && m_settings.contains(m_kind))
        m_view->restoreState(m_settings.value(m_kind));
    setKind(state.value(kindKey).toString());
}

} // namespace Kestrel::Workbench
