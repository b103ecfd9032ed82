#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/FilePathEdit.h>
#include <KxUI/browse/PathRemapTable_p.h>
#include <KxUI/kit/OwnKeys_p.h>

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>

namespace Kestrel::UI {
namespace {

bool isMoveKey(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) &&
           (event.modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier;
}

void setInk(QStyleOptionViewItem& option, const QColor& ink) {
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        option.palette.setColor(group, QPalette::Text, ink);
}

} // namespace

PathRuleDelegate::PathRuleDelegate(QObject* parent)
    : QStyledItemDelegate(parent) {}

void PathRuleDelegate::initStyleOption(QStyleOptionViewItem* option,
                                       const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideMiddle;
    const bool isRule = !index.data(PathRemapModel::NewRowRole).toBool();
    if (index.column() == PathRemapModel::From &&
        !index.data(PathRemapModel::ProblemRole).toString().isEmpty()) {
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->icon = QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr,
                                                           option->widget);
    }
    const QModelIndex on = index.sibling(index.row(), PathRemapModel::On);
    if (isRule && on.data(Qt::CheckStateRole).toInt() != Qt::Checked)
        setInk(*option, option->palette.color(QPalette::Disabled, QPalette::Text));
    if (!isRule && index.column() == PathRemapModel::From && option->text.isEmpty()) {
        option->features |= QStyleOptionViewItem::HasDisplay;
        option->text = PathRemapModel::tr("New rule\u2026");
        setInk(*option, option->palette.color(QPalette::PlaceholderText));
    }
    if (index.data(PathRemapModel::MatchRole).toBool()) {
        QColor mark = option->palette.color(QPalette::Highlight);
        mark.setAlpha(60);
        option->backgroundBrush = mark;
    }
}

void PathRuleDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (!index.data(PathRemapModel::WindowsRole).toBool())
        return;
    const QString word = PathRemapModel::tr("Windows path");
    const QRect place = option.rect.adjusted(4, 0, -6, 0);
    const int text = option.fontMetrics.horizontalAdvance(index.data().toString());
    const int needed = text + option.fontMetrics.horizontalAdvance(word) + 40;
    if (needed > place.width())
        return; // the tool tip of the column says it, too
    const bool isSelected = option.state & QStyle::State_Selected;
    painter->save();
    painter->setPen(
        option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->setFont(option.font);
    painter->drawText(place, Qt::AlignVCenter | Qt::AlignRight, word);
    painter->restore();
}

// A source may be a path of another system; where it leads to is a folder that can be looked for.
QWidget* PathRuleDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
    if (index.column() != PathRemapModel::To)
        return QStyledItemDelegate::createEditor(parent, option, index);
    auto* const field = new FilePathEdit(parent);
    field->setKind(FilePathEdit::Folder);
    field->setPurpose(QStringLiteral("path-rule"));
    field->setFrame(false);
    field->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    // A folder that was chosen or dropped is complete.
    connect(field, &FilePathEdit::editFinished, this, [this, field](bool accepted) {
        if (!accepted || field->hasFocus())
            return;
        auto* const self = const_cast<PathRuleDelegate*>(this);
        const QPointer<FilePathEdit> alive(field);
        Q_EMIT self->commitData(field);
        if (alive)
            Q_EMIT self->closeEditor(field);
    });
    return field;
}

bool PathRuleDelegate::eventFilter(QObject* watched, QEvent* event) {
    // The chooser of the field has the focus, and brings it back.
    if (event->type() == QEvent::FocusOut && watched->findChild<FileChooserDialog*>())
        return false;
    return QStyledItemDelegate::eventFilter(watched, event);
}

