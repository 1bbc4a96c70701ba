// The core operations timed with a steady clock, for builds that have no
// Google Benchmark (the Windows build, cross-built with MinGW-w64 and run
// under Wine). The same generated lessons as the benchmark suite: reading,
// writing and copying a lesson, FormatXMLString, and a bag of encoded
// properties written and read. Each line has the shape of Google
// Benchmark's console lines: name/size, wall time and the process's CPU time
// per iteration, iterations. On a shared machine the CPU time is the steadier
// figure.
//
//   quillbank_steady_benchmarks [--sizes=100,1000] [--min-time=SECONDS]
//                               [--filter=TEXT]
//   quillbank_steady_benchmarks --save-lesson=SIZE,PATH
//
// A benchmark runs until it has taken --min-time (default 0.5) and at least
// once; --filter runs only the benchmarks whose name holds TEXT. The lessons
// and texts are made before timing. --save-lesson writes the text of the
// generated lesson of SIZE storyboards to PATH, in UTF-16 with a byte order
// mark (what a script host reads as a Unicode text file), and runs nothing.

#include <chrono>
#include <cstdio>
#include <fstream>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <ctime>
#endif

#include <quillbank/quillbank.hpp>

#include "lesson_generator.hpp"
#include "support/text.hpp"

namespace {

using namespace quillbank;
using Clock = std::chrono::steady_clock;

struct Options {
    std::vector<int> sizes{bench::kSmallLesson, bench::kMediumLesson};
    double minTime = 0.5;
    std::string filter;
    int saveSize = 0;
    std::string savePath;
};

bool TakeValue(std::string_view argument, std::string_view name, std::string_view& value) {
    if (argument.substr(0, name.size()) != name) {
        return false;
    }
    value = argument.substr(name.size());
    return true;
}

bool ParseOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        std::string_view value;
        if (TakeValue(argument, "--sizes=", value)) {
            options.sizes.clear();
            while (!value.empty()) {
                const std::size_t comma = value.find(',');
                const std::string number(value.substr(0, comma));
                const int size = std::atoi(number.c_str());
                if (size <= 0) {
                    return false;
                }
                options.sizes.push_back(size);
                value = comma == std::string_view::npos ? std::string_view() : value.substr(comma + 1);
            }
        } else if (TakeValue(argument, "--min-time=", value)) {
            options.minTime = std::atof(std::string(value).c_str());
        } else if (TakeValue(argument, "--filter=", value)) {
            options.filter = value;
        } else if (TakeValue(argument, "--save-lesson=", value)) {
            const std::size_t comma = value.find(',');
            if (comma == std::string_view::npos) {
                return false;
            }
            options.saveSize = std::atoi(std::string(value.substr(0, comma)).c_str());
            options.savePath = value.substr(comma + 1);
            if (options.saveSize <= 0 || options.savePath.empty()) {
                return false;
            }
        } else {
            return false;
        }
    }
    return !options.sizes.empty();
}

// The CPU time the process has used, in seconds.
double ProcessSeconds() {
#ifdef _WIN32
    FILETIME created;
    FILETIME exited;
    FILETIME kernel;
    FILETIME user;
    if (!GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user)) {
        return 0.0;
    }
    const auto ticks = [](const FILETIME& time) {
        return static_cast<double>((static_cast<unsigned long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime);
    };
    return (ticks(kernel) + ticks(user)) / 1e7;
#else
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
#endif
}

// Runs `body` until `minTime` seconds have passed (at least once) and prints
// the mean times of one run.
void Run(const Options& options, const std::string& name, const std::function<void()>& body) {
    if (!options.filter.empty() && name.find(options.filter) == std::string::npos) {
        return;
    }
    const Clock::time_point start = Clock::now();
    const double cpuStart = ProcessSeconds();
    long iterations = 0;
    std::chrono::duration<double> elapsed{};
    do {
        body();
        ++iterations;
        elapsed = Clock::now() - start;
    } while (elapsed.count() < options.minTime);
    const double cpu = ProcessSeconds() - cpuStart;
    const double ms = elapsed.count() * 1000.0 / static_cast<double>(iterations);
    const double cpuMs = cpu * 1000.0 / static_cast<double>(iterations);
    std::printf("%-32s %12.3f ms %12.3f ms %12ld\n", name.c_str(), ms, cpuMs, iterations);
    std::fflush(stdout);
}

