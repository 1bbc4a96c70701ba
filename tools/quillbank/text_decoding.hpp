#pragma once

// Turning the bytes of a lesson file into the UTF-8 text the library reads.
//
// Lesson files come as host programs saved them: UTF-8 with or without a
// byte-order mark, UTF-16 (little or big endian) with a byte-order mark, or
// ANSI text in the Windows-1252 code page. The Windows-1252 table lives here,
// in the tool, because reading files is the tool's business: the library's
// public API keeps to the members of the component it stands in for.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillbank::tool {

enum class SourceEncoding {
    Utf8,
    Utf8WithBom,
    Utf16LittleEndian,
    Utf16BigEndian,
    Windows1252,
};

// "UTF-8", "UTF-8 with byte-order mark", "UTF-16LE", "UTF-16BE", "Windows-1252".
std::string_view EncodingName(SourceEncoding encoding);

// A guess the decoder made: a finding code of `check` (E01...) and a
// sentence for people.
struct ReadingNote {
    std::string code;
    std::string sentence;
};

struct DecodedText {
    std::string text;  // UTF-8, without a byte-order mark
    SourceEncoding encoding = SourceEncoding::Utf8;
    std::vector<ReadingNote> notes;
};

// Decodes a whole file:
// - a UTF-8 byte-order mark: UTF-8 (the mark is dropped);
// - a UTF-16 byte-order mark (FF FE or FE FF): UTF-16 of that byte order;
// - no mark, but a zero byte among the first two (XML text holds no NUL
//   character): UTF-16 of the byte order the zero shows (note E02);
// - no mark: Windows-1252 when the XML declaration names it (or
//   ISO-8859-1, Latin-1, which Windows hosts read as Windows-1252), else
//   UTF-8 when the bytes are valid UTF-8; else UTF-8 when the valid
//   multi-byte sequences outnumber the invalid bytes, each invalid byte read
//   as its Windows-1252 character (note E01, with the offsets); else
//   Windows-1252 (note E03).
// A declaration that names another encoding than the one read gives note E04.
// Returns nothing for UTF-16 that is cut short or holds an unpaired
// surrogate.
std::optional<DecodedText> DecodeFileBytes(std::span<const std::uint8_t> bytes);

bool IsValidUtf8(std::string_view bytes);

// Every byte is one character; the five bytes that Windows-1252 leaves
// undefined give the C1 control character of the same number, as Windows does.
std::string Windows1252ToUtf8(std::span<const std::uint8_t> bytes);

}  // namespace quillbank::tool
