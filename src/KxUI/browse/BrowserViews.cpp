#include <KxUI/browse/BrowserViews_p.h>

#include <KxUI/browse/FileCellLayout_p.h>
#include <KxUI/browse/FileItemDelegate_p.h>
#include <KxUI/browse/ThumbnailLoader_p.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/RawName_p.h>

#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QListView>
#include <QMenu>
#include <QScrollBar>
#include <QTreeView>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int LeastNameWidth = 180;
constexpr int TightNameWidth = 110;
constexpr int TightWidth = 480; // of a list in which every pixel counts
constexpr std::size_t RememberedNames = 10000;
constexpr int HoldTime = 1000; // milliseconds

QScrollBar* barOf(const QAbstractItemView* view, bool isCompact) {
    return isCompact ? view->horizontalScrollBar() : view->verticalScrollBar();
}

// Whether an item lies before what is seen (-1), in it (0) or behind it, along the way of scrolling.
int sideOf(const QListView& list, int row, bool isCompact) {
    const QRect rect = list.visualRect(list.model()->index(row, 0));
    const QRect seen = list.viewport()->rect();
    if (!rect.isValid())
        return 1; // not laid out yet
    if (!isCompact)
        return rect.bottom() < seen.top() ? -1 : rect.top() > seen.bottom() ? 1 : 0;
    const bool isBefore = rect.right() < seen.left();
    const bool isBehind = rect.left() > seen.right();
    const int sign = list.isRightToLeft() ? -1 : 1;
    return isBefore ? -sign : isBehind ? sign : 0;
}

// The first row that is not before what is seen, or is behind it.
int firstRow(const QListView& list, bool isCompact, int limit) {
    int low = 0;
    int high = list.model()->rowCount();
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (sideOf(list, middle, isCompact) < limit)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

} // namespace

BrowserViews::BrowserViews(FileListModel* model, QWidget* parent)
    : QStackedWidget(parent)
    , m_model(model)
    , m_pictures(new ThumbnailLoader(model, this))
    , m_rowDelegate(new FileItemDelegate(model, m_pictures, this))
    , m_cellDelegate(new FileItemDelegate(model, m_pictures, this))
    , m_selection(new QItemSelectionModel(model, this)) {
    buildDetails(model);
    buildList();
    setFocusProxy(m_details);
    m_hold.setSingleShot(true);
    m_hold.setInterval(HoldTime);
    connect(&m_hold, &QTimer::timeout, this, &BrowserViews::holdOrder);
    connect(m_pictures, &ThumbnailLoader::arrived, m_list->viewport(),
            QOverload<>::of(&QWidget::update));
    for (const auto signal :
         {&QAbstractItemModel::rowsAboutToBeInserted, &QAbstractItemModel::rowsAboutToBeRemoved})
        connect(model, signal, this, &BrowserViews::dropAnchor);
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, &BrowserViews::dropAnchor);
    // The selection tells of rows that leave one by one, but not of those that are gone after all of
    // them were arranged anew.
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this,
            [this] { m_selectedBefore = selectedCount(); });
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] {
        if (selectedCount() != m_selectedBefore)
            Q_EMIT selectionShrunk();
    });
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this] { m_anchor = {}; });
    connect(model, &FileListModel::settled, this, &BrowserViews::tellRows);
    connect(model, &QAbstractItemModel::dataChanged, this, [this] {
        if (mode() == FileBrowser::Thumbnails)
            tellRows();
    });
}

BrowserViews::~BrowserViews() = default;

