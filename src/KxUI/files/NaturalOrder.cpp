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

// Writes the run of digits at `at`, which compares by its length, then digit by digit.
unsigned char* writeRun(std::string_view name, std::size_t& at, unsigned char* to) {
    unsigned char* const digits = to + 1;
    unsigned char* end = digits;
    do
        *end++ = static_cast<unsigned char>(name[at++]);
    while (at < name.size() && isDigit(name[at]));
    const auto length = static_cast<std::uint32_t>(end - digits);
    if (length < 255) {
        *to = static_cast<unsigned char>(length);
        return end;
    }
    *to = 255;
    std::copy_backward(digits, end, end + sizeof length);
    for (std::size_t i = 0; i < sizeof length; ++i)
        digits[i] = static_cast<unsigned char>(length >> (24 - 8 * i));
    return end + sizeof length;
}

// No key is the beginning of another one: each ends with the mark of the end of its name, or with
// numbers that tell their lengths. `numbers` has room for another key.
unsigned char* writeKey(std::string_view name, NaturalOrder order, unsigned char* to,
                        unsigned char* numbers) {
    unsigned char* numbersEnd = numbers;
    for (std::size_t at = 0; at < name.size();) {
        *to++ = ranks[static_cast<unsigned char>(name[at])];
        if (!isDigit(name[at]))
            ++at;
        else if (order == NaturalOrder::Plain)
            to = writeRun(name, at, to);
        else
            numbersEnd = writeRun(name, at, numbersEnd);
    }
    *to++ = ranks[0];
    return std::copy(numbers, numbersEnd, to);
}

// At most three bytes for one of the name (rank, length and digit), the end, and for a run of 255
// digits and more four bytes that those digits have saved.
constexpr std::size_t keyBound(std::size_t nameLength) {
    return 3 * nameLength + 1;
}

struct Key {
    std::uint64_t word; // the eight bytes that are being compared
    const unsigned char* bytes;
    std::uint32_t length;
    std::uint32_t index;
};

constexpr std::size_t wordSize = sizeof(Key::word);

// One load where the compiler knows the idiom.
std::uint64_t wordAt(const unsigned char* bytes) {
    const auto at = [bytes](int i) { return std::uint64_t{bytes[i]} << (56 - 8 * i); };
    return at(0) | at(1) | at(2) | at(3) | at(4) | at(5) | at(6) | at(7);
}

class KeySort {
public:
    explicit KeySort(std::size_t count)
        : m_scratch(new Key[count]) {}

    // Sorts keys that agree in their first `depth` bytes.
    void sort(Key* first, Key* last, std::size_t depth) {
        for (;; depth += wordSize) {
            for (Key* key = first; key != last; ++key)
                key->word = wordAt(key->bytes + depth);
            if (sortByWord(first, last))
                break;
            if (first->length <= depth + wordSize)
                return;
        }
        depth += wordSize;
        while (first != last) {
            Key* const end = std::find_if(first + 1, last,
                                          [&](const Key& key) { return key.word != first->word; });
            if (end - first > 1 && first->length > depth)
                sort(first, end, depth);
            first = end;
        }
    }

private:
    // False when all words are the same.
    bool sortByWord(Key* first, Key* last) {
        std::uint64_t differing = 0;
        for (const Key* key = first; key != last; ++key)
            differing |= key->word ^ first->word;
        if (differing == 0)
            return false;
        if (last - first < 64) {
            std::sort(first, last, [](const Key& a, const Key& b) { return a.word < b.word; });
            return true;
        }
        // By the first byte that differs, then each part by those behind it.
        int shift = 56;
        while (differing >> shift == 0)
            shift -= 8;
        std::array<std::uint32_t, 257> starts{};
        for (const Key* key = first; key != last; ++key)
            ++starts[(key->word >> shift & 0xFF) + 1];
        for (std::size_t i = 1; i < starts.size(); ++i)
            starts[i] += starts[i - 1];
        auto next = starts;
        for (const Key* key = first; key != last; ++key)
            m_scratch[next[key->word >> shift & 0xFF]++] = *key;
        std::copy(m_scratch.get(), m_scratch.get() + (last - first), first);
        for (std::size_t i = 0; i < 256; ++i) {
            if (starts[i + 1] - starts[i] > 1)
                sortByWord(first + starts[i], first + starts[i + 1]);
        }
        return true;
    }

    std::unique_ptr<Key[]> m_scratch;
};

} // namespace

void sortNaturally(std::vector<Platform::Entry>& entries, NaturalOrder order) {
    if (entries.size() < 2)
        return;
    std::size_t total = 0;
    std::size_t longest = 0;
    for (const auto& entry : entries) {
        total += keyBound(entry.length);
        longest = std::max<std::size_t>(longest, entry.length);
    }
    // Words are read past the end of the last key.
    const std::unique_ptr<unsigned char[]> memory(new unsigned char[total + wordSize]);
    const std::unique_ptr<unsigned char[]> numbers(new unsigned char[keyBound(longest)]);
    const std::unique_ptr<Key[]> keys(new Key[entries.size()]);
    unsigned char* next = memory.get();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        unsigned char* const end = writeKey(entries[i].view(), order, next, numbers.get());
        keys[i] = {0, next, static_cast<std::uint32_t>(end - next), static_cast<std::uint32_t>(i)};
        next = end;
    }
    std::fill_n(next, wordSize, static_cast<unsigned char>(0));

    KeySort(entries.size()).sort(keys.get(), keys.get() + entries.size(), 0);

    std::vector<Platform::Entry> sorted;
    sorted.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
        sorted.push_back(entries[keys[i].index]);
    entries = std::move(sorted);
}

} // namespace Kestrel::UI
