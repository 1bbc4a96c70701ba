// Gives one optional double parameter of a type library its default value,
// which widl cannot write: widl leaves such a parameter optional with no
// default. Built for the build machine and run on widl's output:
//
//   set_double_default IN.tlb OUT.tlb FUNCTION PARAMETER VALUE
//
// Every record of FUNCTION (the dispatch and the vtable half of a dual
// interface each have one) gets PARAMETER marked as having a default, and
// the default slot points at a VT_R8 value appended to the custom-data
// segment; the segments and member tables after that segment move up by the
// size of the value. The patch is checked: the parameter must be an
// optional [in] double with no default yet, or nothing is written.
//
// The type-library file (the "MSFT" format): a header, the offsets of the
// type infos, a directory of fifteen segments (offset, length, two reserved
// words), the segments, then each type info's member records at the
// type info's memoffset.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kMagic = 0x5446534D;  // "MSFT"
constexpr int kHeaderSize = 0x54;
constexpr int kHelpDllFlag = 0x100;
constexpr int kSegmentCount = 15;
constexpr int kTypeInfoSegment = 0;
constexpr int kNameSegment = 7;
constexpr int kCustomDataSegment = 11;
constexpr int kTypeInfoSize = 0x64;
constexpr int kParamFlagIn = 0x01;
constexpr int kParamFlagOptional = 0x10;
constexpr int kParamFlagHasDefault = 0x20;
constexpr int kFuncHasDefaults = 0x1000;
constexpr std::uint16_t kVtR8 = 5;

[[noreturn]] void Fail(const std::string& message) {
    std::fprintf(stderr, "set_double_default: %s\n", message.c_str());
    std::exit(1);
}

class Library {
public:
    explicit Library(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {
        if (bytes_.size() < kHeaderSize || Read(0) != static_cast<std::int32_t>(kMagic)) {
            Fail("not a type library");
        }
        const int typeInfos = Read(0x20);
        const int extra = (Read(0x14) & kHelpDllFlag) != 0 ? 4 : 0;
        segments_ = kHeaderSize + extra + typeInfos * 4;
        if (segments_ + kSegmentCount * 16 > static_cast<int>(bytes_.size())) {
            Fail("the segment directory lies outside the file");
        }
    }

    std::int32_t Read(std::size_t at) const {
        if (at + 4 > bytes_.size()) {
            Fail("a read past the end of the file");
        }
        std::int32_t value;
        std::memcpy(&value, &bytes_[at], 4);
        return value;
    }
    void Write(std::size_t at, std::int32_t value) { std::memcpy(&bytes_[at], &value, 4); }

    int SegmentOffset(int segment) const { return Read(segments_ + segment * 16); }
    int SegmentLength(int segment) const { return Read(segments_ + segment * 16 + 4); }

    std::string Name(int offset) const {
        const std::size_t at = static_cast<std::size_t>(SegmentOffset(kNameSegment) + offset);
        const int length = Read(at + 8) & 0xFF;
        if (at + 12 + length > bytes_.size()) {
            Fail("a name past the end of the file");
        }
        return std::string(reinterpret_cast<const char*>(&bytes_[at + 12]), length);
    }

    // The file offsets of the records of every member named `name`.
    std::vector<std::size_t> FunctionRecords(const std::string& name) const {
        std::vector<std::size_t> found;
        const int table = SegmentOffset(kTypeInfoSegment);
        const int count = SegmentLength(kTypeInfoSegment) / kTypeInfoSize;
        for (int i = 0; i < count; ++i) {
            const std::size_t info = static_cast<std::size_t>(table + i * kTypeInfoSize);
            const int memoffset = Read(info + 0x04);
            const int elements = Read(info + 0x18);
            const int functions = elements & 0xFFFF;
            const int members = functions + ((elements >> 16) & 0xFFFF);
            if (functions == 0 || memoffset < 0 || memoffset >= static_cast<int>(bytes_.size())) {
                continue;
            }
            // The records one after the other, then the member identifiers,
            // the name offsets and the record offsets.
            std::size_t record = static_cast<std::size_t>(memoffset) + 4;
            const std::size_t tables = record + static_cast<std::size_t>(Read(memoffset));
            for (int f = 0; f < functions; ++f) {
                const int nameOffset = Read(tables + 4 * (members + f));
                if (nameOffset >= 0 && Name(nameOffset) == name) {
                    found.push_back(record);
                }
                record += static_cast<std::size_t>(Read(record) & 0xFFFF);
            }
        }
        return found;
    }

    // Where the custom-data segment ends: what lies from here on moves up
    // when data is appended to it.
    std::size_t CustomDataEnd() const {
        return static_cast<std::size_t>(SegmentOffset(kCustomDataSegment) + SegmentLength(kCustomDataSegment));
    }

    // Appends `data` to the custom-data segment; returns its offset there.
    int AppendCustomData(const std::vector<unsigned char>& data) {
        const int start = SegmentOffset(kCustomDataSegment);
        const int length = SegmentLength(kCustomDataSegment);
        if (start < 0) {
            Fail("the type library has no custom-data segment");
        }
        const int end = start + length;
        const int size = static_cast<int>(data.size());
        for (int s = 0; s < kSegmentCount; ++s) {
            const int offset = SegmentOffset(s);
            if (s != kCustomDataSegment && offset >= end) {
                Write(segments_ + s * 16, offset + size);
            }
        }
        const int table = SegmentOffset(kTypeInfoSegment);
        const int count = SegmentLength(kTypeInfoSegment) / kTypeInfoSize;
        for (int i = 0; i < count; ++i) {
            const std::size_t info = static_cast<std::size_t>(table + i * kTypeInfoSize);
            const int memoffset = Read(info + 0x04);
            if (memoffset >= end) {
                Write(info + 0x04, memoffset + size);
            }
        }
        Write(segments_ + kCustomDataSegment * 16 + 4, length + size);
        bytes_.insert(bytes_.begin() + end, data.begin(), data.end());
        return length;
    }

    const std::vector<unsigned char>& Bytes() const { return bytes_; }

private:
    std::vector<unsigned char> bytes_;
    int segments_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        Fail("usage: set_double_default IN.tlb OUT.tlb FUNCTION PARAMETER-INDEX VALUE");
    }
    std::ifstream in(argv[1], std::ios::binary);
    if (!in) {
        Fail(std::string("cannot read ") + argv[1]);
    }
    Library library(std::vector<unsigned char>(std::istreambuf_iterator<char>(in), {}));
    const std::string function = argv[3];
    const int parameter = std::atoi(argv[4]);
    const double value = std::strtod(argv[5], nullptr);