void BrowserViews::buildDetails(FileListModel* model) {
    m_details = new QTreeView(this);
    m_details->setModel(model);
    m_details->setUniformRowHeights(true);
    m_details->setRootIsDecorated(false);
    m_details->setItemsExpandable(false);
    m_details->setAllColumnsShowFocus(true);
    m_details->setAlternatingRowColors(true);
    m_details->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_details->sortByColumn(FileListModel::Name, Qt::AscendingOrder);
    m_details->setSortingEnabled(true);
    QHeaderView* const header = m_details->header();
    header->setStretchLastSection(false);
    header->setFirstSectionMovable(false);
    header->setMinimumSectionSize(40);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    header->hideSection(FileListModel::Type);
    connect(header, &QWidget::customContextMenuRequested, this, &BrowserViews::showColumnMenu);
    connect(header, &QHeaderView::sectionMoved, this, &BrowserViews::columnsChanged);
    connect(header, &QHeaderView::sortIndicatorChanged, this, &BrowserViews::columnsChanged);
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (m_isFitting)
            return;
        if (column == FileListModel::Name)
            m_nameWidth = width;
        m_isUsersWidth = true;
        fitNames();
        Q_EMIT columnsChanged();
    });
    shareSelection(m_details, m_rowDelegate);
}

void BrowserViews::buildList() {
    m_list = new QListView(this);
    m_list->setUniformItemSizes(true);
    m_list->setLayoutMode(QListView::Batched);
    m_list->setBatchSize(200);
    m_list->setWrapping(true);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setSelectionRectVisible(true);
    shareSelection(m_list, m_cellDelegate);
}

