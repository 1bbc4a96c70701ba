#include "file_batch.hpp"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <new>
#include <optional>
#include <thread>

#include <fnmatch.h>
#include <sys/stat.h>

#include <quillbank/error.hpp>

#include "lesson_file.hpp"
#include "tool_error.hpp"

namespace fs = std::filesystem;

namespace quillbank::tool {

namespace {

bool IsDirectory(const std::string& path) {
    struct stat status {};
    return path != kStandardStream && ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void CollectDirectory(const std::string& folder, const BatchOptions& options, std::vector<std::string>& files) {
    std::vector<std::string> found;
    std::error_code ec;
    if (options.recursive) {
        for (auto it = fs::recursive_directory_iterator(folder, fs::directory_options::skip_permission_denied, ec);
             !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
            if (!it->is_directory(ec) && ::fnmatch(options.glob.c_str(), it->path().filename().c_str(), 0) == 0) {
                found.push_back(it->path().string());
            }
        }
    } else {
        for (auto it = fs::directory_iterator(folder, fs::directory_options::skip_permission_denied, ec);
             !ec && it != fs::directory_iterator(); it.increment(ec)) {
            if (!it->is_directory(ec) && ::fnmatch(options.glob.c_str(), it->path().filename().c_str(), 0) == 0) {
                found.push_back(it->path().string());
            }
        }
    }
    if (ec) {
        throw ToolError(folder + ": cannot read the directory: " + ec.message());
    }
    std::sort(found.begin(), found.end());
    files.insert(files.end(), found.begin(), found.end());
}

std::string Prefixed(const std::string& text, const std::string& name) {
    std::string out;
    out.reserve(text.size() + 16);
    std::size_t from = 0;
    while (from < text.size()) {
        std::size_t end = text.find('\n', from);
        end = end == std::string::npos ? text.size() : end + 1;
        out += name;
        out += ": ";
        out.append(text, from, end - from);
        from = end;
    }
    return out;
}

FileResult RunOne(const std::string& file, const std::function<FileResult(const std::string&)>& run,
                  const std::function<std::string(const std::string&, const std::string&)>& failureLine) {
    std::string message;
    try {
        return run(file);
    } catch (const ToolError& e) {
        message = e.what();
    } catch (const Error& e) {
        message = (file == kStandardStream ? std::string("(standard input)") : file) + ": " + e.Source() + ": " +
                  e.Description();
    } catch (const std::bad_alloc&) {
        message = "not enough memory to read " + (file == kStandardStream ? std::string("(standard input)") : file);
    }
    std::string line = "quillbank: " + message + "\n";
    std::fflush(stdout);
    std::fwrite(line.data(), 1, line.size(), stderr);
    FileResult failed;
    failed.status = kExitFailure;
    failed.failed = true;
    if (failureLine) {
        failed.out = failureLine(file, message);
    }
    return failed;
}

}  // namespace

std::shared_ptr<BatchOptions> AddBatchOptions(CLI::App& app, const std::string& fileHelp, bool required) {
    auto options = std::make_shared<BatchOptions>();
    auto* files = app.add_option("FILE", options->inputs, fileHelp);
    files->type_name("FILE...");
    if (required) {
        files->required();
    }
    app.add_flag("-r,--recursive", options->recursive, "Look into the subdirectories of a directory too");
    app.add_option("--glob", options->glob, "The files of a directory to take (default *.xml)")->type_name("PATTERN");
    app.add_option("-j,--jobs", options->jobs, "Work on this many files at once (default: one a core)")
        ->type_name("N");
    return options;
}

void AddJsonFlag(CLI::App& app, BatchOptions& options) {
    app.add_flag("--json", options.json,
                 "Write one JSON document a file, one a line (JSON Lines with several files); the shape is "
                 "quillbank-report.schema.json (installed in share/doc/quillbank)");
}

std::vector<std::string> ExpandInputs(const BatchOptions& options) {
    std::vector<std::string> files;
    for (const auto& input : options.inputs) {
        if (IsDirectory(input)) {
            CollectDirectory(input, options, files);
        } else {
            files.push_back(input);
        }
    }
    if (files.empty()) {
        throw ToolError("no lesson files: nothing in the directories given matches " + options.glob +
                        (options.recursive ? "" : " (-r looks into subdirectories)"));
    }
    return files;
}

bool IsMany(const BatchOptions& options, const std::vector<std::string>& files) {
    return files.size() > 1 || std::any_of(options.inputs.begin(), options.inputs.end(), IsDirectory);
}

std::vector<FileResult> RunBatch(const std::vector<std::string>& files, unsigned jobs, bool prefix,
                                 const std::function<FileResult(const std::string&)>& run,
                                 const std::function<std::string(const std::string&, const std::string&)>& failureLine) {
    std::vector<std::optional<FileResult>> done(files.size());
    std::vector<FileResult> results(files.size());
    std::mutex mutex;
    std::condition_variable ready;
    std::atomic<std::size_t> next{0};

    auto work = [&] {
        for (;;) {
            const std::size_t i = next.fetch_add(1);
            if (i >= files.size()) {
                return;
            }
            FileResult result = RunOne(files[i], run, failureLine);
            std::lock_guard lock(mutex);
            done[i] = std::move(result);
            ready.notify_all();
        }
    };

    unsigned threads = jobs != 0 ? jobs : std::max(1u, std::thread::hardware_concurrency());
    threads = static_cast<unsigned>(std::min<std::size_t>(threads, files.size()));
    std::vector<std::jthread> workers;
    // One file, or one job: this thread does the work itself.
    if (threads > 1) {
        for (unsigned t = 0; t < threads; ++t) {
            workers.emplace_back(work);
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (threads <= 1) {
            done[i] = RunOne(files[i], run, failureLine);
        }
        {
            std::unique_lock lock(mutex);
            ready.wait(lock, [&] { return done[i].has_value(); });
            results[i] = std::move(*done[i]);
            done[i].reset();
        }
        const std::string text = prefix ? Prefixed(results[i].out, files[i]) : results[i].out;
        if (!text.empty()) {
            std::fwrite(text.data(), 1, text.size(), stdout);
        }
        results[i].out.clear();
    }
    std::fflush(stdout);
    return results;
}

int WorstStatus(const std::vector<FileResult>& results) {
    int worst = 0;
    for (const auto& result : results) {
        worst = std::max(worst, result.status);
    }
    return worst;
}

}  // namespace quillbank::tool