PathRuleView::PathRuleView(PathRemapTable* table)
    : QTableView(table)
    , m_table(table) {
    setItemDelegate(new PathRuleDelegate(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked | AnyKeyPressed);
    setWordWrap(false);
    setAcceptDrops(true);
    setDragDropMode(DropOnly);
    setDragDropOverwriteMode(true);
    setTabKeyNavigation(false); // the way out by Tab; editors go on by it
    setShowGrid(false);
    setAlternatingRowColors(true);
    verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    verticalHeader()->setDefaultSectionSize(std::max(24, fontMetrics().height() + 8));
    setAccessibleName(PathRemapTable::tr("Path rules"));
}

bool PathRuleView::isOwnKey(const QKeyEvent& event) const {
    if (state() == EditingState)
        return false;
    return Kestrel::UI::isOwnKey(event,
                                 {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2, Qt::Key_Delete}) ||
           isMoveKey(event) || event.matches(QKeySequence::Undo) ||
           event.matches(QKeySequence::Redo) || event.matches(QKeySequence::Copy) ||
           event.matches(QKeySequence::Paste);
}

bool PathRuleView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

void PathRuleView::keyPressEvent(QKeyEvent* event) {
    if (isOwnKey(*event) && press(*event))
        event->accept();
    else
        QTableView::keyPressEvent(event);
}

bool PathRuleView::press(const QKeyEvent& event) {
    if (isMoveKey(event)) {
        if (event.key() == Qt::Key_Up)
            m_table->moveSelectedUp();
        else
            m_table->moveSelectedDown();
    } else if (event.matches(QKeySequence::Undo)) {
        m_table->undoStack()->undo();
    } else if (event.matches(QKeySequence::Redo)) {
        m_table->undoStack()->redo();
    } else if (event.matches(QKeySequence::Copy)) {
        copy();
    } else if (event.matches(QKeySequence::Paste)) {
        paste();
    } else if (event.key() == Qt::Key_Delete) {
        m_table->removeSelected();
    } else {
        const QModelIndex index = currentIndex();
        const bool isPath =
            index.column() == PathRemapModel::From || index.column() == PathRemapModel::To;
        const QModelIndex cell = isPath ? index : index.sibling(index.row(), PathRemapModel::From);
        setCurrentIndex(cell);
        edit(cell);
    }
    return true;
}

QModelIndex PathRuleView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const QModelIndex index = currentIndex();
    const bool isNext = action == MoveNext;
    if (!index.isValid() || (!isNext && action != MovePrevious))
        return QTableView::moveCursor(action, modifiers);
    // From cell to cell that can be typed into.
    const bool isFrom = index.column() <= PathRemapModel::From;
    const int row = index.row() + (isNext && !isFrom ? 1 : !isNext && isFrom ? -1 : 0);
    const int last = model()->rowCount() - 1;
    if (row < 0 || row > last)
        return {};
    return model()->index(row, isFrom ? PathRemapModel::To : PathRemapModel::From);
}

void PathRuleView::copy() const {
    QString text;
    const std::vector<PathRule> rules = m_table->rules();
    const QModelIndexList rows = selectionModel()->selectedRows();
    for (const QModelIndex& row : rows) {
        if (row.data(PathRemapModel::NewRowRole).toBool())
            continue;
        text += row.sibling(row.row(), PathRemapModel::From).data().toString() + QLatin1Char('\t') +
                row.sibling(row.row(), PathRemapModel::To).data().toString() + QLatin1Char('\n');
    }
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void PathRuleView::paste() {
    std::vector<PathRule> rules = m_table->rules();
    const std::size_t before = rules.size();
    for (const QString& line : QGuiApplication::clipboard()->text().split(QLatin1Char('\n'))) {
        const QString from = line.section(QLatin1Char('\t'), 0, 0).trimmed();
        const QString to = line.section(QLatin1Char('\t'), 1, 1).trimmed();
        if (from.isEmpty() || to.isEmpty())
            continue;
        PathRule rule;
        rule.fromStyle = PathRemapModel::guessedStyle(from);
        rule.from = from.toStdString();
        rule.to = to.toStdString();
        rules.push_back(std::move(rule));
    }
    if (rules.size() > before)
        m_table->model()->editRules(rules, PathRemapTable::tr("Paste Rules"));
}

} // namespace Kestrel::UI
