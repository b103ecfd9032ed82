#pragma once

#include <KxUI/scopes/ScopeModel.h>
#include <KxUI/scopes/ScopeWorker_p.h>

#include <QElapsedTimer>
#include <QTimer>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace Kestrel::UI {

struct ScopeModel::Private {
    /** What a view needs; `order` says who asked last. */
    struct Need {
        Parts parts;
        WaveformRange waveform;
        VectorRange vectors;
        std::uint64_t order = 0;
    };

    explicit Private(ScopeModel& model);

    /** Before anything of the model is gone. */
    void close();
    void tell(Changes changes);

    /** What was counted is of something else than what is set. */
    void invalidate();
    /** Begins a pass if there is something to count and it is time; looks again later otherwise. */
    void schedule();
    void takeResult();

    void setNeed(const QObject* who, const Need& need);
    /** Of all. */
    Need need() const;

    /** Anew where it is, after the picture or the encoding changed. */
    void readSample();
    void takeSample();

    void find(const QObject* who, const ScopeSelection& wanted, const QRect& within);
    void takeFound();

    ScopeModel& q;
    ScopeImage image;
    QRect region;
    int row = -1;
    ScopeEncoding encoding;
    std::optional<ScopeSample> samplePlace;
    std::optional<ScopeSample> sample;
    std::shared_ptr<const ScopeResult> result = std::make_shared<ScopeResult>();
    std::shared_ptr<const ScopeResult> reference;
    ScopeSelection selection;
    ValueRange solid = ScopeRequest().solid;
    bool interactive = false;
    int rowStep = 1;
    double rate = 25;
    QTimer pace;
    bool isStale = false;
    std::uint64_t inFlight = 0; // the serial of the pass whose result is awaited; 0: none
    std::uint64_t passes = 0;

private:
    /** What is counted, in full-frame pixels. */
    ScopeRegion countedRegion() const;
    ScopeRequest request() const;
    void showNothing();
    void submit();
    void look();
    void replaceWorker();
    bool covers(const Need& wanted) const;
    void setSample(const std::optional<ScopeSample>& read);

    std::map<const QObject*, Need> m_needs;
    std::uint64_t m_order = 0;
    Need m_submitted; // what the newest pass was asked for
    std::shared_ptr<ScopeResults> m_results;
    std::shared_ptr<ScopeWorker> m_worker;
    std::shared_ptr<ScopeResults> m_samples;
    std::shared_ptr<ScopeWorker> m_sampler; // made when a transform needs it
    std::uint64_t m_sampleSerial = 0;
    std::shared_ptr<ScopeResults> m_found;
    std::shared_ptr<ScopeWorker> m_finder; // made when somebody looks for a pixel
    const QObject* m_findsFor = nullptr;   // only compared
    std::uint64_t m_findSerial = 0;
    // Of workers that hang.
    std::vector<std::weak_ptr<ScopeWorker>> m_left;
    QTimer m_watch;
    std::uint64_t m_seenProgress = 0;
    QElapsedTimer m_sinceBegin;
};

} // namespace Kestrel::UI
