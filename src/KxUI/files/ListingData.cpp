#include <KxUI/files/ListingData_p.h>

#include <KxUI/files/NaturalOrder_p.h>
#include <KxUI/files/filename.h>

#include <algorithm>
#include <cstring>
#include <numeric>

namespace Kestrel::UI {
namespace {

using Item = FileListing::Item;
using Kind = FileListing::Kind;

constexpr std::uint64_t mixed(std::uint64_t bits) {
    bits ^= bits >> 33;
    bits *= 0xff51afd7ed558ccdU;
    bits ^= bits >> 33;
    bits *= 0xc4ceb9fe1a85ec53U;
    return bits ^ bits >> 33;
}

Kind kindOf(Platform::EntryType type) {
    switch (type) {
    case Platform::EntryType::Directory:
        return Kind::Directory;
    case Platform::EntryType::Other:
        return Kind::File;
    default:
        return Kind::Unknown;
    }
}

// The directory itself and the one above it.
bool isStep(std::string_view name) {
    return name == "." || name == "..";
}

bool isShown(const Platform::Entry& entry, const ListingSettings& settings) {
    const std::string_view name = entry.view();
    if (isStep(name) || (!settings.showHidden && name.substr(0, 1) == "."))
        return false;
    if (entry.type == Platform::EntryType::Directory)
        return true;
    // A link may lead to a directory: it is shown until that is known.
    if (settings.directoriesOnly)
        return entry.type == Platform::EntryType::Unknown;
    return settings.patterns.empty() ||
           std::any_of(
               settings.patterns.begin(), settings.patterns.end(),
               [&](const std::string& each) { return filename_match(entry.name, each.c_str()); });
}

// Takes what the walk over the names tells.
class Builder {
public:
    explicit Builder(ListingData& data)
        : m_data(data) {}

    void addFile(const Platform::Entry& entry) {
        Item item;
        item.name = entry.view();
        item.kind = kindOf(entry.type);
        item.key = hashOf(item.name);
        // The frame that becomes a sequence stays the item that it was.
        if (m_data.folded && item.kind != Kind::Directory) {
            if (const auto frame = FrameNameRules().frameOf(item.name))
                item.key = keyOf(frame->front(), frame->back());
        }
        m_data.items.push_back(item);
    }

    void addHeadDirectory(const Platform::Entry& entry) { addFile(entry); }

    void addSequence(const SequenceRun& run, const FrameNameRules::Frame& head) {
        SequenceParts parts;
        parts.head = head.name;
        parts.item = static_cast<std::int32_t>(m_data.items.size());
        parts.shortest = static_cast<std::int32_t>(head.shortest);
        parts.numberBegin = static_cast<std::int32_t>(head.mixed ? head.before : head.begin);
        parts.numberLength = static_cast<std::int32_t>(head.mixed ? 1 : head.digits);
        parts.stretchesBegin = static_cast<std::uint32_t>(m_data.stretches.size());
        m_data.stretches.insert(m_data.stretches.end(), run.stretches.begin(), run.stretches.end());
        parts.stretchesEnd = static_cast<std::uint32_t>(m_data.stretches.size());
        parts.rangesBegin = static_cast<std::uint32_t>(m_data.ranges.size());
        if (run.missing != 0) {
            const auto ranges = run.presentRanges();
            m_data.ranges.insert(m_data.ranges.end(), ranges.begin(), ranges.end());
        }
        parts.rangesEnd = static_cast<std::uint32_t>(m_data.ranges.size());

        Item item;
        item.name = m_data.frameNames.add(FrameNameRules::frameName(head));
        item.kind = Kind::Sequence;
        item.key = keyOf(head.front(), head.back());
        item.first = run.firstFrame;
        item.last = run.lastFrame;
        item.step = std::max(run.step, 1);
        item.frames = static_cast<std::int32_t>(run.count);
        item.missing = missingFrames({item.first, item.last, item.step}, run.stretches.data(),
                                     run.stretches.data() + run.stretches.size());
        m_data.items.push_back(item);
        m_data.sequences.push_back(parts);
    }

    // Items of the same frame name, such as folders that are numbered, go by their whole names.
    void makeKeysUnique() {
        sortByKey();
        const auto keyAt = [this](std::size_t i) -> Item& {
            return m_data.items[static_cast<std::size_t>(m_data.byKey[i])];
        };
        bool hasChanged = false;
        const std::size_t count = m_data.byKey.size();
        for (std::size_t begin = 0; begin < count;) {
            std::size_t end = begin + 1;
            while (end < count && keyAt(end).key == keyAt(begin).key)
                ++end;
            for (std::size_t i = begin; end - begin > 1 && i < end; ++i) {
                Item& item = keyAt(i);
                item.key =
                    hashOf(item.name, mixed(item.key + static_cast<std::uint32_t>(item.first)));
                hasChanged = true;
            }
            begin = end;
        }
        if (hasChanged)
            sortByKey();
    }

private:
    static std::uint64_t keyOf(std::string_view front, std::string_view back) {
        return hashOf(back, hashOf(front) + 1);
    }

    void sortByKey() {
        // Keys are hashes: by their upper bits they fall into small heaps of the same size.
        constexpr int shift = 52;
        std::vector<std::uint32_t> starts((1U << (64 - shift)) + 1);
        for (const Item& item : m_data.items)
            ++starts[(item.key >> shift) + 1];
        for (std::size_t i = 1; i < starts.size(); ++i)
            starts[i] += starts[i - 1];
        std::vector<std::pair<std::uint64_t, std::int32_t>> keys(m_data.items.size());
        auto next = starts;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const std::uint64_t key = m_data.items[i].key;
            keys[next[key >> shift]++] = {key, static_cast<std::int32_t>(i)};
        }
        for (std::size_t i = 1; i < starts.size(); ++i)
            std::sort(keys.begin() + starts[i - 1], keys.begin() + starts[i]);
        m_data.byKey.clear();
        m_data.byKey.reserve(keys.size());
        for (const auto& key : keys)
            m_data.byKey.push_back(key.second);
    }

