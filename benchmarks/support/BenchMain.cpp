#include <support/Bench.h>

#include <QApplication>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <map>
#include <vector>

namespace Kestrel::Bench {
namespace {

std::map<std::string, double>& targets() {
    static std::map<std::string, double> all;
    return all;
}

std::map<std::string, double>& ratioTargets() {
    static std::map<std::string, double> all;
    return all;
}

/** What the targets without a peer are multiples of, in nanoseconds of CPU. */
double measureReference() {
    double best = 1e9;
    for (int run = 0; run < 2000; ++run) {
        timespec start{};
        timespec end{};
        std::uint64_t value = 1;
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
        for (int i = 0; i < 1000; ++i) {
            value = value * 6364136223846793005U + 1442695040888963407U;
            benchmark::DoNotOptimize(value);
        }
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
        best = std::min(best, double(end.tv_sec - start.tv_sec) * 1e9 +
                                  double(end.tv_nsec - start.tv_nsec));
    }
    return best;
}

/** Nothing but tables: the platform without a screen says over and over what it cannot do. */
void quietly(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("This plugin does not support ")))
        std::fprintf(stderr, "%s\n", qUtf8Printable(qFormatLogMessage(type, context, message)));
}

std::string readable(double cost, bool isBytes) {
    char text[32];
    if (isBytes)
        std::snprintf(text, sizeof text, "%.2f MB", cost / 1e6);
    else if (cost < 1e3)
        std::snprintf(text, sizeof text, "%.1f ns", cost);
    else if (cost < 1e6)
        std::snprintf(text, sizeof text, "%.2f us", cost / 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f ms", cost / 1e6);
    return text;
}

// Nanoseconds, or bytes. CPU time, but of what measures itself what it says, an item at a time where
// they are counted.
double costOf(const benchmark::BenchmarkReporter::Run& run) {
    const auto bytes = run.counters.find("bytes");
    if (bytes != run.counters.end())
        return bytes->second.value;
    const auto items = run.counters.find("items_per_second");
    if (items != run.counters.end())
        return 1e9 / items->second.value;
    const double seconds = run.run_name.time_type == "manual_time" ? run.real_accumulated_time
                                                                   : run.cpu_accumulated_time;
    return seconds * 1e9 / double(run.iterations);
}

// Keeps the minimum of all repetitions: the machine only ever adds to the true cost.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            const std::string name = run.run_name.function_name;
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
                failed = true;
                continue;
            }
            record(name, costOf(run), run.counters.count("bytes") != 0);
        }
    }

    void Finalize() override {
        const double reference = measureReference();
        std::printf("%-62s %-26s %12s %9s\n", "work", "who", "cost", "ratio");
        for (const auto& work : works) {
            const auto ours = std::find_if(work.costs.begin(), work.costs.end(),
                                           [](const auto& cost) { return cost.first == "ours"; });
            bool first = true;
            for (const auto& [who, cost] : work.costs) {
                std::printf("%-62s %-26s %12s", first ? work.name.c_str() : "", who.c_str(),
                            readable(cost, work.isBytes).c_str());
                if (ours != work.costs.end() && who != "ours") {
                    const double times = cost / ours->second;
                    std::printf(" %8.2fx", times);
                    const auto wanted = ratioTargets().find(work.name + "/" + who);
                    if (wanted != ratioTargets().end())
                        std::printf("  target %.3gx: %s", wanted->second,
                                    times >= wanted->second ? "met" : "MISSED");
                } else if (who == "ours") {
                    const auto wanted = targets().find(work.name);
                    if (wanted != targets().end())
                        std::printf("           target %.3g references: %s", wanted->second,
                                    cost <= wanted->second * reference ? "met" : "MISSED");
                }
                std::printf("\n");
                first = false;
            }
        }
        std::printf("%-62s %-26s %12s\n", "reference: 1,000 multiplications in a row", "",
                    readable(reference, false).c_str());
    }

    bool failed = false;

private:
    struct Work {
        std::string name;
        std::vector<std::pair<std::string, double>> costs;
        bool isBytes = false;
    };

    void record(const std::string& fullName, double cost, bool isBytes) {
        const auto slash = fullName.rfind('/');
        const std::string name = fullName.substr(0, slash);
        const std::string who = fullName.substr(slash + 1);
        auto work = std::find_if(works.begin(), works.end(),
                                 [&](const Work& each) { return each.name == name; });
        if (work == works.end())
            work = works.insert(works.end(), Work{name, {}, isBytes});
        for (auto& [known, best] : work->costs) {
            if (known == who) {
                best = std::min(best, cost);
                return;
            }
        }
        work->costs.emplace_back(who, cost);
    }

    std::vector<Work> works;
};

} // namespace

void target(const std::string& work, double references) {
    targets()[work] = references;
}

void targetRatio(const std::string& work, const std::string& peer, double times) {
    ratioTargets()[work + "/" + peer] = times;
}

} // namespace Kestrel::Bench

/** Defined once per benchmark executable: registers its cases. */
void registerBenchmarks();

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(Kestrel::Bench::quietly);
    QApplication application(argc, argv);

    std::vector<char*> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=5";
    char minimum[] = "--benchmark_min_time=0.1";
    arguments.insert(arguments.begin() + 1, {repetitions, minimum});
    int count = int(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    registerBenchmarks();
    Kestrel::Bench::TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.failed ? 1 : 0;
}
