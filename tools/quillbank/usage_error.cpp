#include "usage_error.hpp"

#include <iostream>
#include <string>
#include <vector>

#include "suggestion.hpp"
#include "tool_error.hpp"

namespace quillbank::tool {

namespace {

// The first argument that is not an option of the program itself.
std::string FirstWord(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument == "--max-size") {
            ++i;
            continue;
        }
        if (argument.starts_with("--max-size=")) {
            continue;
        }
        return argument;
    }
    return "";
}

std::vector<std::string> SubcommandNames(const CLI::App& program) {
    std::vector<std::string> names;
    for (const auto* sub : program.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(sub->get_name());
    }
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* level = &app; level != nullptr; level = level->get_parent()) {
        for (const auto* option : level->get_options()) {
            for (const auto& name : option->get_lnames()) {
                names.push_back("--" + name);
            }
            for (const auto& name : option->get_snames()) {
                names.push_back("-" + name);
            }
        }
    }
    return names;
}

// The words the parser did not expect, from its message.
std::vector<std::string> Unexpected(const CLI::ParseError& error) {
    std::string text = error.what();
    std::vector<std::string> words;
    auto colon = text.find(": ");
    if (colon == std::string::npos) {
        return words;
    }
    std::string rest = text.substr(colon + 2);
    std::size_t from = 0;
    while (from < rest.size()) {
        std::size_t end = rest.find(' ', from);
        if (end == std::string::npos) {
            end = rest.size();
        }
        if (end > from) {
            words.push_back(rest.substr(from, end - from));
        }
        from = end + 1;
    }
    return words;
}

}  // namespace

int ReportUsageError(CLI::App& program, const CLI::ParseError& error, int argc, char** argv) {
    CLI::App* chosen = nullptr;
    for (auto* sub : program.get_subcommands([](const CLI::App*) { return true; })) {
        if (sub->parsed()) {
            chosen = sub;
        }
    }
    const std::string help = chosen ? "quillbank " + chosen->get_name() + " --help" : "quillbank --help";
    const std::string who = chosen ? "quillbank " + chosen->get_name() : "quillbank";

    if (chosen == nullptr) {
        const std::string first = FirstWord(argc, argv);
        if (!first.empty() && first[0] != '-') {
            std::cerr << "quillbank: no subcommand named " << first;
            if (auto near = Nearest(first, SubcommandNames(program))) {
                std::cerr << "; did you mean `" << *near << "`?";
            }
            std::cerr << " (see quillbank --help)\n";
            return kExitFailure;
        }
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        for (const auto& word : Unexpected(error)) {
            if (word.starts_with("-")) {
                const std::string name = word.substr(0, word.find('='));
                std::cerr << who << ": unknown option " << name;
                if (auto near = Nearest(name, OptionNames(chosen ? *chosen : program))) {
                    std::cerr << "; did you mean `" << *near << "`?";
                }
                std::cerr << " (see " << help << ")\n";
                return kExitFailure;
            }
        }
    }
    std::cerr << who << ": " << error.what() << " (see " << help << ")\n";
    return kExitFailure;
}

}  // namespace quillbank::tool