    const std::vector<std::size_t> records = library.FunctionRecords(function);
    if (records.empty()) {
        Fail("no member named " + function);
    }
    // The record: size and index, return type, flags, vtable offset, kind
    // bits, argument counts; then the optional attributes, one default slot
    // per argument, and three words (type, name, flags) per argument.
    std::vector<std::size_t> slots;
    std::vector<std::size_t> flags;
    for (const std::size_t record : records) {
        const int size = library.Read(record) & 0xFFFF;
        const int kind = library.Read(record + 16);
        const int arguments = library.Read(record + 20) & 0xFFFF;
        if ((kind & kFuncHasDefaults) == 0 || parameter < 0 || parameter >= arguments) {
            Fail(function + " has no default slots or no such parameter");
        }
        const std::size_t parameters = record + static_cast<std::size_t>(size - arguments * 12);
        const std::size_t info = parameters + static_cast<std::size_t>(parameter * 12);
        const std::size_t slot = parameters - static_cast<std::size_t>((arguments - parameter) * 4);
        const int type = library.Read(info);
        const int parameterFlags = library.Read(info + 8);
        if (type != static_cast<int>(0x80000000u | (kVtR8 << 16) | kVtR8)) {
            Fail("the parameter is not a double");
        }
        if ((parameterFlags & (kParamFlagIn | kParamFlagOptional)) != (kParamFlagIn | kParamFlagOptional) ||
            (parameterFlags & kParamFlagHasDefault) != 0 || library.Read(slot) != -1) {
            Fail("the parameter is not an optional [in] parameter without a default");
        }
        slots.push_back(slot);
        flags.push_back(info + 8);
    }

    // The value: its type, the eight bytes of the double, padding to a word.
    std::vector<unsigned char> data(12, 0x57);
    data[0] = static_cast<unsigned char>(kVtR8);
    data[1] = 0;
    std::memcpy(&data[2], &value, 8);
    const std::size_t end = library.CustomDataEnd();
    const int offset = library.AppendCustomData(data);
    const auto moved = [&](std::size_t at) { return at >= end ? at + data.size() : at; };
    for (std::size_t i = 0; i < slots.size(); ++i) {
        library.Write(moved(slots[i]), offset);
        library.Write(moved(flags[i]), library.Read(moved(flags[i])) | kParamFlagHasDefault);
    }

    std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(library.Bytes().data()),
              static_cast<std::streamsize>(library.Bytes().size()));
    if (!out) {
        Fail(std::string("cannot write ") + argv[2]);
    }
    return 0;
}
