#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/PathRemapTable_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QToolButton>

#include <algorithm>

namespace Kestrel::UI {

PathRemapTable::Private::Private(PathRemapTable* table)
    : q(table)
    , model(new PathRemapModel(table))
    , ownStack(new QUndoStack(table))
    , box(std::make_shared<Mailbox<FileNews>>(table)) {
    model->setUndoStack(ownStack);
    QObject::connect(model, &PathRemapModel::editStarted, q, &PathRemapTable::editStarted);
    QObject::connect(model, &PathRemapModel::rulesEdited, q,
                     [this] { Q_EMIT q->valueEdited(model->rules()); });
    QObject::connect(model, &PathRemapModel::editFinished, q, &PathRemapTable::editFinished);
    QObject::connect(model, &PathRemapModel::tryPathChanged, q, [this](const QString& path) {
        if (tryLine->text() != path)
            tryLine->setText(path);
        showTried();
        Q_EMIT q->tryPathChanged(path);
    });
    QObject::connect(model, &PathRemapModel::rulesChanged, q, [this] {
        showTried();
        showSelection();
    });
}

void PathRemapTable::Private::makeView() {
    view = new PathRuleView(q);
    view->setModel(model);
    QHeaderView* const header = view->horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionResizeMode(PathRemapModel::On, QHeaderView::ResizeToContents);
    for (const int column : {PathRemapModel::From, PathRemapModel::To, PathRemapModel::Result})
        header->setSectionResizeMode(column, QHeaderView::Stretch);
    // Signs and tool tips say it; for readers it is there.
    view->setColumnHidden(PathRemapModel::Status, true);
    QObject::connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, q,
                     [this] { showSelection(); });
}

QToolButton* PathRemapTable::Private::addButton(QHBoxLayout& row, const QString& text,
                                                const QString& tip) {
    auto* const button = new QToolButton(q);
    button->setText(text);
    button->setToolTip(tip);
    row.addWidget(button);
    return button;
}

QHBoxLayout* PathRemapTable::Private::makeButtons() {
    auto* const row = new QHBoxLayout;
    const auto connected = [&](QToolButton* button, auto function) {
        QObject::connect(button, &QToolButton::clicked, q, function);
        return button;
    };
    connected(addButton(*row, tr("Add"), tr("Begins a new rule")), &PathRemapTable::addRule);
    removeButton = connected(addButton(*row, tr("Remove"), tr("Removes the selected rules (Del)")),
                             &PathRemapTable::removeSelected);
    upButton = connected(addButton(*row, tr("Up"), tr("Earlier rules come first (Alt+Up)")),
                         &PathRemapTable::moveSelectedUp);
    downButton = connected(addButton(*row, tr("Down"), tr("Later rules come last (Alt+Down)")),
                           &PathRemapTable::moveSelectedDown);
    row->addStretch(1);
    message = new QLabel(q);
    message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(message, 4);
    connected(addButton(*row, tr("Import\u2026"), tr("Adds the rules of a file")),
              [this] { askForFile(true); });
    connected(addButton(*row, tr("Export\u2026"), tr("Writes the rules to a file")),
              [this] { askForFile(false); });
    return row;
}

QHBoxLayout* PathRemapTable::Private::makeTryLine() {
    auto* const row = new QHBoxLayout;
    auto* const label = new QLabel(tr("&Try a path:"), q);
    tryLine = new QLineEdit(q);
    tryLine->setClearButtonEnabled(true);
    label->setBuddy(tryLine);
    tried = new QLabel(q);
    tried->setTextInteractionFlags(Qt::TextSelectableByMouse);
    tried->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(label);
    row->addWidget(tryLine, 1);
    row->addWidget(tried, 1);
    QObject::connect(tryLine, &QLineEdit::textChanged, q, &PathRemapTable::setTryPath);
    return row;
}

// Not waited for: the table goes on while the question is open.
void PathRemapTable::Private::askForFile(bool isImport) {
    const auto chosen = [this, isImport](const std::vector<FileChooserDialog::Choice>& choices) {
        const QString name = decodedName(choices.front().path);
        if (isImport)
            q->importFile(name);
        else
            q->exportFile(name);
    };
    auto* const dialog = FileChooserDialog::open(
        isImport ? FileChooserDialog::OpenFile : FileChooserDialog::SaveFile, q,
        QStringLiteral("path-rules"), {tr("Path rules (*.json)")}, chosen);
    dialog->setWindowTitle(isImport ? tr("Import Rules") : tr("Export Rules"));
    dialog->setAcceptsSequences(false);
    dialog->setFoldsSequences(false);
}

void PathRemapTable::Private::showTried() {
    if (!tried)
        return;
    QString text;
    if (!model->tryPath().isEmpty())
        text = model->matchingRule() < 0 ? tr("No rule matches.") : model->triedResult();
    tried->setText(text);
    tried->setToolTip(text);
}

void PathRemapTable::Private::showSelection() {
    if (!downButton)
        return;
    const std::vector<int> rows = selectedRows();
    const int last = model->rowCount() - 2;
    removeButton->setEnabled(!rows.empty());
    upButton->setEnabled(!rows.empty() && rows.front() > 0);
    downButton->setEnabled(!rows.empty() && rows.back() < last);
}

std::vector<int> PathRemapTable::Private::selectedRows() const {
    std::vector<int> rows;
    const QModelIndexList selected = view->selectionModel()->selectedRows();
    for (const QModelIndex& index : selected) {
        if (!index.data(PathRemapModel::NewRowRole).toBool())
            rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void PathRemapTable::Private::moveSelected(int by) {
    const std::vector<int> rows = selectedRows();
    std::vector<PathRule> rules = model->rules();
    if (rows.empty() || rows.front() + by < 0 || rows.back() + by >= static_cast<int>(rules.size()))
        return;
    const auto swap = [&](int row) {
        std::swap(rules[static_cast<std::size_t>(row)], rules[static_cast<std::size_t>(row + by)]);
    };
    if (by < 0)
        std::for_each(rows.begin(), rows.end(), swap);
    else
        std::for_each(rows.rbegin(), rows.rend(), swap);
    const int column = view->currentIndex().column();
    const int current = view->currentIndex().row() + by;
    const QPointer<PathRemapTable> alive(q);
    model->editRules(rules, rows.size() == 1 ? tr("Move Rule") : tr("Move Rules"));
    if (!alive)
        return;
    QItemSelection moved;
    for (const int row : rows)
        moved.select(model->index(row + by, 0), model->index(row + by, model->columnCount() - 1));
    view->selectionModel()->setCurrentIndex(model->index(current, column),
                                            QItemSelectionModel::NoUpdate);
    view->selectionModel()->select(moved, QItemSelectionModel::ClearAndSelect);
}

void PathRemapTable::Private::take(const FileNews& news) {
    QString error = news.error;
    const QPointer<PathRemapTable> alive(q);
    if (news.isImport && error.isEmpty()) {
        std::vector<PathRule> rules = model->rules();
        const std::size_t before = rules.size();
        for (PathRule& rule : PathRemapModel::fromJson(news.bytes, &error)) {
            const auto isSame = [&](const PathRule& other) {
                return other.from == rule.from && other.to == rule.to &&
                       other.fromStyle == rule.fromStyle;
            };
            if (std::none_of(rules.begin(), rules.end(), isSame))
                rules.push_back(std::move(rule));
        }
        if (rules.size() > before)
            model->editRules(rules, tr("Import Rules"));
    }
    if (!alive)
        return;
    message->setText(error);
    message->setToolTip(error);
    Q_EMIT q->fileFinished(error);
}

} // namespace Kestrel::UI
