// The benchmark suite: reading, writing and copying generated lessons of
// 100, 1,000 and 10,000 storyboards, bag and collection access, map building
// and FormatXMLString, beside pugixml parsing and serialising the same text
// (the floor). After the run it prints, per size, the ratios of reading and
// writing to the floor and how each operation grows from M to L.
//
// Every benchmark reports "peak_heap": the most heap memory held at once
// during its iterations, above what was held when it started (see
// memory_counter.cpp). The lessons and texts the benchmarks work on are made
// once, before timing, as input; no result is kept from one iteration to the
// next.

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <pugixml.hpp>

#include <quillbank/quillbank.hpp>

#include "collecting_reporter.hpp"
#include "lesson_generator.hpp"
#include "memory_counter.hpp"

namespace {

using namespace quillbank;

// The parse options of the library's pugixml backend, so that the floor
// parses the way the library does.
constexpr unsigned kFloorParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute |
                                      pugi::parse_eol | pugi::parse_comments | pugi::parse_pi |
                                      pugi::parse_declaration;

struct Input {
    std::shared_ptr<Lesson> lesson;
    std::string text;  // lesson->ToXMLString()
};

// The generated lesson of each size, made on first use (not timed).
const Input& InputOf(int storyboards) {
    static std::map<int, Input> inputs;
    auto found = inputs.find(storyboards);
    if (found == inputs.end()) {
        Input input;
        input.lesson = bench::GenerateLesson(storyboards, 1);
        input.text = input.lesson->ToXMLString();
        found = inputs.emplace(storyboards, std::move(input)).first;
    }
    return found->second;
}

// Peak heap above the start, reported as a counter.
class PeakMeter {
public:
    PeakMeter() : start_(bench::HeapInUse()) { bench::ResetPeak(); }
    void Report(benchmark::State& state) const {
        state.counters["peak_heap"] = static_cast<double>(bench::PeakHeap() - start_);
    }

private:
    std::size_t start_;
};

void SetTextBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(text.size()));
    state.counters["xml_bytes"] = static_cast<double>(text.size());
}

// ---- The floor: pugixml on the same text ------------------------------------