void BrowserViews::shareSelection(QAbstractItemView* view, FileItemDelegate* delegate) {
    addWidget(view);
    view->setItemDelegate(delegate);
    connect(delegate, &FileItemDelegate::renamed, this, &BrowserViews::renamed);
    connect(delegate, &FileItemDelegate::editing, this, [this](QWidget* editor) {
        m_editor = editor;
        holdOrder();
        connect(editor, &QObject::destroyed, this, &BrowserViews::holdOrder, Qt::QueuedConnection);
    });
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setDragEnabled(true);
    view->setDragDropMode(QAbstractItemView::DragOnly);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    view->setAccessibleName(FileBrowser::tr("Files"));
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    if (view->model()) {
        const QItemSelectionModel* const replaced = view->selectionModel();
        view->setSelectionModel(m_selection);
        delete replaced;
    }
    for (const QScrollBar* bar : {view->verticalScrollBar(), view->horizontalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, &BrowserViews::tellRows);
}

QAbstractItemView* BrowserViews::current() const {
    return static_cast<QAbstractItemView*>(currentWidget());
}

void BrowserViews::setMode(FileBrowser::ViewMode mode) {
    const bool hadFocus = current()->hasFocus();
    m_mode = mode;
    if (mode != FileBrowser::Details)
        m_cellDelegate->setLook(mode);
    m_anchor = {};
    if (mode == FileBrowser::Details) {
        // What is not seen costs nothing: the list forgets the rows.
        const QItemSelectionModel* const shared = m_list->selectionModel();
        m_list->setModel(nullptr);
        if (m_list->selectionModel() != shared)
            delete m_list->selectionModel();
        setCurrentWidget(m_details);
    } else {
        const bool isCompact = mode == FileBrowser::Compact;
        m_list->setFlow(isCompact ? QListView::TopToBottom : QListView::LeftToRight);
        m_list->setWrapping(true);
        m_list->setAlternatingRowColors(false);
        if (!m_list->model()) {
            m_list->setModel(m_model);
            const QItemSelectionModel* const replaced = m_list->selectionModel();
            m_list->setSelectionModel(m_selection);
            delete replaced;
        }
        setCurrentWidget(m_list);
    }
    setFocusProxy(current());
    if (hadFocus)
        current()->setFocus();
    if (m_selection->currentIndex().isValid())
        current()->scrollTo(m_selection->currentIndex());
    tellRows();
}

std::vector<std::pair<int, int>> BrowserViews::selectedRows() const {
    std::vector<std::pair<int, int>> rows;
    for (const QItemSelectionRange& range : m_selection->selection()) {
        if (range.isValid())
            rows.emplace_back(range.top(), range.bottom());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

int BrowserViews::selectedCount() const {
    int count = 0;
    for (const auto& [first, last] : selectedRows())
        count += last - first + 1;
    return count;
}

BrowserPlace BrowserViews::place() const {
    BrowserPlace place;
    const auto listing = m_model->listing();
    const auto nameOf = [&](int row) { return bytesOf(listing->item(m_model->itemOf(row)).name); };
    place.folder = listing->directory();
    for (const auto& [first, last] : selectedRows()) {
        for (int row = first; row <= last && place.selected.size() < RememberedNames; ++row)
            place.selected.push_back(nameOf(row));
    }
    if (m_selection->currentIndex().isValid())
        place.current = nameOf(m_selection->currentIndex().row());
    const auto [first, last] = visibleRows();
    if (first <= last && barOf(current(), mode() == FileBrowser::Compact)->value() > 0)
        place.top = nameOf(first);
    return place;
}

bool BrowserViews::restore(const BrowserPlace& place) {
    QItemSelection rows;
    bool isWhole = true;
    for (const QByteArray& name : place.selected) {
        const QModelIndex index = m_model->indexOf(name);
        isWhole = isWhole && index.isValid();
        if (index.isValid())
            rows.select(index, index);
    }
    const QModelIndex current = m_model->indexOf(place.current);
    if (current.isValid())
        m_selection->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    if (!rows.isEmpty())
        m_selection->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const QModelIndex top = m_model->indexOf(place.top);
    if (top.isValid())
        this->current()->scrollTo(top, QAbstractItemView::PositionAtTop);
    else if (current.isValid())
        this->current()->scrollTo(current, QAbstractItemView::EnsureVisible);
    return isWhole && (place.top.isEmpty() || top.isValid());
}

std::pair<int, int> BrowserViews::visibleRows() const {
    const int count = m_model->rowCount();
    if (count == 0)
        return {0, -1};
    if (mode() == FileBrowser::Details) {
        const QModelIndex last = m_details->indexAt({0, m_details->viewport()->height() - 1});
        const int first = m_details->indexAt({0, 0}).row();
        return {std::max(first, 0), first < 0 ? -1 : last.isValid() ? last.row() : count - 1};
    }
    const bool isCompact = mode() == FileBrowser::Compact;
    return {firstRow(*m_list, isCompact, 0), firstRow(*m_list, isCompact, 1) - 1};
}

void BrowserViews::tellRows() {
    if (const QModelIndex top = m_details->indexAt({0, 0}); top.isValid())
        m_rowHeight = m_details->visualRect(top).height();
    const auto [first, last] = visibleRows();
    m_model->setVisibleRows(first, last);
    if (mode() == FileBrowser::Thumbnails)
        m_pictures->setRows(first, last);
    else
        m_pictures->setRows(0, -1);
    Q_EMIT scrolled();
}

// Before rows change. At the very top the new ones are what one waits for.
void BrowserViews::dropAnchor() {
    const int scrolled = m_details->verticalScrollBar()->value();
    if (m_isWeighing || mode() != FileBrowser::Details || scrolled == 0 || m_rowHeight == 0)
        return;
    // By arithmetic: the view, which was told before, knows its rows no longer.
    m_anchor = {m_model->index(scrolled / m_rowHeight, 0), scrolled % m_rowHeight};
    m_isWeighing = true;
    // Once all the changes of this turn are there, and before anything is painted.
    QMetaObject::invokeMethod(this, &BrowserViews::weigh, Qt::QueuedConnection);
}

void BrowserViews::weigh() {
    m_isWeighing = false;
    const Anchor anchor = std::exchange(m_anchor, {});
    if (!anchor.index.isValid())
        return;
    m_details->indexAt({0, 0}); // lays the rows out
    m_details->verticalScrollBar()->setValue(anchor.index.row() * m_rowHeight + anchor.offset);
}

// Nothing moves away under the mouse, or while one goes from row to row or names one.
void BrowserViews::holdOrder() {
    if (!m_hold.isActive() && QGuiApplication::mouseButtons() != Qt::NoButton)
        m_hold.start();
    m_model->setHoldsOrder(m_hold.isActive() || m_editor);
}

QPixmap BrowserViews::picture() const {
    return current()->viewport()->grab();
}

void BrowserViews::remember(BrowserMemory& memory) const {
    const QHeaderView* const header = m_details->header();
    memory.view = mode();
    memory.sorted = header->sortIndicatorSection();
    memory.isDescending = header->sortIndicatorOrder() == Qt::DescendingOrder;
    memory.columns.clear();
    for (int at = 0; at < header->count(); ++at) {
        const int column = header->logicalIndex(at);
        const bool isShown = !header->isSectionHidden(column);
        // What is hidden forgets its width, as the header does.
        const int width = column == FileListModel::Name ? m_nameWidth
                          : isShown                     ? header->sectionSize(column)
                                                        : 0;
        memory.columns.push_back({column, width, isShown});
    }
}

void BrowserViews::recall(const BrowserMemory& memory) {
    QHeaderView* const header = m_details->header();
    int at = 0;
    for (const BrowserMemory::Column& each : memory.columns) {
        header->moveSection(header->visualIndex(each.column), at++);
        header->setSectionHidden(each.column, !each.isShown);
        if (each.column == FileListModel::Name)
            m_nameWidth = each.width;
        else if (each.width > 0)
            header->resizeSection(each.column, each.width);
    }
    m_details->sortByColumn(memory.sorted,
                            memory.isDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
    fitNames();
}

/** Widths of the columns until the user gives them others: of what they hold as a rule, or, in a
    narrow pane, of what they cannot do without. */
void BrowserViews::fitColumns() {
    QHeaderView* const header = m_details->header();
    const QFontMetrics metrics(m_details->font());
    struct Widest {
        const char* text;
        const char* tight;
    };
    const Widest widest[] = {{"", ""},
                             {"1001-10000,10", "1001-10000"},
                             {"Missing 00", "Missing"},
                             {"\u2248 000.0 MB", "\u2248 000.0 MB"},
                             {"Yesterday 00:00 xx", "00/00/00 00:00"},
                             {"OpenEXR image, sequence", "OpenEXR image"}};
    const bool isTight = m_details->viewport()->width() < TightWidth;
    const int margins = (isTight ? 2 : 4) * FileCellLayout::Margin;
    m_isFitting = true;
    for (int column = FileListModel::Frames; column <= FileListModel::Type; ++column) {
        const char* const text = isTight ? widest[column].tight : widest[column].text;
        if (!header->isSectionHidden(column))
            header->resizeSection(column,
                                  metrics.horizontalAdvance(QString::fromUtf8(text)) + margins);
    }
    m_isFitting = false;
}

void BrowserViews::fitNames() {
    if (!m_isUsersWidth)
        fitColumns();
    QHeaderView* const header = m_details->header();
    int others = 0;
    for (int column = FileListModel::Frames; column < FileListModel::ColumnCount; ++column)
        others += header->sectionSize(column);
    const int rest = m_details->viewport()->width() - others;
    m_isFitting = true;
    const bool isTight = m_details->viewport()->width() < TightWidth;
    const int least = isTight ? TightNameWidth : LeastNameWidth;
    header->resizeSection(FileListModel::Name, std::max({least, m_nameWidth, rest}));
    m_isFitting = false;
}

void BrowserViews::showColumnMenu(const QPoint& at) {
    QHeaderView* const header = m_details->header();
    auto* const menu = new QMenu(header);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int column = FileListModel::Frames; column < FileListModel::ColumnCount; ++column) {
        QAction* const action =
            menu->addAction(m_model->headerData(column, Qt::Horizontal).toString());
        action->setCheckable(true);
        action->setChecked(!header->isSectionHidden(column));
        connect(action, &QAction::toggled, this,
                [this, column](bool isShown) { setColumnShown(column, isShown); });
    }
    menu->popup(header->mapToGlobal(at));
}

void BrowserViews::setColumnShown(int column, bool shown) {
    m_isFitting = true;
    m_details->header()->setSectionHidden(column, !shown);
    m_isFitting = false;
    fitNames();
    Q_EMIT columnsChanged();
}

bool BrowserViews::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress) {
        m_hold.start();
        holdOrder();
    }
    if (event->type() == QEvent::Resize && watched == current()->viewport()) {
        if (watched == m_details->viewport())
            fitNames();
        // After the view itself has taken its new size.
        QMetaObject::invokeMethod(this, &BrowserViews::tellRows, Qt::QueuedConnection);
    }
    return QStackedWidget::eventFilter(watched, event);
}

} // namespace Kestrel::UI
