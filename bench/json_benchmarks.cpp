// The JSON form beside the XML string forms: writing and reading generated
// lessons of 100, 1,000 and 10,000 storyboards as JSON (LessonToJSON,
// LessonFromJSON) and as XML (ToXMLString, FromXMLString). After the run it
// prints, per size, the ratios JSON / XML (target at M: at most 2).
//
// The lessons and texts are made once, before timing, as input.

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <quillbank/json.hpp>
#include <quillbank/quillbank.hpp>

#include "collecting_reporter.hpp"
#include "lesson_generator.hpp"

namespace {

using namespace quillbank;

struct Input {
    std::shared_ptr<Lesson> lesson;
    std::string xml;   // lesson->ToXMLString()
    std::string json;  // LessonToJSON(*lesson)
};

const Input& InputOf(int storyboards) {
    static std::map<int, Input> inputs;
    auto found = inputs.find(storyboards);
    if (found == inputs.end()) {
        Input input;
        input.lesson = bench::GenerateLesson(storyboards, 1);
        input.xml = input.lesson->ToXMLString();
        input.json = LessonToJSON(*input.lesson);
        found = inputs.emplace(storyboards, std::move(input)).first;
    }
    return found->second;
}

void SetBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(text.size()));
    state.counters["text_bytes"] = static_cast<double>(text.size());
}

void ToJSON(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string text = LessonToJSON(*input.lesson);
        benchmark::DoNotOptimize(text.data());
    }
    SetBytes(state, input.json);
}

void FromJSON(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto lesson = LessonFromJSON(input.json);
        benchmark::DoNotOptimize(lesson.get());
    }
    SetBytes(state, input.json);
}

void ToXMLString(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string text = input.lesson->ToXMLString();
        benchmark::DoNotOptimize(text.data());
    }
    SetBytes(state, input.xml);
}

void FromXMLString(benchmark::State& state) {
    const Input& input = InputOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto lesson = Lesson::Create();
        lesson->FromXMLString(input.xml);
        benchmark::DoNotOptimize(lesson.get());
    }
    SetBytes(state, input.xml);
}

void LessonSizes(benchmark::internal::Benchmark* b) {
    b->Arg(bench::kSmallLesson)->Arg(bench::kMediumLesson)->Arg(bench::kLargeLesson)->Unit(benchmark::kMillisecond);
}

BENCHMARK(ToXMLString)->Apply(LessonSizes);
BENCHMARK(ToJSON)->Apply(LessonSizes);
BENCHMARK(FromXMLString)->Apply(LessonSizes);
BENCHMARK(FromJSON)->Apply(LessonSizes);

void PrintSummary(const bench::CollectingReporter& reporter) {
    auto time = [&](const char* name, int size) -> double {
        auto found = reporter.times.find(std::string(name) + "/" + std::to_string(size));
        return found == reporter.times.end() ? 0.0 : found->second;
    };
    std::printf("\nJSON / XML string forms (target at M: at most 2)\n");
    std::printf("%8s %12s %12s %10s %10s %10s %10s %10s %10s\n", "size", "xml bytes", "json bytes", "xml w ms",
                "json w ms", "write", "xml r ms", "json r ms", "read");
    for (int size : {bench::kSmallLesson, bench::kMediumLesson, bench::kLargeLesson}) {
        const double xmlWrite = time("ToXMLString", size);
        const double jsonWrite = time("ToJSON", size);
        const double xmlRead = time("FromXMLString", size);
        const double jsonRead = time("FromJSON", size);
        if (xmlWrite <= 0.0 && xmlRead <= 0.0) {
            continue;
        }
        const Input& input = InputOf(size);
        std::printf("%8d %12zu %12zu %10.3f %10.3f %10.2f %10.3f %10.3f %10.2f\n", size, input.xml.size(),
                    input.json.size(), xmlWrite, jsonWrite, xmlWrite > 0 ? jsonWrite / xmlWrite : 0.0, xmlRead,
                    jsonRead, xmlRead > 0 ? jsonRead / xmlRead : 0.0);
    }
}

}  // namespace

int main(int argc, char** argv) {
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
