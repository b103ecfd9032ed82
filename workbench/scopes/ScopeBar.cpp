#include "scopes/ScopeBar.h"

#include "play/ScopeFeed.h"

#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/IconFactory.h>

#include <QActionGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace Kestrel::Workbench {

namespace {

constexpr int margin = 6;
constexpr int gap = 8;

} // namespace

ScopeBar::ScopeBar(ScopeFeed* feed, QWidget* parent)
    : QWidget(parent)
    , m_feed(feed)
    , m_source(new UI::ChoiceBar)
    , m_row(new QHBoxLayout(this))
    , m_description(new QLabel)
    , m_menu(new QMenu(this)) {
    makeSource();
    m_description->setTextFormat(Qt::PlainText);
    m_description->setAccessibleName(tr("What is counted"));
    // It says most where there is room, and must not keep the pane from being made narrow.
    m_description->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* button = new QToolButton;
    button->setIcon(UI::IconFactory::icon(QStringLiteral(":/ui/qrc/images/PanelMenu.png")));
    button->setToolTip(tr("Units, matrix, held result, region"));
    button->setAccessibleName(tr("Scope settings"));
    button->setAutoRaise(true);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(m_menu);
    m_row->setContentsMargins(margin, margin / 2, margin, margin / 2);
    m_row->setSpacing(gap);
    m_row->addWidget(m_source);
    m_row->addWidget(m_description, 1);
    m_row->addWidget(button);
    connect(m_menu, &QMenu::aboutToShow, this, &ScopeBar::fillMenu);
    connect(feed, &ScopeFeed::settingsChanged, this, &ScopeBar::showSettings);
    showSettings();
}

void ScopeBar::makeSource() {
    m_source->setAccessibleName(tr("Values counted"));
    m_source->addChoice(tr("File"));
    m_source->addChoice(tr("Screen"));
    m_source->setChoiceToolTip(ScopeFeed::File, tr("The values of the file, before the grade"));
    m_source->setChoiceToolTip(ScopeFeed::Screen, tr("The graded values, as a screen gets them"));
    m_source->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    connect(m_source, &UI::ChoiceBar::valueEdited, this,
            [this](int index) { m_feed->setSource(ScopeFeed::Source(index)); });
}

void ScopeBar::addWidget(QWidget* widget) {
    m_row->insertWidget(1, widget);
}

void ScopeBar::showSettings() {
    m_source->setCurrentIndex(m_feed->source());
    m_description->setText(m_feed->description());
    m_description->setToolTip(m_description->text());
}

void ScopeBar::fillMenu() {
    m_menu->clear();
    emit menuFilling(m_menu);
    addMatrices(m_menu->addMenu(tr("&Luma and Chroma")));
    QAction* full = m_menu->addAction(tr("&Full-range Codes"));
    full->setCheckable(true);
    full->setChecked(m_feed->hasFullRange());
    connect(full, &QAction::toggled, m_feed, &ScopeFeed::setFullRange);
    m_menu->addSeparator();
    UI::ScopeModel* model = m_feed->model();
    const bool holds = model->reference() != nullptr;
    QAction* hold = m_menu->addAction(holds ? tr("Let &Held Result Go") : tr("&Hold Result"));
    hold->setEnabled(holds || model->result()->parts != 0);
    connect(hold, &QAction::triggered, model,
            holds ? &UI::ScopeModel::clearReference : &UI::ScopeModel::hold);
    m_menu->addSeparator();
    QAction* edit = m_menu->addAction(tr("&Region by Keys"));
    edit->setEnabled(!m_feed->frameSize().isEmpty());
    connect(edit, &QAction::triggered, m_feed, &ScopeFeed::editRegion);
    QAction* whole = m_menu->addAction(tr("&Whole Picture"));
    whole->setEnabled(!model->region().isNull());
    connect(whole, &QAction::triggered, model, [model] { model->setRegion({}); });
    QAction* clear = m_menu->addAction(tr("&Clear Selection"));
    clear->setEnabled(model->selection().kind != UI::ScopeSelection::Kind::Nothing);
    connect(clear, &QAction::triggered, model, [model] { model->setSelection({}); });
}

void ScopeBar::addMatrices(QMenu* menu) {
    auto* group = new QActionGroup(menu);
    for (int i = 0; i < ScopeFeed::MatrixCount; ++i) {
        const auto matrix = ScopeFeed::Matrix(i);
        QAction* action = group->addAction(menu->addAction(ScopeFeed::matrixName(matrix)));
        action->setCheckable(true);
        action->setChecked(matrix == m_feed->matrix());
        connect(action, &QAction::triggered, m_feed, [this, matrix] { m_feed->setMatrix(matrix); });
    }
}

} // namespace Kestrel::Workbench
