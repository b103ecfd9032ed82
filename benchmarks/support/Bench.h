#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace Kestrel::Bench {

/** Registers one case: `work` names what is done ("list and fold 100,000 files"), `who` does it
    ("ours", or the peer's name). The report puts the cases of one work in one row group and divides
    each peer by ours: by CPU time, or by what it says itself with `UseManualTime()`. A case that
    calls `state.SetItemsProcessed` is reported per item, one with a counter "bytes" in bytes. The
    result takes fewer repetitions for what is slow. */
template <class Body>
benchmark::internal::Benchmark* add(const std::string& work, const std::string& who, Body body) {
    return benchmark::RegisterBenchmark((work + "/" + who).c_str(), body);
}

/** States how many times the reference ours may cost at most (per item where items are counted);
    the report marks a work that misses it. The reference is measured in the same run: 1,000
    multiplications of 64 bits, each waiting for the one before, a microsecond at 4 GHz. */
void target(const std::string& work, double references);

/** States how many times faster than `peer` ours should be (below 1: ours may cost more). */
void targetRatio(const std::string& work, const std::string& peer, double times);

} // namespace Kestrel::Bench
