// A console reporter that also keeps each run's CPU time per iteration and,
// where the run counted one, its peak heap, so that a benchmark program can
// print ratios after the runs.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace quillbank::bench {

class CollectingReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& reports) override {
        for (const Run& run : reports) {
            if (!run.error_occurred && run.run_type == Run::RT_Iteration) {
                times[run.benchmark_name()] = run.GetAdjustedCPUTime();
                if (auto peak = run.counters.find("peak_heap"); peak != run.counters.end()) {
                    peaks[run.benchmark_name()] = peak->second.value;
                }
            }
        }
        ConsoleReporter::ReportRuns(reports);
    }
    std::map<std::string, double> times;
    std::map<std::string, double> peaks;
};

}  // namespace quillbank::bench
