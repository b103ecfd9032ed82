#include <KxUI/browse/PathRemapTable.h>

#include <KxUI/browse/PathRemapTable_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/kit/Flush_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QSaveFile>
#include <QSettings>
#include <QVBoxLayout>

namespace Kestrel::UI {
namespace {

const QString group = QStringLiteral("PathRemap");

std::string folderOf(const QString& fileName) {
    return QFile::encodeName(QFileInfo(fileName).absolutePath()).toStdString();
}

QByteArray bytesOf(const std::string& text) {
    return QByteArray::fromStdString(text);
}

} // namespace

PathRemapTable::PathRemapTable(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this)) {
    qRegisterMetaType<std::vector<PathRule>>();
    d->makeView();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(d->makeButtons());
    column->addWidget(d->view, 1);
    column->addLayout(d->makeTryLine());
    setFocusProxy(d->view);
    d->showTried();
    d->showSelection();
}

PathRemapTable::~PathRemapTable() {
    d->box->close();
    d->model->setUndoStack(nullptr);
}

PathRemapModel* PathRemapTable::model() const {
    return d->model;
}

QTableView* PathRemapTable::view() const {
    return d->view;
}

std::vector<PathRule> PathRemapTable::rules() const {
    return d->model->rules();
}

void PathRemapTable::setRules(const std::vector<PathRule>& rules) {
    d->model->setRules(rules);
}

QUndoStack* PathRemapTable::undoStack() const {
    return d->model->undoStack() ? d->model->undoStack() : d->ownStack;
}

void PathRemapTable::setUndoStack(QUndoStack* stack) {
    KXUI_INTERFACE_THREAD(this);
    d->model->setUndoStack(stack ? stack : d->ownStack);
}

QString PathRemapTable::tryPath() const {
    return d->model->tryPath();
}

void PathRemapTable::setTryPath(const QString& path) {
    d->model->setTryPath(path);
}

std::vector<PathRule> PathRemapTable::load(QSettings& settings) {
    std::vector<PathRule> rules;
    const int size = settings.beginReadArray(group);
    for (int i = 0; i < size && i < 4096; ++i) {
        settings.setArrayIndex(i);
        const auto bytes = [&](const char* key) {
            return settings.value(QLatin1String(key)).toByteArray().toStdString();
        };
        PathRule rule;
        rule.isEnabled = settings.value(QStringLiteral("on"), true).toBool();
        rule.fromStyle = bytes("style") == "windows" ? PathStyle::Windows : PathStyle::Posix;
        rule.from = bytes("from");
        rule.to = bytes("to");
        rule.note = bytes("note");
        rules.push_back(std::move(rule));
    }
    settings.endArray();
    return rules;
}

void PathRemapTable::store(QSettings& settings, const std::vector<PathRule>& rules) {
    settings.remove(group);
    settings.beginWriteArray(group, static_cast<int>(rules.size()));
    for (std::size_t i = 0; i < rules.size(); ++i) {
        settings.setArrayIndex(static_cast<int>(i));
        settings.setValue(QStringLiteral("on"), rules[i].isEnabled);
        settings.setValue(QStringLiteral("style"), rules[i].fromStyle == PathStyle::Windows
                                                       ? QStringLiteral("windows")
                                                       : QStringLiteral("posix"));
        settings.setValue(QStringLiteral("from"), bytesOf(rules[i].from));
        settings.setValue(QStringLiteral("to"), bytesOf(rules[i].to));
        settings.setValue(QStringLiteral("note"), bytesOf(rules[i].note));
    }
    settings.endArray();
}

void PathRemapTable::importFile(const QString& fileName) {
    KXUI_INTERFACE_THREAD(this);
    const auto job = [fileName, box = d->box](Ticket&) {
        QFile file(fileName);
        Private::FileNews news;
        news.isImport = true;
        if (file.open(QFile::ReadOnly))
            news.bytes = file.read(1024 * 1024 + 1);
        if (file.error() != QFile::NoError)
            news.error = file.errorString();
        box->put(std::move(news));
    };
    if (!WorkerPool::instance().post(WorkerPool::Lane::Files, folderOf(fileName), job))
        Q_EMIT fileFinished(tr("Too many folders do not answer."));
}

void PathRemapTable::exportFile(const QString& fileName) {
    KXUI_INTERFACE_THREAD(this);
    QString error;
    const QByteArray bytes = PathRemapModel::toJson(rules(), &error);
    if (!error.isEmpty()) {
        Q_EMIT fileFinished(error);
        return;
    }
    const auto job = [fileName, bytes, box = d->box](Ticket&) {
        QSaveFile file(fileName);
        Private::FileNews news;
        if (!file.open(QFile::WriteOnly) || file.write(bytes) != bytes.size() || !flushed(&file) ||
            !file.commit())
            news.error = file.errorString();
        box->put(std::move(news));
    };
    if (!WorkerPool::instance().post(WorkerPool::Lane::Files, folderOf(fileName), job))
        Q_EMIT fileFinished(tr("Too many folders do not answer."));
}

void PathRemapTable::addRule() {
    KXUI_INTERFACE_THREAD(this);
    const QModelIndex cell = d->model->index(d->model->rowCount() - 1, PathRemapModel::From);
    d->view->setFocus();
    d->view->setCurrentIndex(cell);
    d->view->scrollTo(cell);
    d->view->edit(cell);
}

void PathRemapTable::removeSelected() {
    KXUI_INTERFACE_THREAD(this);
    const std::vector<int> rows = d->selectedRows();
    if (rows.empty())
        return;
    std::vector<PathRule> rules = this->rules();
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        rules.erase(rules.begin() + *row);
    const QPointer<PathRemapTable> alive(this);
    d->model->editRules(rules, rows.size() == 1 ? tr("Remove Rule") : tr("Remove Rules"));
    if (alive)
        d->view->setCurrentIndex(d->model->index(rows.front(), PathRemapModel::From));
}

void PathRemapTable::moveSelectedUp() {
    d->moveSelected(-1);
}

void PathRemapTable::moveSelectedDown() {
    d->moveSelected(1);
}

bool PathRemapTable::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QWidget::event(event);
    if (const auto news = d->box->take())
        d->take(*news);
    return true;
}

} // namespace Kestrel::UI
