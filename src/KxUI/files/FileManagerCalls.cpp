#include <KxUI/files/FileManager.h>

#include <KxUI/files/FileInfo.h>
#include <KxUI/files/FileNames.h>
#include <KxUI/files/FrameRenaming_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/Reply_p.h>
#include <KxUI/files/platform/FileCalls_p.h>

#include <algorithm>
#include <limits>
#include <optional>

namespace Kestrel::UI {
namespace {

using Kind = FileManager::PathStatus::Kind;
using PathStatus = FileManager::PathStatus;
using Platform::Failure;

// As the calls of the platform take it.
std::string callPath(const QByteArray& path) {
    return Platform::cleanPath(Platform::absolutePath(Platform::toUtf8(viewOf(path))));
}

std::string parentOf(const std::string& path) {
    return Platform::cleanPath(path + "/..");
}

PathStatus unknown(int error) {
    PathStatus status;
    status.error = error;
    return status;
}

Kind kindOf(const Platform::EntryStatus& status) {
    constexpr std::uint32_t typeBits = 0xF000;
    constexpr std::uint32_t regular = 0x8000;
    if (status.isBrokenLink)
        return Kind::Missing;
    if (status.isDirectory())
        return Kind::Directory;
    return (status.mode & typeBits) == regular ? Kind::File : Kind::Other;
}

PathStatus statusOf(const std::string& path, Ticket& ticket) {
    PathStatus told;
    Platform::EntryStatus status;
    const int error = Platform::queryPath(path, status);
    ticket.tick();
    if (Platform::failureOf(error) == Failure::NotFound) {
        told.kind = Kind::Missing;
        told.isWritable = Platform::queryAccess(parentOf(path)).write;
        return told;
    }
    if (error != 0)
        return unknown(error);
    const Platform::Access access = Platform::queryAccess(path);
    told.kind = kindOf(status);
    told.isReadable = access.read;
    told.isWritable = access.write;
    told.isLink = status.isLink;
    told.size = status.size;
    told.modified = status.time();
    return told;
}

// The way from the root to the folder above a path. Each step is a question of its own: one that
// does not answer holds up nothing that lies elsewhere.
class Descent : public std::enable_shared_from_this<Descent> {
public:
    using Box = std::shared_ptr<Mailbox<QByteArray>>;

    Descent(const std::string& path, Box box)
        : m_box(std::move(box)) {
        std::string below = path;
        for (std::string up = parentOf(below); up != below; up = parentOf(below)) {
            m_paths.push_back(up);
            below = std::move(up);
        }
        std::reverse(m_paths.begin(), m_paths.end());
    }

    void step() {
        const std::size_t reached = m_reached;
        if (reached == m_paths.size() || !post(m_paths[reached]))
            m_box->put(nearest());
    }

    /** As far as it has come. */
    QByteArray nearest() const {
        const std::size_t reached = m_reached;
        return reached == 0 ? QByteArray() : bytesOf(Platform::fromUtf8(m_paths[reached - 1]));
    }

private:
    bool post(const std::string& path) {
        const auto job = [self = shared_from_this(), path](Ticket&) {
            Platform::EntryStatus status;
            if (Platform::queryPath(path, status) == 0 && status.isDirectory()) {
                ++self->m_reached;
                self->step();
            } else {
                self->m_box->put(self->nearest());
            }
        };
        return WorkerPool::instance().post(WorkerPool::Lane::Names, path, job) != nullptr;
    }

    const Box m_box;
    std::vector<std::string> m_paths; // from the root
    std::atomic<std::size_t> m_reached{0};
};

void requestChange(const std::string& path, QObject* context, std::function<void(int)> done,
                   std::function<int()> change) {
    auto* const reply = new Reply<int>(
        context, [done = std::move(done)](const int& error) { done ? done(error) : void(); });
    const auto job = [box = reply->box(), change = std::move(change)](Ticket&) {
        box->put(change());
    };
    reply->post(path, job, FileManager::NobodyLeft);
}

// What the thread of a renaming and the one that asked for it share.
struct RenamingNews {
    std::size_t done = 0;
    std::size_t count = 0;
    std::optional<RenamingOutcome> outcome;
};

// Tells of the progress; the interface thread looks into it as often as it comes round.
class RenamingReply final : public QObject {
public:
    using Done = std::function<void(const FileManager::RenameResult&)>;
    using Progress = std::function<bool(int, int)>;

    RenamingReply(QObject* context, Done done, Progress progress)
        : QObject(context ? context : QCoreApplication::instance())
        , m_box(std::make_shared<Mailbox<RenamingNews>>(this))
        , m_done(std::move(done))
        , m_progress(std::move(progress)) {}

    ~RenamingReply() override {
        m_box->close();
        if (m_ticket)
            m_ticket->cancelled = true;
    }

    void start(const std::string& folder, std::function<std::vector<FileRenaming>()> files) {
        m_ticket = WorkerPool::instance().post(
            WorkerPool::Lane::Files, folder,
            [box = m_box, stops = m_stops, files = std::move(files)](Ticket& ticket) {
                run(*box, *stops, files(), ticket);
            });
        if (!m_ticket)
            fail(FileManager::NobodyLeft, {});
    }

