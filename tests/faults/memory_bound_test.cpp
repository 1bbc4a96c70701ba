// The memory a read takes stays within a fixed multiple of the text's size
// (docs/robustness.md gives the bound): peak bytes in use during
// Lesson::FromXMLString, above what was in use before, counting the text's
// own copies, the document model and the lesson built from it.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <quillbank/quillbank.hpp>

#include "faults/allocation_hooks.hpp"

namespace quillbank {
namespace {

// The documented bound: kPerByte bytes of memory per byte of text, plus a
// fixed kFixed.
constexpr double kPerByte = 40.0;
constexpr std::size_t kFixed = 1 << 20;

std::string Repeat(const std::string& piece, std::size_t times) {
    std::string text;
    text.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

void ExpectReadWithinBound(const std::string& what, const std::string& text) {
    auto lesson = Lesson::Create();
    const std::size_t base = faults::BytesInUse();
    faults::ResetPeak();
    try {
        lesson->FromXMLString(text);
    } catch (const Error&) {
    }
    const std::size_t used = faults::PeakBytes() - base;
    const double perByte = static_cast<double>(used) / static_cast<double>(text.size());
    std::printf("%s: %zu bytes of text, peak %zu bytes in use (%.1f a byte)\n", what.c_str(), text.size(), used,
                perByte);
    EXPECT_LE(static_cast<double>(used), kPerByte * static_cast<double>(text.size()) + kFixed) << what;
}

TEST(MemoryBound, ReadingStaysWithinAFixedMultipleOfTheText) {
    ExpectReadWithinBound("a 4 MB attribute", "<lesson title=\"" + std::string(4u << 20, 'x') + "\"/>");
    ExpectReadWithinBound("50,000 empty elements", "<lesson>" + Repeat("<x/>", 50000) + "</lesson>");
    ExpectReadWithinBound("50,000 empty elements in a bag", "<lesson><ppc>" + Repeat("<x/>", 50000) + "</ppc></lesson>");
    ExpectReadWithinBound("50,000 empty properties",
                          "<lesson><ppc>" + Repeat("<intProp/>", 50000) + "</ppc></lesson>");
    ExpectReadWithinBound("5,000 named properties", [] {
        std::string text = "<lesson><ppc>";
        for (int i = 0; i < 5000; ++i) {
            text += "<intProp name=\"p" + std::to_string(i) + "\" value=\"1\"/>";
        }
        return text + "</ppc></lesson>";
    }());
    ExpectReadWithinBound("2,500 storyboards", [] {
        std::string text = "<lesson><storyboards>";
        for (int i = 0; i < 2500; ++i) {
            text += "<storyboard sbid=\"S" + std::to_string(i) + "\"><ppc/><cec><ce/></cec></storyboard>";
        }
        return text + "</storyboards></lesson>";
    }());
    ExpectReadWithinBound("25,000 nested elements",
                          "<lesson>" + Repeat("<x>", 25000) + Repeat("</x>", 25000) + "</lesson>");
    ExpectReadWithinBound("the nesting limit of bags, 100 times over",
                          "<lesson><ppc>" + Repeat("<ppcProp name=\"p\"><ppc>", 20000) +
                              Repeat("</ppc></ppcProp>", 20000) + "</ppc></lesson>");
    ExpectReadWithinBound("25,000 map items",
                          "<lesson><maps><map name=\"m\">" + Repeat("<item sbid=\"A\"/>", 25000) +
                              "</map></maps></lesson>");
}

}  // namespace
}  // namespace quillbank
