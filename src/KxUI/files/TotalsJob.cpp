#include <KxUI/files/TotalsJob_p.h>

#include <KxUI/files/platform/Directory_p.h>

namespace Kestrel::UI {
namespace {

constexpr std::int64_t pace = 250000000; // from one interim answer to the next

class Counter : private Platform::ReadProgress {
public:
    Counter(const TotalsRequest& request, Ticket& ticket)
        : m_request(request)
        , m_ticket(ticket) {
        m_news.request = request.id;
    }

    void count() {
        const auto& item = m_request.data->items[static_cast<std::size_t>(m_request.item)];
        const std::string path = m_request.data->path(item.name);
        if (item.kind == FileListing::Kind::Directory)
            countBelow(path);
        else
            countMembers();
        if (m_ticket.isCancelled())
            return;
        m_news.isFinal = true;
        tell();
    }

private:
    void tell() {
        m_request.box->put(m_news, [](TotalsNews& waiting, const TotalsNews& newest) {
            // One that was given up may tell a last time after the next one has begun.
            if (newest.request >= waiting.request)
                waiting = newest;
        });
    }

    bool block(const Platform::Listing&) override {
        m_ticket.tick();
        return !m_ticket.isCancelled();
    }

    // False when it is to end.
    bool add(const Platform::DirectoryHandle& directory, const char* name) {
        Platform::EntryStatus status;
        const int error = Platform::queryStatusAt(directory, name, true, status);
        m_ticket.tick();
        if (error != 0) {
            m_news.isExact = false;
        } else if (!status.isDirectory()) {
            m_news.bytes += static_cast<std::int64_t>(status.size);
            ++m_news.files;
        }
        if (const std::int64_t now = Ticket::now(); now >= m_next) {
            m_next = now + pace;
            tell();
        }
        return !m_ticket.isCancelled();
    }

    bool open(Platform::DirectoryHandle& directory, const std::string& path) {
        const bool isOpen = directory.open(Platform::toUtf8(path)) == 0;
        m_ticket.tick();
        m_news.isExact = m_news.isExact && isOpen;
        return isOpen;
    }

    void countMembers() {
        const ListingData& data = *m_request.data;
        Platform::DirectoryHandle directory;
        if (!open(directory, data.raw->directory))
            return;
        const SequenceParts* const parts = data.sequence(m_request.item);
        if (!parts) {
            add(directory, data.firstFile(m_request.item).c_str());
            return;
        }
        std::int64_t asked = 0;
        for (auto i = parts->stretchesBegin; i < parts->stretchesEnd; ++i) {
            const Base::FrameRange& range = data.stretches[i].frames;
            for (std::int64_t f = range.first; f <= range.last; f += range.step, ++asked) {
                const std::string name =
                    data.frameFile(m_request.item, static_cast<std::int32_t>(f));
                if (!add(directory, name.c_str()))
                    return;
            }
        }
        // Numbers too large for a frame are members without one.
        if (asked < data.items[static_cast<std::size_t>(m_request.item)].frames)
            m_news.isExact = false;
    }

    void countBelow(const std::string& top) {
        std::vector<std::string> paths{top};
        while (!paths.empty() && !m_ticket.isCancelled()) {
            const std::string path = std::move(paths.back());
            paths.pop_back();
            Platform::DirectoryHandle directory;
            Platform::Listing listing;
            if (!open(directory, path))
                continue;
            if (Platform::readDirectory(directory, listing, *this) != 0)
                m_news.isExact = false;
            for (const Platform::Entry& entry : listing.entries) {
                if (entry.view() == "." || entry.view() == "..")
                    continue;
                if (entry.type == Platform::EntryType::Directory)
                    paths.push_back(path + '/' + entry.name);
                else if (!addEntry(directory, path, entry, paths))
                    return;
            }
        }
    }

    bool addEntry(const Platform::DirectoryHandle& directory, const std::string& path,
                  const Platform::Entry& entry, std::vector<std::string>& paths) {
        if (entry.type == Platform::EntryType::Other)
            return add(directory, entry.name);
        // A link's target lies elsewhere, and may lie above.
        Platform::EntryStatus status;
        const int error = Platform::queryStatusAt(directory, entry.name, true, status);
        m_ticket.tick();
        if (error != 0)
            m_news.isExact = false;
        else if (status.isLink)
            return !m_ticket.isCancelled();
        else if (status.isDirectory())
            paths.push_back(path + '/' + entry.name);
        else
            return add(directory, entry.name);
        return !m_ticket.isCancelled();
    }

    const TotalsRequest& m_request;
    Ticket& m_ticket;
    TotalsNews m_news;
    std::int64_t m_next = Ticket::now() + pace;
};

} // namespace

void countTotals(const TotalsRequest& request, Ticket& ticket) {
    Counter(request, ticket).count();
}

} // namespace Kestrel::UI
