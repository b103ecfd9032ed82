#include <KxUI/browse/PathProbe_p.h>

#include <KxUI/browse/PathText_p.h>
#include <KxUI/files/FileNames.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

// Looks for a frame of a sequence, and ends the reading at the first one.
class FrameSearch : public Platform::ReadProgress {
public:
    FrameSearch(FileNames::Pattern pattern, Ticket& ticket)
        : m_pattern(std::move(pattern))
        , m_ticket(ticket) {}

    bool block(const Platform::Listing& soFar) override {
        m_ticket.tick();
        for (; !m_isFound && m_next < soFar.entries.size(); ++m_next)
            m_isFound = isFrame(soFar.entries[m_next].view());
        return !m_isFound && !m_ticket.isCancelled();
    }

    bool isFound() const { return m_isFound; }

private:
    bool isFrame(std::string_view name) const {
        const std::size_t ends = m_pattern.before.size() + m_pattern.after.size();
        if (name.size() < ends + static_cast<std::size_t>(std::max(1, m_pattern.digits)) ||
            name.substr(0, m_pattern.before.size()) != m_pattern.before ||
            name.substr(name.size() - m_pattern.after.size()) != m_pattern.after)
            return false;
        const std::string_view number = name.substr(m_pattern.before.size(), name.size() - ends);
        return std::all_of(number.begin(), number.end(),
                           [](char c) { return c >= '0' && c <= '9'; });
    }

    FileNames::Pattern m_pattern;
    Ticket& m_ticket;
    std::size_t m_next = 0;
    bool m_isFound = false;
};

PathFound foundBy(int error) {
    switch (Platform::failureOf(error)) {
    case Platform::Failure::None:
    case Platform::Failure::NotFound:
    case Platform::Failure::NotADirectory:
        return {PathFound::Nothing, 0};
    case Platform::Failure::Denied:
        return {PathFound::Denied, error};
    case Platform::Failure::Unreachable:
        return {PathFound::NoAnswer, error};
    default:
        return {PathFound::Failed, error};
    }
}

} // namespace

PathFound PathProbe::look(const QByteArray& path, Ticket& ticket) {
    Platform::Status status;
    if (Platform::queryStatus(Platform::toUtf8(viewOf(path)), status))
        return {status.isDirectory() ? PathFound::Folder : PathFound::File, 0};
    ticket.tick();
    if (ticket.isCancelled())
        return {};
    Platform::DirectoryHandle directory;
    // Why there is no status, which opening it as a folder fails by, too.
    if (const PathFound found = foundBy(directory.open(Platform::toUtf8(viewOf(path))));
        found.kind != PathFound::Nothing)
        return found;
    ticket.tick();
    const QByteArray name = PathText::nameOf(path);
    const auto pattern = FileNames::patternOf(viewOf(name));
    if (!pattern || ticket.isCancelled())
        return {};
    const QByteArray folder = PathText::parentOf(path);
    if (const int error = directory.open(Platform::toUtf8(viewOf(folder))); error != 0)
        return foundBy(error);
    FrameSearch search(*pattern, ticket);
    Platform::Listing listing;
    const int error = Platform::readDirectory(directory, listing, search);
    if (!search.isFound())
        search.block(listing);
    return search.isFound() ? PathFound{PathFound::File, 0} : foundBy(error);
}

PathProbe::Look& PathProbe::looker() {
    static Look look = &PathProbe::look;
    return look;
}

PathProbe::PathProbe(QObject* parent)
    : QObject(parent)
    , m_box(std::make_shared<Mailbox<News>>(this)) {
    m_deadline.setParent(this);
    m_deadline.setObjectName(QStringLiteral("deadline"));
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { tell({PathFound::NoAnswer, 0}); });
}

PathProbe::~PathProbe() {
    cancel();
    m_box->close();
}

void PathProbe::ask(const QByteArray& path, int milliseconds, Answer answer) {
    cancel();
    m_answer = std::move(answer);
    m_deadline.start(milliseconds);
    const int question = m_question;
    m_ticket = WorkerPool::instance().post(
        WorkerPool::Lane::Status, Platform::toUtf8(viewOf(PathText::parentOf(path))),
        [box = m_box, question, path, look = looker()](Ticket& ticket) {
            box->put({question, look(path, ticket)});
        });
    if (!m_ticket) // nobody is left to ask; an answer never comes before ask() is over
        m_deadline.start(0);
}

void PathProbe::cancel() {
    ++m_question;
    m_deadline.stop();
    m_answer = nullptr;
    if (m_ticket)
        m_ticket->cancelled = true;
    m_ticket.reset();
}

bool PathProbe::event(QEvent* event) {
    if (event->type() != MailboxBase::eventType())
        return QObject::event(event);
    if (const auto news = m_box->take(); news && news->question == m_question)
        tell(news->found);
    return true;
}

void PathProbe::tell(const PathFound& found) {
    const Answer answer = m_answer; // who hears it may ask again, or delete this
    cancel();
    if (answer)
        answer(found);
}

} // namespace Kestrel::UI
