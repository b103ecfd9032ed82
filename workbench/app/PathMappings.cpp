#include "app/PathMappings.h"

#include <KxUI/browse/PathRemapTable.h>
#include <KxUI/settings/AppSettings.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace Kestrel::Workbench {

PathMappings::PathMappings(QObject* parent)
    : QObject(parent) {}

QByteArray PathMappings::mapped(const QByteArray& path) const {
    return QByteArray::fromStdString(remap().map(path.toStdString()).path);
}

void PathMappings::remember() {
    m_remembers = true;
    UI::AppSettings settings;
    m_rules = UI::PathRemapTable::load(settings);
    emit changed();
}

void PathMappings::edit(QWidget* window) {
    auto* dialog = new QDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Path Mappings"));
    dialog->setObjectName(QStringLiteral("PathMappings"));
    auto* about = new QLabel(tr("Where folders of other machines are found on this one: for paths "
                                "that are typed, copied, or come with a favourite."));
    about->setWordWrap(true);
    auto* table = new UI::PathRemapTable;
    table->setRules(m_rules);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    connect(dialog, &QDialog::accepted, this, [this, table] { set(table->rules()); });
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(about);
    layout->addWidget(table, 1);
    layout->addWidget(buttons);
    dialog->resize(760, 360);
    table->setFocus();
    dialog->open();
}

void PathMappings::set(const std::vector<UI::PathRule>& rules) {
    m_rules = rules;
    if (m_remembers) {
        UI::AppSettings settings;
        UI::PathRemapTable::store(settings, m_rules);
    }
    emit changed();
}

} // namespace Kestrel::Workbench