// A bag of `count` string properties, every one base64-encoded, half of them
// outside ASCII (the UTF-8 form), as lessons hold them.
std::shared_ptr<PersistedPropertyCollection> EncodedBag(int count) {
    auto bag = PersistedPropertyCollection::Create();
    for (int i = 0; i < count; ++i) {
        const std::string name = "p" + std::to_string(i);
        if (i % 2 == 0) {
            bag->SetString(name, "Fold the paper " + std::to_string(i) + " times", etBase64Encoded);
        } else {
            bag->SetString(name, "Br\xC3\xBC" "che \xE2\x80\x94 " + std::to_string(i), etBase64Encoded);
        }
    }
    return bag;
}

bool SaveLesson(int size, const std::string& path) {
    const std::u16string text = support::Utf8ToUtf16(bench::GenerateLesson(size, 1)->ToXMLString());
    std::ofstream out(path, std::ios::binary);
    out.put('\xFF').put('\xFE');
    for (char16_t unit : text) {
        out.put(static_cast<char>(unit & 0xFF)).put(static_cast<char>(unit >> 8));
    }
    return static_cast<bool>(out.flush());
}

void RunLessons(const Options& options, int size) {
    const auto lesson = bench::GenerateLesson(size, 1);
    const std::string text = lesson->ToXMLString();
    const std::string suffix = "/" + std::to_string(size);
    Run(options, "FromXMLString" + suffix, [&] {
        auto read = Lesson::Create();
        read->FromXMLString(text);
    });
    Run(options, "ToXMLString" + suffix, [&] { (void)lesson->ToXMLString(); });
    Run(options, "ToClearXMLString" + suffix, [&] { (void)lesson->ToClearXMLString(); });
    Run(options, "ToXMLElement" + suffix, [&] {
        auto document = xml::Document::Create();
        (void)lesson->ToXMLElement(document);
    });
    Run(options, "Clone" + suffix, [&] { (void)lesson->Clone(); });
    Run(options, "Duplicate" + suffix, [&] { (void)lesson->Duplicate(); });
    Run(options, "FormatXMLString" + suffix, [&] { (void)Functions::FormatXMLString(text); });
}

void RunEncodedProperties(const Options& options) {
    constexpr int kCount = 1000;
    const auto bag = EncodedBag(kCount);
    const std::string text = bag->ToXMLString();
    const std::string suffix = "/" + std::to_string(kCount);
    Run(options, "EncodedPropertiesWrite" + suffix, [&] { (void)bag->ToXMLString(); });
    Run(options, "EncodedPropertiesRead" + suffix, [&] {
        auto read = PersistedPropertyCollection::Create();
        read->FromXMLString(text);
    });
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!ParseOptions(argc, argv, options)) {
        std::fprintf(stderr,
                     "usage: %s [--sizes=N,N...] [--min-time=SECONDS] [--filter=TEXT]\n"
                     "       %s --save-lesson=SIZE,PATH\n",
                     argv[0], argv[0]);
        return 2;
    }
    if (options.saveSize > 0) {
        if (!SaveLesson(options.saveSize, options.savePath)) {
            std::fprintf(stderr, "%s could not be written\n", options.savePath.c_str());
            return 1;
        }
        return 0;
    }
    std::printf("%-32s %15s %15s %12s\n", "Benchmark", "Time", "CPU", "Iterations");
    std::printf("----------------------------------------------------------------------------------\n");
    try {
        // The libraries the operations load on first use are loaded before timing.
        auto warm = EncodedBag(2);
        PersistedPropertyCollection::Create()->FromXMLString(warm->ToXMLString());
        for (int size : options.sizes) {
            RunLessons(options, size);
        }
        RunEncodedProperties(options);
    } catch (const Error& error) {
        std::fprintf(stderr, "error %d (%s): %s\n", static_cast<int>(error.Number()), error.Source().c_str(),
                     error.Description().c_str());
        return 1;
    }
    return 0;
}
