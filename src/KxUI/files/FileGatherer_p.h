#pragma once

#include <KxUI/files/DirectoryFollower_p.h>
#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/SharedReading_p.h>
#include <KxUI/files/StatusQueue_p.h>
#include <KxUI/files/TotalsJob_p.h>

#include <QTimer>

namespace Kestrel::UI {

/** The interface thread's side of gathering: what was asked for, what has come. */
struct FileGatherer::Private {
    using State = FileListing::State;

    explicit Private(FileGatherer* gatherer);

    void gather(std::string wanted, std::int64_t since);
    bool enter(std::string wanted);
    void post(std::int64_t since);
    void endRequest();
    void rebuild();
    void takeNews();
    void takeStatuses();
    void takeTotals();
    void adopt(std::shared_ptr<const ListingData> data, State state, int error);
    void setStatus(std::vector<FileStatus> statuses);
    void end();
    bool setGathering(bool gathering);
    void follow();
    void changed();
    void scheduleReread();
    void lookWhetherWaiting();
    std::int64_t silence() const;
    void ask(const std::vector<int>& indices);
    int itemOf(const FileStatus& told) const;
    GatherRequest request(std::int64_t since = 0);
    void changeSettings();
    const std::shared_ptr<const ListingData>& data() const { return ListingData::of(*listing); }

    FileGatherer* const q;
    GatherPace pace;
    const std::shared_ptr<Mailbox<GatherNews>> newsBox;
    std::shared_ptr<Mailbox<std::vector<FileStatus>>> statusBox; // one for each directory
    const std::shared_ptr<Mailbox<TotalsNews>> totalsBox;

    std::shared_ptr<const FileListing> listing = std::make_shared<const FileListing>();
    std::shared_ptr<const StatusTable> status = std::make_shared<const StatusTable>();
    std::string directory;
    ListingSettings settings;
    QStringList patterns;

    std::uint64_t id = 0; // of the newest request
    std::shared_ptr<SharedReading> reading;
    GatherRequest requested;        // of the reading
    std::shared_ptr<Ticket> ticket; // of other settings for what was read
    bool hasAllRows = false;        // those that it had when it was read to the end, maybe long ago
    bool isGathering = false;
    std::int64_t changedAt = 0; // when something was told to have changed
    std::int64_t asked = 0;     // when
    std::int64_t ended = 0;     // when
    std::int64_t duration = 0;  // of the last reading
    int nextWait = 0;
    QTimer waitTimer;

    std::uint32_t turn = 1; // of asking for statuses
    std::shared_ptr<StatusQueue> queue;
    QTimer statusTimer;

    std::uint64_t totalsId = 0;
    std::shared_ptr<Ticket> totalsTicket;
    QByteArray totalsName;

    Watch watch = Watch::Local;
    bool isFollowing = false;
    bool hasChanged = false;
    QTimer rereadTimer;
    DirectoryFollower follower;
};

/** Lets tests set how long things take. */
class FileGathererPace {
public:
    static GatherPace& of(FileGatherer& gatherer) { return gatherer.d->pace; }
};

} // namespace Kestrel::UI