    ListingData& m_data;
};

} // namespace

std::uint64_t hashOf(std::string_view bytes, std::uint64_t seed) {
    std::uint64_t hash = seed ^ (bytes.size() * 0x9e3779b97f4a7c15U);
    for (; bytes.size() >= sizeof hash; bytes.remove_prefix(sizeof hash)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), sizeof word);
        hash = mixed(hash ^ word);
    }
    std::uint64_t word = 0;
    if (!bytes.empty())
        std::memcpy(&word, bytes.data(), bytes.size());
    return mixed(hash ^ word);
}

std::shared_ptr<ListingData> makeListing(std::shared_ptr<const RawEntries> raw,
                                         const ListingSettings& settings) {
    auto data = std::make_shared<ListingData>();
    data->entriesRead =
        std::count_if(raw->entries.begin(), raw->entries.end(),
                      [](const Platform::Entry& entry) { return !isStep(entry.view()); });
    data->folded = settings.fold;
    std::vector<Platform::Entry> entries;
    entries.reserve(raw->entries.size());
    std::copy_if(raw->entries.begin(), raw->entries.end(), std::back_inserter(entries),
                 [&](const auto& entry) { return isShown(entry, settings); });
    data->raw = std::move(raw);
    sortNaturally(entries, settings.fold ? NaturalOrder::Grouping : NaturalOrder::Plain);
    Builder builder(*data);
    if (settings.fold) {
        FrameNameRules rules;
        foldSequences(
            entries, rules,
            [](const auto& entry) { return entry.type == Platform::EntryType::Directory; },
            builder);
    } else {
        data->items.reserve(entries.size());
        for (const auto& entry : entries)
            builder.addFile(entry);
    }
    builder.makeKeysUnique();
    return data;
}

const SequenceParts* ListingData::sequence(int index) const {
    const auto found =
        std::lower_bound(sequences.begin(), sequences.end(), index,
                         [](const SequenceParts& each, int item) { return each.item < item; });
    return found != sequences.end() && found->item == index ? &*found : nullptr;
}

std::string ListingData::frameFile(int index, std::int32_t frame) const {
    const std::string_view name = items[static_cast<std::size_t>(index)].name;
    const SequenceParts* const parts = sequence(index);
    if (!parts)
        return std::string(name);
    const auto begin = stretches.begin() + parts->stretchesBegin;
    const auto end = stretches.begin() + parts->stretchesEnd;
    const auto next = std::upper_bound(
        begin, end, frame, [](std::int32_t f, const auto& each) { return f < each.frames.first; });
    std::int32_t width = parts->shortest;
    if (next != begin && frame <= (next - 1)->frames.last &&
        (frame - (next - 1)->frames.first) % (next - 1)->frames.step == 0)
        width = (next - 1)->width;
    return std::string(name.substr(0, static_cast<std::size_t>(parts->numberBegin)))
        .append(paddedNumber(frame, width))
        .append(name.substr(static_cast<std::size_t>(parts->numberBegin + parts->numberLength)));
}

std::string ListingData::firstFile(int index) const {
    const SequenceParts* const parts = sequence(index);
    return std::string(parts ? parts->head : items[static_cast<std::size_t>(index)].name);
}

bool ListingData::mayHave(const SequenceParts& parts, std::string_view name,
                          const FrameNameRules::Frame& frame) const {
    const std::string_view written = items[static_cast<std::size_t>(parts.item)].name;
    const auto end = static_cast<std::size_t>(parts.numberBegin + parts.numberLength);
    return written.substr(0, static_cast<std::size_t>(parts.numberBegin)) ==
               name.substr(0, frame.begin) &&
           written.substr(end) == name.substr(frame.begin + frame.digits);
}

bool ListingData::wasRead(std::string_view name) const {
    return raw && std::any_of(raw->entries.begin(), raw->entries.end(),
                              [&](const auto& entry) { return entry.view() == name; });
}

int ListingData::findKey(std::uint64_t key) const {
    const auto keyAt = [this](std::int32_t i) { return items[static_cast<std::size_t>(i)].key; };
    const auto found =
        std::lower_bound(byKey.begin(), byKey.end(), key,
                         [&](std::int32_t each, std::uint64_t k) { return keyAt(each) < k; });
    return found != byKey.end() && keyAt(*found) == key ? *found : -1;
}

std::string ListingData::path(std::string_view name) const {
    std::string text = raw ? raw->directory : std::string();
    if (!text.empty() && text.back() != '/')
        text += '/';
    return text.append(name);
}

std::shared_ptr<const FileListing> ListingData::listing(std::shared_ptr<const ListingData> data,
                                                        std::shared_ptr<const StatusTable> status,
                                                        FileListing::State state, int error) {
    return std::shared_ptr<const FileListing>(
        new FileListing(std::move(data), std::move(status), state, error));
}

const std::shared_ptr<const ListingData>& ListingData::of(const FileListing& listing) {
    return listing.m_data;
}

const std::shared_ptr<const StatusTable>& ListingData::statusOf(const FileListing& listing) {
    return listing.m_status;
}

} // namespace Kestrel::UI