void PugiParse(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        pugi::xml_document document;
        const pugi::xml_parse_result result =
            document.load_buffer(input.text.data(), input.text.size(), kFloorParseFlags, pugi::encoding_utf8);
        benchmark::DoNotOptimize(result.status);
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

struct StringWriter final : pugi::xml_writer {
    std::string text;
    void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
};

void PugiSerialize(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    pugi::xml_document document;
    document.load_buffer(input.text.data(), input.text.size(), kFloorParseFlags, pugi::encoding_utf8);
    PeakMeter meter;
    for (auto _ : state) {
        StringWriter writer;
        document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        benchmark::DoNotOptimize(writer.text.data());
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

// The second floor: libxml2 building its DOM of the same text, freed at the
// end of the iteration. Its default options: no entity substitution, no
// network, no blank-node removal.
void LibxmlParse(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        xmlDocPtr document =
            xmlReadMemory(input.text.data(), static_cast<int>(input.text.size()), nullptr, "UTF-8", XML_PARSE_NONET);
        if (document == nullptr) {
            state.SkipWithError("libxml2 did not parse the lesson");
            break;
        }
        benchmark::DoNotOptimize(document);
        xmlFreeDoc(document);
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

// ---- Lessons -------------------------------------------------------------------

void FromXMLString(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        auto lesson = Lesson::Create();
        lesson->FromXMLString(input.text);
        benchmark::DoNotOptimize(lesson.get());
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
    state.counters["peak_per_xml_byte"] =
        state.counters["peak_heap"].value / static_cast<double>(input.text.size());
}

void ToXMLString(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        std::string text = input.lesson->ToXMLString();
        benchmark::DoNotOptimize(text.data());
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

void ToClearXMLString(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    std::size_t size = 0;
    for (auto _ : state) {
        std::string text = input.lesson->ToClearXMLString();
        size = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    meter.Report(state);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
    state.counters["xml_bytes"] = static_cast<double>(size);
}

void Clone(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        auto copy = input.lesson->Clone();
        benchmark::DoNotOptimize(copy.get());
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

void Duplicate(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        auto copy = input.lesson->Duplicate();
        benchmark::DoNotOptimize(copy.get());
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

void FormatXMLString(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    PeakMeter meter;
    for (auto _ : state) {
        std::string text = Functions::FormatXMLString(input.text);
        benchmark::DoNotOptimize(text.data());
    }
    meter.Report(state);
    SetTextBytes(state, input.text);
}

// ---- Bags, storyboard lookups, maps ------------------------------------------

std::vector<std::string> BagNames(int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        names.push_back("p" + std::to_string(i));
    }
    return names;
}

// Replaces every property of the bag once per iteration (a long, names in
// another letter case than they were set with, as hosts often write them).
void BagSet(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    auto bag = bench::GenerateBag(count);
    std::vector<std::string> names = BagNames(count);
    for (auto& name : names) {
        name[0] = 'P';
    }
    PeakMeter meter;
    std::int32_t value = 0;
    for (auto _ : state) {
        for (const auto& name : names) {
            bag->SetLong(name, ++value);
        }
    }
    meter.Report(state);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}

// Reads every property of the bag once per iteration, by its type.
void BagGet(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    auto bag = bench::GenerateBag(count);
    const std::vector<std::string> names = BagNames(count);
    PeakMeter meter;
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) {
            const std::string& name = names[static_cast<std::size_t>(i)];
            switch (i % 10) {
                case 0: benchmark::DoNotOptimize(bag->GetBoolean(name, false)); break;
                case 1: benchmark::DoNotOptimize(bag->GetLong(name, 0)); break;
                case 2: benchmark::DoNotOptimize(bag->GetDouble(name, 0.0)); break;
                case 3: benchmark::DoNotOptimize(bag->GetString(name, "").size()); break;
                case 4: benchmark::DoNotOptimize(bag->GetDate(name, 0.0)); break;
                case 5: benchmark::DoNotOptimize(bag->GetColor(name, 0)); break;
                case 6: benchmark::DoNotOptimize(bag->GetFont(name, FontData{}).Size); break;
                case 7: benchmark::DoNotOptimize(bag->GetRectangle(name, Rectangle{}).Width); break;
                case 8: benchmark::DoNotOptimize(bag->GetAsset(name, AssetData{}).Filename.size()); break;
                default: benchmark::DoNotOptimize(bag->GetLocation(name, LocationData{}).StartPoint.size()); break;
            }
        }
    }
    meter.Report(state);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}

// Item and Contains for every storyboard of the lesson, and as many misses.
void StoryboardLookups(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const Input& input = InputOf(count);
    const std::vector<std::string> ids = bench::GeneratedSBIDs(count, 1);
    const std::vector<std::string> missing = bench::GeneratedSBIDs(count, 2);
    auto storyboards = input.lesson->Storyboards();
    PeakMeter meter;
    for (auto _ : state) {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            benchmark::DoNotOptimize(storyboards->Item(ids[i]).get());
            benchmark::DoNotOptimize(storyboards->Contains(missing[i]));
        }
    }
    meter.Report(state);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count * 2);
}

// A map of n items built with InsertStoryboard: the first at the top, every
// other one after, before or under an item placed earlier (chosen from a
// fixed sequence), so that every insertion searches the tree.
void MapInsertStoryboard(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const std::vector<std::string> ids = bench::GeneratedSBIDs(count, 3);
    // The roots and relations, fixed before timing.
    std::vector<std::pair<std::size_t, StoryboardInsertTypes>> steps(ids.size());
    std::uint64_t x = 88172645463325252ull;
    for (std::size_t i = 1; i < ids.size(); ++i) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        const StoryboardInsertTypes relation = (x >> 40) % 2 == 0 ? sbitInsertAfter : sbitInsertAsChild;
        steps[i] = {static_cast<std::size_t>(x % i), relation};
    }
    PeakMeter meter;
    for (auto _ : state) {
        auto map = LessonMap::Create();
        map->InsertStoryboard("", sbitInsertAfter, ids[0]);
        for (std::size_t i = 1; i < ids.size(); ++i) {
            map->InsertStoryboard(ids[steps[i].first], steps[i].second, ids[i]);
        }
        benchmark::DoNotOptimize(map.get());
    }
    meter.Report(state);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * count);
}

void LessonSizes(benchmark::internal::Benchmark* b) {
    b->Arg(bench::kSmallLesson)->Arg(bench::kMediumLesson)->Arg(bench::kLargeLesson);
    b->Unit(benchmark::kMillisecond);
}

BENCHMARK(PugiParse)->Apply(LessonSizes);
BENCHMARK(LibxmlParse)->Apply(LessonSizes);
BENCHMARK(FromXMLString)->Apply(LessonSizes);
BENCHMARK(PugiSerialize)->Apply(LessonSizes);
BENCHMARK(ToXMLString)->Apply(LessonSizes);
BENCHMARK(ToClearXMLString)->Apply(LessonSizes);
BENCHMARK(Clone)->Apply(LessonSizes);
BENCHMARK(Duplicate)->Apply(LessonSizes);
BENCHMARK(FormatXMLString)->Apply(LessonSizes);
BENCHMARK(BagSet)->Arg(10)->Arg(10000);
BENCHMARK(BagGet)->Arg(10)->Arg(10000);
BENCHMARK(StoryboardLookups)->Arg(bench::kSmallLesson)->Arg(bench::kMediumLesson)->Arg(bench::kLargeLesson);
BENCHMARK(MapInsertStoryboard)->Apply(LessonSizes);

void PrintSummary(const bench::CollectingReporter& reporter) {
    auto time = [&](const std::string& name, int size) -> double {
        auto found = reporter.times.find(name + "/" + std::to_string(size));
        return found == reporter.times.end() ? 0.0 : found->second;
    };
    const int sizes[] = {bench::kSmallLesson, bench::kMediumLesson, bench::kLargeLesson};
    std::printf("\nRatios to the floor (target: at most 1.8; reading faster than libxml2's parse)\n");
    std::printf("%8s %12s %12s %10s %11s %12s %12s %10s %12s\n", "size", "xml bytes", "read ms", "read/floor",
                "read/libxml", "write ms", "floor w ms", "write/floor", "peak/xml");
    for (int size : sizes) {
        const double read = time("FromXMLString", size);
        const double parse = time("PugiParse", size);
        const double libxml = time("LibxmlParse", size);
        const double write = time("ToXMLString", size);
        const double serialize = time("PugiSerialize", size);
        if (parse <= 0.0 && serialize <= 0.0) {
            continue;
        }
        const double bytes = static_cast<double>(InputOf(size).text.size());
        double peak = 0.0;
        if (auto found = reporter.peaks.find("FromXMLString/" + std::to_string(size)); found != reporter.peaks.end()) {
            peak = found->second;
        }
        std::printf("%8d %12.0f %12.3f %10.2f %11.2f %12.3f %12.3f %10.2f %12.2f\n", size, bytes, read,
                    parse > 0 ? read / parse : 0.0, libxml > 0 ? read / libxml : 0.0, write, serialize, serialize > 0 ? write / serialize : 0.0,
                    peak / bytes);
    }
    std::printf("\nGrowth from M to L: time at %d / time at %d (target: at most 11, map building excepted)\n",
                bench::kLargeLesson, bench::kMediumLesson);
    for (const char* name : {"PugiParse", "LibxmlParse", "FromXMLString", "PugiSerialize", "ToXMLString", "ToClearXMLString", "Clone",
                             "Duplicate", "FormatXMLString", "StoryboardLookups", "MapInsertStoryboard"}) {
        const double m = time(name, bench::kMediumLesson);
        const double l = time(name, bench::kLargeLesson);
        if (m > 0.0 && l > 0.0) {
            std::printf("%20s %8.2f\n", name, l / m);
        }
    }
    const double bagSmall = time("BagSet", 10);
    const double bagLarge = time("BagSet", 10000);
    if (bagSmall > 0.0 && bagLarge > 0.0) {
        std::printf("%20s %8.2f  (per name, 10,000 names / 10 names)\n", "BagSet", bagLarge / bagSmall / 1000.0);
    }
    const double getSmall = time("BagGet", 10);
    const double getLarge = time("BagGet", 10000);
    if (getSmall > 0.0 && getLarge > 0.0) {
        std::printf("%20s %8.2f  (per name, 10,000 names / 10 names)\n", "BagGet", getLarge / getSmall / 1000.0);
    }
}

}  // namespace

int main(int argc, char** argv) {
    quillbank::bench::InstallMemoryCounter();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    bench::CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintSummary(reporter);
    benchmark::Shutdown();
    return 0;
}
