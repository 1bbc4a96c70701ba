// Writes generated lessons to files, for measuring the quillbank tool on
// folders and on large lessons (scripts/bench-tool.sh).
//
//   quillbank_write_lessons FOLDER COUNT STORYBOARDS
//
// writes FOLDER/lesson-0001.xml ... each a lesson of STORYBOARDS
// storyboards from its own seed, in the normal form.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "lesson_generator.hpp"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: quillbank_write_lessons FOLDER COUNT STORYBOARDS\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const int count = std::atoi(argv[2]);
    const int storyboards = std::atoi(argv[3]);
    std::filesystem::create_directories(folder);
    for (int i = 1; i <= count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "lesson-%04d.xml", i);
        const std::string text =
            quillbank::bench::GenerateLesson(storyboards, static_cast<std::uint64_t>(i))->ToXMLString();
        std::ofstream out(folder / name, std::ios::binary);
        out << text;
        if (!out) {
            std::cerr << "cannot write " << (folder / name).string() << '\n';
            return 1;
        }
    }
    return 0;
}
