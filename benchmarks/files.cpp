#include "files_gather.h"

#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/filename.h>

#include <support/Bench.h>

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <memory>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

using Kestrel::UI::FileInfoList;

namespace {

constexpr int Files = 100000;

// Made once per process, in an order that tells nothing about the names.
class Folder {
public:
    explicit Folder(std::vector<std::string> names) {
        std::shuffle(names.begin(), names.end(), std::mt19937(1));
        for (const auto& name : names)
            ::close(::open((path() + '/' + name).c_str(), O_CREAT | O_WRONLY, 0666));
    }

    std::string path() const { return m_root.path().toStdString(); }

private:
    QTemporaryDir m_root;
};

std::string padded(int number, std::size_t width) {
    std::string text = std::to_string(number);
    return text.insert(0, width > text.size() ? width - text.size() : 0, '0');
}

// 100 shots of 1,000 frames; every tenth shot misses some frames, every fifth is not padded.
std::string shots() {
    static const Folder folder([] {
        std::vector<std::string> names;
        for (int shot = 0; shot < 100; ++shot) {
            for (int frame = 0; frame < Files / 100; ++frame) {
                const int gaps = shot % 10 == 3 ? frame / 100 : 0;
                names.push_back("shot_" + padded(10 * shot, 4) + "_comp_v003." +
                                padded(991 + frame + gaps, shot % 5 == 4 ? 1 : 4) + ".exr");
            }
        }
        return names;
    }());
    return folder.path();
}

std::string oneSequence() {
    static const Folder folder([] {
        std::vector<std::string> names;
        for (int frame = 0; frame < Files; ++frame)
            names.push_back("render." + padded(frame, 6) + ".exr");
        return names;
    }());
    return folder.path();
}

std::string pairs() {
    static const Folder folder([] {
        std::vector<std::string> names;
        for (int pair = 0; pair < Files / 2; ++pair) {
            for (int frame = 1; frame <= 2; ++frame)
                names.push_back("plate" + std::to_string(pair) + "_left." + padded(frame, 4) +
                                ".dpx");
        }
        return names;
    }());
    return folder.path();
}

// What reading the directory alone costs.
void kernel(const std::string& path) {
    const std::unique_ptr<char[]> buffer(new char[64 * 1024]);
    const int directory = ::open(path.c_str(), O_RDONLY | O_DIRECTORY);
    while (::getdents64(directory, buffer.get(), 64 * 1024) > 0)
        benchmark::DoNotOptimize(buffer.get());
    ::close(directory);
}

void freeListing(struct dirent** list, int count) {
    for (int i = 0; i < count; ++i)
        std::free(list[i]);
    std::free(list);
}

using FolderPath = std::string (*)();

template <class Body>
void addListing(const std::string& work, const std::string& who, FolderPath folder, Body body) {
    Kestrel::Bench::add(work, who, [=](benchmark::State& state) {
        const std::string path = folder();
        for (auto _ : state)
            body(path);
    });
}

void foldNames(const std::string& path) {
    struct dirent** list = nullptr;
    freeListing(list, filename_list(path.c_str(), &list, 1));
}

void listNames(const std::string& path) {
    struct dirent** list = nullptr;
    freeListing(list, filename_list(path.c_str(), &list, 0));
}

void foldItems(const std::string& path) {
    FileInfoList list;
    list.setShouldFilterSequences(true);
    list.fill(QString::fromStdString(path));
    benchmark::DoNotOptimize(list.size());
}

void entryInfos(const std::string& path) {
    const auto infos = QDir(QString::fromStdString(path)).entryInfoList();
    benchmark::DoNotOptimize(infos.size());
}

void addMatch(const std::string& work, const QByteArray& pattern) {
    const QByteArray name(100, 'a');
    Kestrel::Bench::add(work, "ours", [=](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(filename_match(name.constData(), pattern.constData()));
    });
    Kestrel::Bench::target(work, 50);
}

} // namespace

void registerBenchmarks() {
    struct Shape {
        const char* name;
        FolderPath folder;
        double ratio;
    };
    for (const Shape& shape : {Shape{"100 shots x 1,000", &shots, 1 / 2.0},
                               Shape{"1 sequence x 100,000", &oneSequence, 1 / 6.0},
                               Shape{"50,000 pairs", &pairs, 1 / 6.0}}) {
        const std::string names = std::string("filename_list, ") + shape.name;
        addListing(names, "ours", shape.folder, &foldNames);
        addListing(names, "getdents64", shape.folder, &kernel);
        Kestrel::Bench::targetRatio(names, "getdents64", shape.ratio);

        const std::string items = std::string("FileInfoList::fill, ") + shape.name;
        addListing(items, "ours", shape.folder, &foldItems);
        addListing(items, "getdents64", shape.folder, &kernel);
        Kestrel::Bench::targetRatio(items, "getdents64", shape.ratio);
        if (shape.folder == &shots)
            addListing(items, "QDir::entryInfoList, no folding", shape.folder, &entryInfos);
    }
    addListing("filename_list without folding, 100,000 files", "ours", &shots, &listNames);
    addListing("filename_list without folding, 100,000 files", "getdents64", &shots, &kernel);

    addMatch("filename_match, 50 stars against 100 a", QByteArray("*a").repeated(49) + "*b");
    addMatch("filename_match, 5 stars against 100 a", QByteArray("*a").repeated(5) + 'b');
    addMatch("filename_match, nested groups", QByteArray("{a,aa,*}").repeated(12) + "bbbb");
    addMatch("filename_match, sets in groups", '{' + QByteArray("*[a-z],").repeated(14) + "b}");
    addMatch("filename_match, open sets and groups", QByteArray("{*,[").repeated(25));

    const std::string grouped = "filename_match, *.{exr,dpx} against a frame";
    Kestrel::Bench::add(grouped, "ours", [](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(filename_match("shot_010_comp.0001.exr", "*.{exr,dpx}"));
    });
    const std::string everyday = "filename_match, *_comp.*.exr against a frame";
    Kestrel::Bench::add(everyday, "ours", [](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(filename_match("shot_010_comp.0001.exr", "*_comp.*.exr"));
    });
    Kestrel::Bench::add(everyday, "fnmatch", [](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(::fnmatch("*_comp.*.exr", "shot_010_comp.0001.exr", 0));
    });

    registerGathering();
}