    void fail(int error, const std::string& path) {
        m_box->put({0, 0, RenamingOutcome{error, path}});
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() != MailboxBase::eventType())
            return QObject::event(event);
        const auto news = m_box->take();
        if (news && news->outcome)
            finish(*news->outcome);
        else if (news && m_progress &&
                 !m_progress(static_cast<int>(news->done), static_cast<int>(news->count)))
            *m_stops = true;
        return true;
    }

private:
    static void run(Mailbox<RenamingNews>& box, const std::atomic<bool>& stops,
                    const std::vector<FileRenaming>& files, Ticket& ticket) {
        constexpr std::int64_t pace = 50000000;
        std::int64_t next = Ticket::now() + pace;
        RenamingNews news;
        news.count = files.size();
        news.outcome = renameFiles(files, [&](std::size_t done) {
            ticket.tick();
            if (const std::int64_t now = Ticket::now(); now >= next) {
                next = now + pace;
                box.put({done, files.size(), {}});
            }
            return !stops;
        });
        box.put(std::move(news));
    }

    void finish(const RenamingOutcome& outcome) {
        FileManager::RenameResult result;
        result.error = outcome.isStopped ? FileManager::Stopped : outcome.error;
        result.path = bytesOf(Platform::fromUtf8(outcome.path));
        result.renamed = static_cast<int>(outcome.renamed);
        result.stranded = static_cast<int>(outcome.stranded);
        m_box->close();
        deleteLater();
        // It may be the end of the context, and so of this object.
        if (const Done done = std::exchange(m_done, nullptr))
            done(result);
    }

    const std::shared_ptr<Mailbox<RenamingNews>> m_box;
    const std::shared_ptr<std::atomic<bool>> m_stops = std::make_shared<std::atomic<bool>>(false);
    Done m_done;
    Progress m_progress;
    std::shared_ptr<Ticket> m_ticket;
};

// By rising frames, or by falling ones where each goes to a higher one: its name is free then.
std::vector<FileRenaming> renamingsOf(const FileInfo& from, const FileNames::Pattern& to,
                                      int offset) {
    std::vector<FileRenaming> files;
    for (const Base::FrameRange& range : from.presentRanges()) {
        for (std::int64_t f = range.first; f <= range.last; f += std::max(range.step, 1)) {
            const auto frame = static_cast<std::int32_t>(f);
            files.push_back({callPath(from.rawFramePath(frame)),
                             Platform::toUtf8(FileNames::frameFile(to, frame + offset))});
        }
    }
    if (offset > 0)
        std::reverse(files.begin(), files.end());
    return files;
}

} // namespace

void FileManager::requestStatus(const QByteArray& path, int milliseconds, QObject* context,
                                std::function<void(const PathStatus&)> answered) {
    auto* const reply = new Reply<PathStatus>(context, std::move(answered));
    const std::string asked = callPath(path);
    reply->answerAfter(milliseconds, [] { return unknown(NoAnswer); });
    reply->post(
        asked, [asked, box = reply->box()](Ticket& ticket) { box->put(statusOf(asked, ticket)); },
        unknown(NobodyLeft));
}

void FileManager::requestNearestDirectory(const QByteArray& path, int milliseconds,
                                          QObject* context,
                                          std::function<void(const QByteArray&)> answered) {
    auto* const reply = new Reply<QByteArray>(context, std::move(answered));
    const auto descent = std::make_shared<Descent>(callPath(path), reply->box());
    reply->answerAfter(milliseconds, [descent] { return descent->nearest(); });
    descent->step();
}

void FileManager::makeDirectory(const QByteArray& path, QObject* context,
                                std::function<void(int)> done) {
    const std::string made = callPath(path);
    requestChange(made, context, std::move(done), [made] { return Platform::makeDirectory(made); });
}

void FileManager::rename(const QByteArray& from, const QByteArray& to, QObject* context,
                         std::function<void(int)> done) {
    const std::string source = callPath(from);
    const std::string target = callPath(to);
    requestChange(source, context, std::move(done), [source, target] {
        return source == target ? 0 : Platform::renameToNew(source, target);
    });
}

void FileManager::renameSequence(const FileInfo& from, const QByteArray& toFrameName,
                                 int frameOffset, QObject* context,
                                 std::function<void(const RenameResult&)> done,
                                 std::function<bool(int, int)> progress) {
    auto* const reply = new RenamingReply(context, std::move(done), std::move(progress));
    const std::string folder = parentOf(callPath(from.rawAbsoluteFilePath()));
    std::string to = Platform::toUtf8(viewOf(toFrameName));
    if (!Platform::isAbsolute(to))
        to = Platform::joinedPath(folder, viewOf(toFrameName));
    to = Platform::cleanPath(to);
    const auto pattern = FileNames::patternOf(Platform::fromUtf8(to));
    const std::int64_t lowest = std::int64_t{from.startFrame()} + frameOffset;
    const std::int64_t highest = std::int64_t{from.endFrame()} + frameOffset;
    if (!from.isSequence() || !pattern || lowest < 0 ||
        highest > std::numeric_limits<std::int32_t>::max()) {
        reply->fail(NoFrames, to);
        return;
    }
    // Items of one's own make are lent for this thread; what was listed is a copy for any.
    if (!from.sequenceCollection().empty())
        reply->start(folder, [files = renamingsOf(from, *pattern, frameOffset)] { return files; });
    else
        reply->start(folder, [=, to = *pattern] { return renamingsOf(from, to, frameOffset); });
}

} // namespace Kestrel::UI
