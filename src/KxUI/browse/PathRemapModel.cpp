#include <KxUI/browse/PathRemapModel.h>

#include <KxUI/browse/PathRemapModel_p.h>
#include <KxUI/browse/Xbel_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QMimeData>
#include <QUndoCommand>
#include <QUrl>

#include <algorithm>

namespace Kestrel::UI {
namespace {

std::string bytesOf(const QString& text) {
    return encodedName(text).toStdString();
}

/** One edit of the rules. */
class RulesCommand : public QUndoCommand {
public:
    RulesCommand(PathRemapModel* model, const std::vector<PathRule>& rules, const QString& text)
        : QUndoCommand(text)
        , m_model(model)
        , m_before(model->rules())
        , m_after(rules) {}

    void undo() override { set(m_before); }
    void redo() override { set(m_after); }

private:
    void set(const std::vector<PathRule>& rules) {
        if (m_model)
            m_model->setRules(rules);
    }

    QPointer<PathRemapModel> m_model;
    std::vector<PathRule> m_before;
    std::vector<PathRule> m_after;
};

} // namespace

PathRemapModel::PathRemapModel(QObject* parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>(this)) {}

PathRemapModel::~PathRemapModel() = default;

std::vector<PathRule> PathRemapModel::rules() const {
    return d->rules;
}

void PathRemapModel::setRules(const std::vector<PathRule>& rules) {
    KXUI_INTERFACE_THREAD(this);
    std::vector<PathRule> wanted = rules;
    if (wanted.size() > Private::Most)
        wanted.resize(Private::Most);
    d->show(wanted);
}

PathRemap PathRemapModel::remap() const {
    return d->remap;
}

QString PathRemapModel::tryPath() const {
    return decodedName(Kestrel::UI::bytesOf(d->tried));
}

void PathRemapModel::setTryPath(const QString& path) {
    KXUI_INTERFACE_THREAD(this);
    const std::string tried = bytesOf(path);
    if (tried == d->tried)
        return;
    d->tried = tried;
    const QPointer<PathRemapModel> alive(this);
    d->rework();
    if (alive)
        Q_EMIT tryPathChanged(path);
}

QString PathRemapModel::triedResult() const {
    return decodedName(Kestrel::UI::bytesOf(d->result.path));
}

int PathRemapModel::matchingRule() const {
    return d->result.rule;
}

QUndoStack* PathRemapModel::undoStack() const {
    return d->stack;
}

void PathRemapModel::setUndoStack(QUndoStack* stack) {
    d->stack = stack;
}

void PathRemapModel::editRules(const std::vector<PathRule>& rules, const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    const QPointer<PathRemapModel> alive(this);
    Q_EMIT editStarted();
    if (!alive)
        return;
    if (d->stack)
        d->stack->push(new RulesCommand(this, rules, text));
    else
        setRules(rules);
    if (alive)
        Q_EMIT rulesEdited();
    if (alive)
        Q_EMIT editFinished(true);
}

PathStyle PathRemapModel::guessedStyle(const QString& path) {
    const bool hasDrive = path.size() >= 2 && path.at(1) == QLatin1Char(':') &&
                          path.at(0).isLetter() && path.at(0).unicode() < 0x80;
    return hasDrive || path.startsWith(QLatin1String("\\\\")) ? PathStyle::Windows
                                                              : PathStyle::Posix;
}

int PathRemapModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : d->count() + 1;
}

int PathRemapModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant PathRemapModel::data(const QModelIndex& index, int role) const {
    return index.isValid() && index.row() <= d->count()
               ? d->dataOf(index.row(), index.column(), role)
               : QVariant();
}

bool PathRemapModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    KXUI_INTERFACE_THREAD(this);
    if (!index.isValid() || !(flags(index) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    if (role == Qt::CheckStateRole && index.column() == On && index.row() < d->count()) {
        std::vector<PathRule> rules = d->rules;
        PathRule& rule = rules[static_cast<std::size_t>(index.row())];
        rule.isEnabled = value.toInt() == Qt::Checked;
        editRules(rules, rule.isEnabled ? tr("Use Rule") : tr("Do Not Use Rule"));
        return true;
    }
    const bool isPath = index.column() == From || index.column() == To;
    return role == Qt::EditRole && isPath &&
           d->setPath(index.row(), index.column(), value.toString().trimmed());
}

QVariant PathRemapModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (orientation == Qt::Vertical)
        return section < d->count() ? QVariant(section + 1) : QVariant(QStringLiteral("+"));
    switch (section) {
    case On:
        return tr("On");
    case From:
        return tr("From");
    case To:
        return tr("To");
    case Result:
        return tr("Result");
    case Status:
        return tr("Status");
    default:
        return {};
    }
}

Qt::ItemFlags PathRemapModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == On && index.row() < d->count())
        flags |= Qt::ItemIsUserCheckable;
    if (index.column() == From || index.column() == To)
        flags |= Qt::ItemIsEditable;
    if (index.column() == To)
        flags |= Qt::ItemIsDropEnabled;
    return flags;
}

bool PathRemapModel::removeRows(int row, int count, const QModelIndex& parent) {
    KXUI_INTERFACE_THREAD(this);
    if (parent.isValid() || row < 0 || count <= 0 || row + count > d->count())
        return false;
    std::vector<PathRule> rules = d->rules;
    rules.erase(rules.begin() + row, rules.begin() + row + count);
    editRules(rules, count == 1 ? tr("Remove Rule") : tr("Remove Rules"));
    return true;
}

QStringList PathRemapModel::mimeTypes() const {
    return {QStringLiteral("text/uri-list")};
}

bool PathRemapModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int,
                                     const QModelIndex& parent) const {
    return parent.column() == To && data->hasUrls();
}

bool PathRemapModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                  const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const QByteArray url = data->urls().constFirst().toEncoded();
    const auto path = Xbel::pathOf(viewOf(url));
    if (!path || Xbel::isAddress(*path))
        return false;
    return setData(parent, decodedName(Kestrel::UI::bytesOf(*path)));
}

} // namespace Kestrel::UI
