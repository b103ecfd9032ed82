#include <KxUI/browse/PathCompleter_p.h>

#include <KxUI/files/FileGatherer.h>

#include <QKeyEvent>
#include <QLineEdit>

#include <optional>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int AskAfter = 150; // milliseconds without a key
constexpr int SilentAfter = 500;

using Kind = FileListing::Kind;

std::optional<Completion::Key> keyOf(const QKeyEvent& event) {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_Space && held == Qt::ControlModifier)
        return Completion::Key::Open;
    if (held != Qt::NoModifier)
        return {};
    switch (event.key()) {
    case Qt::Key_Tab:
        return Completion::Key::Tab;
    case Qt::Key_Down:
        return Completion::Key::Down;
    case Qt::Key_Up:
        return Completion::Key::Up;
    case Qt::Key_PageDown:
        return Completion::Key::PageDown;
    case Qt::Key_PageUp:
        return Completion::Key::PageUp;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Completion::Key::Return;
    case Qt::Key_Escape:
        return Completion::Key::Escape;
    default:
        return {};
    }
}

} // namespace

PathCompleter::PathCompleter(QLineEdit* field, Resolve resolve, Put put)
    : QObject(field)
    , m_field(field)
    , m_resolve(std::move(resolve))
    , m_put(std::move(put)) {
    m_askTimer.setSingleShot(true);
    m_askTimer.setInterval(AskAfter);
    m_silenceTimer.setSingleShot(true);
    m_silenceTimer.setInterval(SilentAfter);
    connect(&m_askTimer, &QTimer::timeout, this, &PathCompleter::ask);
    connect(&m_silenceTimer, &QTimer::timeout, this, [this] {
        takeListing(); // what there is of a large folder
        m_completion.giveUp();
    });
    connect(field, &QLineEdit::textEdited, this, &PathCompleter::edited);
    field->installEventFilter(this);
}

PathCompleter::~PathCompleter() = default;

void PathCompleter::setEnabled(bool enabled) {
    m_isEnabled = enabled;
    if (!enabled)
        leave();
}

void PathCompleter::setTakesFiles(bool takes, bool foldsSequences, const QStringList& patterns) {
    leave();
    m_completion.setTakesFiles(takes);
    m_foldsSequences = foldsSequences;
    m_patterns = patterns;
}

void PathCompleter::close() {
    m_completion.close();
    showList();
}

void PathCompleter::leave() {
    m_askTimer.stop();
    m_silenceTimer.stop();
    m_completion.forgetNames();
    m_asked.clear();
    m_listing.reset();
    if (m_gatherer) // which may be telling something at the moment
        m_gatherer.release()->deleteLater();
    close();
}

void PathCompleter::edited() {
    if (!m_isEnabled || m_isPutting)
        return;
    m_askTimer.stop();
    m_silenceTimer.stop();
    if (m_completion.edited(m_field->text(), m_field->cursorPosition()) && !m_completion.hasNames())
        m_askTimer.start();
    showList();
}

void PathCompleter::ask() {
    m_askTimer.stop();
    const QByteArray folder = m_resolve(m_completion.folderText());
    if (folder.isEmpty())
        return;
    m_asked = folder;
    if (!m_gatherer) {
        m_gatherer = std::make_unique<FileGatherer>();
        m_gatherer->setShowsHidden(true);
        m_gatherer->setFoldsSequences(m_completion.takesFiles() && m_foldsSequences);
        m_gatherer->setDirectoriesOnly(!m_completion.takesFiles());
        m_gatherer->setNamePatterns(m_patterns);
        connect(m_gatherer.get(), &FileGatherer::listingChanged, this, [this] {
            if (!m_gatherer->isGathering())
                takeListing();
        });
        connect(m_gatherer.get(), &FileGatherer::finished, this, &PathCompleter::takeListing);
    }
    m_silenceTimer.start();
    const bool isKnown = m_gatherer->directory() == folder && !m_gatherer->isGathering() &&
                         m_gatherer->listing()->state() == FileListing::State::Complete;
    if (isKnown)
        takeListing();
    else
        m_gatherer->gather(folder);
}

void PathCompleter::takeListing() {
    if (!m_gatherer || m_asked.isEmpty() || m_gatherer->directory() != m_asked ||
        !m_field->hasFocus())
        return;
    // Some of a folder will do where the rest keeps us waiting, but nothing is said of none.
    const auto listing = m_gatherer->listing();
    if (listing->directory() != m_asked ||
        (listing->state() == FileListing::State::Reading && listing->size() == 0))
        return;
    if (listing->state() == FileListing::State::Complete)
        m_silenceTimer.stop();
    m_listing = listing;
    const QString folder = m_completion.folderText();
    apply(m_completion.setNames(names()), folder);
}

std::vector<CompletionName> PathCompleter::names() const {
    std::vector<CompletionName> names;
    names.reserve(static_cast<std::size_t>(m_listing->size()));
    for (int i = 0; i < m_listing->size(); ++i) {
        const FileListing::Item& item = m_listing->item(i);
        names.push_back({item.name, item.kind == Kind::Directory, item.kind == Kind::Unknown});
    }
    return names;
}

void PathCompleter::apply(const Completion::Outcome& outcome, const QString& folder) {
    const QPointer<PathCompleter> alive(this);
    if (outcome.hasText) {
        m_isPutting = true;
        m_put(outcome, folder);
        if (!alive)
            return;
        m_isPutting = false;
    }
    if (outcome.wantsNames)
        ask();
    showList();
}

void PathCompleter::showList() {
    if (!m_completion.isOpen()) {
        if (m_popup)
            m_popup->hide();
        return;
    }
    if (!m_popup) {
        m_popup = new CompletionPopup(m_field);
        m_popup->onLeft = [this] { close(); };
        m_popup->onChosen = [this](int row) {
            const QString folder = m_completion.folderText();
            apply(m_completion.choose(row), folder);
        };
    }
    m_popup->show(m_completion.matches(), m_completion.current());
}

// Before it is a shortcut of the window.
bool PathCompleter::ownsKey(const QKeyEvent& event) const {
    const auto key = keyOf(event);
    return m_isEnabled && key && (isOpen() || *key == Completion::Key::Open);
}

bool PathCompleter::takesKey(const QKeyEvent& event) {
    const auto key = keyOf(event);
    if (!key || !m_isEnabled || m_field->isReadOnly())
        return false;
    const QString folder = m_completion.folderText();
    const Completion::Outcome outcome = m_completion.press(*key);
    const QPointer<PathCompleter> alive(this);
    apply(outcome, folder);
    return !alive || outcome.isTaken;
}

bool PathCompleter::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_field)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusIn:
        m_completion.reset(m_field->text(), m_field->cursorPosition());
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
        leave();
        break;
    case QEvent::ShortcutOverride:
        if (ownsKey(static_cast<const QKeyEvent&>(*event)))
            event->accept();
        break;
    case QEvent::KeyPress:
        return takesKey(static_cast<const QKeyEvent&>(*event));
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace Kestrel::UI
