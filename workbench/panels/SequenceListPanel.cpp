#include "panels/SequenceListPanel.h"

#include "media/Paths.h"
#include "panels/FolderModel.h"

#include <KxUI/values/SearchField.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::Workbench {

SequenceListPanel::SequenceListPanel(QWidget* parent)
    : QWidget(parent)
    , m_model(new FolderModel(this))
    , m_path(new QComboBox)
    , m_pages(new QStackedWidget)
    , m_search(new UI::SearchField)
    , m_view(new QTreeView)
    , m_message(new QLabel)
    , m_summary(new QLabel) {
    setObjectName(QStringLiteral("SequenceListPanel"));

    auto* up = new QToolButton;
    up->setIcon(style()->standardIcon(QStyle::SP_FileDialogToParent));
    up->setToolTip(tr("Up one folder (Backspace)"));
    up->setAccessibleName(tr("Up one folder"));
    up->setAutoRaise(true);
    connect(up, &QToolButton::clicked, this, &SequenceListPanel::goUp);

    m_path->setEditable(true);
    m_path->setInsertPolicy(QComboBox::NoInsert);
    m_path->setAccessibleName(tr("Folder"));
    m_path->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_path->setMinimumWidth(80);
    connect(m_path, QOverload<int>::of(&QComboBox::activated), this,
            [this] { openFolder(m_path->currentData().toByteArray()); });
    connect(m_path->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        const std::string path = absolutePath(m_path->currentText().toStdString());
        if (pathExists(path) && !isFolder(path))
            openFile(QByteArray::fromStdString(path));
        else
            openFolder(QByteArray::fromStdString(path));
    });

    m_view->setModel(m_model);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAllColumnsShowFocus(true);
    m_view->setAlternatingRowColors(true);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setAccessibleName(tr("Sequences"));
    m_view->setTextElideMode(Qt::ElideMiddle);
    m_view->setFrameShape(QFrame::NoFrame);
    QHeaderView* header = m_view->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(FolderModel::NameColumn, QHeaderView::Stretch);
    // Looks at the rows in view only, so that a long list costs no more than a short one.
    header->setResizeContentsPrecision(0);
    for (const int column :
         {FolderModel::RangeColumn, FolderModel::MissingColumn, FolderModel::SizeColumn})
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    m_view->installEventFilter(this);
    setFocusProxy(m_view);
    connect(m_view, &QTreeView::activated, this, &SequenceListPanel::activate);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &SequenceListPanel::showPlaceOfMatch);
    using Search = UI::SearchField;
    m_search->setPlaceholderText(tr("Search names"));
    connect(m_search, &Search::searchChanged, this, &SequenceListPanel::search);
    connect(m_search, &Search::nextWanted, this, [this] { goToMatch(1); });
    connect(m_search, &Search::previousWanted, this, [this] { goToMatch(-1); });
    connect(m_search, &Search::leaveWanted, m_view, [this] { m_view->setFocus(); });

    m_message->setAlignment(Qt::AlignCenter);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setMargin(16);
    m_message->setFocusPolicy(Qt::StrongFocus);
    m_message->installEventFilter(this);
    m_pages->addWidget(m_view);
    m_pages->addWidget(m_message);
    m_summary->setContentsMargins(8, 2, 8, 4);

    auto* top = new QHBoxLayout;
    top->setContentsMargins(4, 4, 4, 4);
    top->setSpacing(4);
    top->addWidget(up);
    top->addWidget(m_path, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* searching = new QHBoxLayout;
    searching->setContentsMargins(4, 0, 4, 4);
    searching->addWidget(m_search);
    layout->addLayout(top);
    layout->addLayout(searching);
    layout->addWidget(m_pages, 1);
    layout->addWidget(m_summary);
    connect(m_model, &FolderModel::completed, this, &SequenceListPanel::showSummary);
}

void SequenceListPanel::openFolder(const QByteArray& folder) {
    m_search->clear(); // what was searched for was in the other folder
    m_pattern = UI::SearchPattern();
    m_matches.clear();
    m_search->setMatches(0, -1);
    m_model->setFolder(folder);
    offerFolder(folder);
    m_path->setCurrentIndex(m_path->findData(folder));
    const QString problem = m_model->problem();
    m_message->setText(problem);
    m_pages->setCurrentWidget(problem.isEmpty() ? static_cast<QWidget*>(m_view) : m_message);
    if (m_model->rowCount() > 0)
        m_view->setCurrentIndex(m_model->index(0, 0));
    showSummary();
}

void SequenceListPanel::offerFolder(const QByteArray& folder) {
    if (m_path->findData(folder) < 0)
        m_path->addItem(QString::fromUtf8(folder), folder);
}

