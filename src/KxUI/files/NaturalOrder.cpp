#include <KxUI/files/NaturalOrder_p.h>

#include <algorithm>
#include <array>

// Names are not compared as they are. Each is turned once into a key whose bytes compare like the
// names do, and the keys are sorted eight bytes at a time.
namespace Kestrel::UI {
namespace {

// The place of each byte: as signed characters, an upper-case letter right behind its lower-case
// form, the digits all alike. The end of a name is the byte 0, which is not the lowest.
constexpr std::array<unsigned char, 256> byteRanks() {
    std::array<unsigned char, 256> ranks{};
    unsigned char rank = 0;
    for (int value = -128; value < 128; ++value) {
        if (value >= 'A' && value <= 'Z')
            continue;
        const auto byte = static_cast<unsigned char>(value);
        ranks[byte] = rank;
        if (value >= '0' && value < '9')
            continue;
        ++rank;
        if (value >= 'a' && value <= 'z')
            ranks[static_cast<std::size_t>(byte - 'a' + 'A')] = rank++;
    }
    return ranks;
}

constexpr auto ranks = byteRanks();

// A run of digits compares by its length, then digit by digit.
unsigned char* writeRun(std::string_view run, unsigned char* to) {
    if (run.size() < 255) {
        *to++ = static_cast<unsigned char>(run.size());
    } else {
        *to++ = 255;
        for (int shift = 24; shift >= 0; shift -= 8)
            *to++ = static_cast<unsigned char>(run.size() >> shift);
    }
    return std::copy(run.begin(), run.end(), to);
}

std::string_view digitsFrom(std::string_view name, std::size_t begin) {
    std::size_t end = begin;
    while (end < name.size() && isDigit(name[end]))
        ++end;
    return name.substr(begin, end - begin);
}

// No key is the beginning of another one: each ends with the mark of the end of its name, or with
// numbers that tell their lengths.
unsigned char* writeKey(std::string_view name, NaturalOrder order, unsigned char* to) {
    bool hasDigits = false;
    for (std::size_t at = 0; at < name.size();) {
        *to++ = ranks[static_cast<unsigned char>(name[at])];
        if (!isDigit(name[at])) {
            ++at;
            continue;
        }
        hasDigits = true;
        const auto run = digitsFrom(name, at);
        if (order == NaturalOrder::Plain)
            to = writeRun(run, to);
        at += run.size();
    }
    *to++ = ranks[0];
    if (order == NaturalOrder::Grouping && hasDigits) {
        for (std::size_t at = 0; at < name.size(); ++at) {
            if (!isDigit(name[at]))
                continue;
            const auto run = digitsFrom(name, at);
            to = writeRun(run, to);
            at += run.size();
        }
    }
    return to;
}

// At most three bytes for one of the name (rank, length and digit), the end, and for a run of 255
// digits and more four bytes that those digits have saved.
constexpr std::size_t keyBound(std::size_t nameLength) {
    return 3 * nameLength + 1;
}

struct Key {
    std::uint64_t word = 0; // the eight bytes that are being compared
    const unsigned char* bytes = nullptr;
    std::uint32_t length = 0;
    std::uint32_t index = 0;
};

constexpr std::size_t wordSize = sizeof(Key::word);

std::uint64_t wordAt(const unsigned char* bytes) {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < wordSize; ++i)
        word = word << 8 | bytes[i];
    return word;
}

// Sorts keys that agree in their first `depth` bytes.
void sortKeys(Key* first, Key* last, std::size_t depth) {
    for (;; depth += wordSize) {
        bool ordered = true;
        bool same = true;
        std::uint64_t previous = wordAt(first->bytes + depth);
        for (Key* key = first; key != last; ++key) {
            key->word = wordAt(key->bytes + depth);
            ordered = ordered && previous <= key->word;
            same = same && previous == key->word;
            previous = key->word;
        }
        if (!ordered)
            std::sort(first, last, [](const Key& a, const Key& b) { return a.word < b.word; });
        if (!same)
            break;
        if (first->length <= depth + wordSize)
            return;
    }
    depth += wordSize;
    while (first != last) {
        Key* const end =
            std::find_if(first + 1, last, [&](const Key& key) { return key.word != first->word; });
        if (end - first > 1 && first->length > depth)
            sortKeys(first, end, depth);
        first = end;
    }
}

} // namespace

void sortNaturally(std::vector<Platform::Entry>& entries, NaturalOrder order) {
    if (entries.size() < 2)
        return;
    // Words are read past the end of the last key.
    std::size_t bound = wordSize;
    for (const auto& entry : entries)
        bound += keyBound(entry.length);
    const std::unique_ptr<unsigned char[]> memory(new unsigned char[bound]);
    std::vector<Key> keys(entries.size());
    unsigned char* next = memory.get();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        unsigned char* const end = writeKey(entries[i].view(), order, next);
        keys[i].bytes = next;
        keys[i].length = static_cast<std::uint32_t>(end - next);
        keys[i].index = static_cast<std::uint32_t>(i);
        next = end;
    }
    std::fill_n(next, wordSize, static_cast<unsigned char>(0));

    sortKeys(keys.data(), keys.data() + keys.size(), 0);

    std::vector<Platform::Entry> sorted;
    sorted.reserve(entries.size());
    for (const Key& key : keys)
        sorted.push_back(entries[key.index]);
    entries = std::move(sorted);
}

} // namespace Kestrel::UI