void SequenceListPanel::openFile(const QByteArray& file) {
    openFolder(QByteArray::fromStdString(parentFolder(file.toStdString())));
    const std::string name = fileNameOf(file.toStdString());
    const int row = m_model->rowOfFile(name);
    if (row < 0)
        return;
    const Sequence sequence = m_model->sequence(row);
    for (const auto& member : sequence.members()) {
        if (member.second == name)
            choose(row, member.first);
    }
}

bool SequenceListPanel::chooseFirst() {
    int first = -1;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->isFolder(row))
            continue;
        if (first < 0)
            first = row;
        if (m_model->isSequence(row)) {
            first = row;
            break;
        }
    }
    if (first >= 0)
        choose(first, Base::InvalidTime);
    return first >= 0;
}

void SequenceListPanel::reload() {
    const int row = m_view->currentIndex().row();
    openFolder(m_model->folder());
    if (row >= 0 && row < m_model->rowCount())
        m_view->setCurrentIndex(m_model->index(row, 0));
}

bool SequenceListPanel::eventFilter(QObject* watched, QEvent* event) {
    // In the list these keys move through it, rather than along the timeline as elsewhere.
    if (event->type() == QEvent::ShortcutOverride && watched == m_view) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Home || key == Qt::Key_End)
            event->accept();
    }
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Backspace) {
        goUp();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void SequenceListPanel::activate(const QModelIndex& index) {
    const int row = index.row();
    // A link to a folder is known as one only after its status has come in.
    const bool folder =
        m_model->isFolder(row) ||
        (!m_model->isSequence(row) && Workbench::isFolder(m_model->path(row).toStdString()));
    if (folder)
        openFolder(m_model->path(row));
    else
        choose(row, Base::InvalidTime);
}

void SequenceListPanel::choose(int row, Base::Time at) {
    m_view->setCurrentIndex(m_model->index(row, 0));
    const Sequence sequence = m_model->sequence(row);
    if (!sequence.isEmpty())
        emit sequenceChosen(sequence, at);
}

void SequenceListPanel::goUp() {
    const QByteArray left = m_model->folder();
    openFolder(QByteArray::fromStdString(parentFolder(left.toStdString())));
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->path(row) == left) {
            m_view->setCurrentIndex(m_model->index(row, 0));
            break;
        }
    }
}

void SequenceListPanel::search(const QString& words) {
    m_pattern = UI::SearchPattern(words);
    m_matches.clear();
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QString name = m_model->index(row, FolderModel::NameColumn).data().toString();
        const bool matches = m_pattern.matches(name);
        m_view->setRowHidden(row, {}, !matches);
        if (matches && !m_pattern.isEmpty())
            m_matches.push_back(row);
    }
    const int current = m_view->currentIndex().row();
    if (!m_matches.empty() && !std::binary_search(m_matches.begin(), m_matches.end(), current))
        m_view->setCurrentIndex(m_model->index(m_matches.front(), 0));
    showPlaceOfMatch();
}

void SequenceListPanel::goToMatch(int step) {
    if (m_matches.empty())
        return;
    const auto at =
        std::lower_bound(m_matches.begin(), m_matches.end(), m_view->currentIndex().row());
    const auto count = std::ptrdiff_t(m_matches.size());
    const std::ptrdiff_t next = (at - m_matches.begin() + step + count) % count;
    m_view->setCurrentIndex(m_model->index(m_matches[std::size_t(next)], 0));
}

void SequenceListPanel::showPlaceOfMatch() {
    const auto at = std::find(m_matches.begin(), m_matches.end(), m_view->currentIndex().row());
    const int place = at == m_matches.end() ? 0 : int(at - m_matches.begin()) + 1;
    m_search->setMatches(place, m_pattern.isEmpty() ? -1 : int(m_matches.size()));
}

void SequenceListPanel::showSummary() {
    std::uint64_t bytes = 0;
    std::int64_t files = 0;
    int folders = 0;
    int sequences = 0;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        folders += int(m_model->isFolder(row));
        sequences += int(m_model->isSequence(row));
        if (const auto& status = m_model->status(row); status && !m_model->isFolder(row)) {
            bytes += status->size;
            files += status->files;
        }
    }
    QStringList parts;
    const auto add = [&parts](std::int64_t count, const QString& one, const QString& many) {
        if (count > 0)
            parts << (count == 1 ? one : many.arg(count));
    };
    add(folders, tr("1 folder"), tr("%1 folders"));
    add(sequences, tr("1 sequence"), tr("%1 sequences"));
    if (m_model->isComplete() && files > 0) {
        add(files, tr("1 file"), tr("%1 files"));
        parts << QLocale().formattedDataSize(qint64(bytes), 1);
    }
    m_summary->setText(parts.join(tr(", ")));
}

} // namespace Kestrel::Workbench
