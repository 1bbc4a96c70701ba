// Generated bags survive a write and a read: all twelve types, both
// encodings, non-ASCII and CJK names and values, CR LF in strings, nested bags
// and lists several levels deep.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>

#include "support/sort.hpp"

namespace quillbank {
namespace {

// Texts that every code page path keeps: ASCII (with the characters XML
// escapes) and characters of the ANSI code page, some of them above U+00FF.
const std::vector<std::string> kAnsiPieces = {
    "alpha", "Beta", "x&y", "<tag>", "\"quoted\"", "it's", "a>b",
    "caf\xC3\xA9", "Stra\xC3\x9F" "e", "na\xC3\xAFve", "\xE2\x82\xAC" "5", "\xC5\x92uvre", "\xE2\x84\xA2",
};
// Texts that only UTF-8 keeps: CJK, Hangul, Greek, and a character beyond the BMP.
const std::vector<std::string> kWidePieces = {
    "\xE4\xB8\xAD\xE6\x96\x87", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", "\xED\x95\x9C\xEA\xB5\xAD\xEC\x96\xB4",
    "\xCE\x95\xCE\xBB\xCE\xBB\xCE\xAC\xCE\xB4\xCE\xB1", "\xF0\x9F\x98\x80",
};

class Generator {
public:
    explicit Generator(unsigned seed) : rng_(seed) {}

    std::shared_ptr<PersistedPropertyCollection> Bag(int depth, bool ansiOnly) {
        auto bag = PersistedPropertyCollection::Create();
        bag->SetName(Text(ansiOnly, false));
        const int count = Between(1, 8);
        for (int i = 0; i < count; ++i) {
            AddProperty(*bag, depth, ansiOnly);
        }
        return bag;
    }

private:
    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }
    bool Chance(int percent) { return Between(1, 100) <= percent; }

    const std::string& Piece(bool ansiOnly) {
        if (!ansiOnly && Chance(40)) {
            return kWidePieces[static_cast<std::size_t>(Between(0, static_cast<int>(kWidePieces.size()) - 1))];
        }
        return kAnsiPieces[static_cast<std::size_t>(Between(0, static_cast<int>(kAnsiPieces.size()) - 1))];
    }

    // Words joined by spaces or line breaks; never blank, never starting or
    // ending with whitespace (a reader without whitespace preservation trims
    // element texts).
    std::string Text(bool ansiOnly, bool lines) {
        std::string text = Piece(ansiOnly);
        const int more = Between(0, 3);
        for (int i = 0; i < more; ++i) {
            text += lines && Chance(50) ? "\r\n" : " ";
            text += Piece(ansiOnly);
        }
        return text;
    }

    // Unique without regard to case.
    std::string Name(bool ansiOnly) { return Piece(ansiOnly) + "_" + std::to_string(next_++); }

    void AddProperty(PersistedPropertyCollection& bag, int depth, bool ansiOnly) {
        const int type = Between(1, depth > 0 ? 12 : 10);
        const EncodingTypes encoding = Chance(40) ? etBase64Encoded : etNotEncoded;
        // Every encoded type but a string goes through the ANSI code page.
        const bool ansi = ansiOnly || (encoding == etBase64Encoded && type != ptString);
        const std::string name = Name(ansi);
        switch (type) {
            case ptBoolean:
                bag.SetBoolean(name, Chance(50), encoding);
                break;
            case ptLong:
                bag.SetLong(name, static_cast<std::int32_t>(rng_()), encoding);
                break;
            case ptDouble:
                bag.SetDouble(name, Double(), encoding);
                break;
            case ptString:
                bag.SetString(name, Chance(10) ? std::string() : Text(ansi, true), encoding);
                break;
            case ptDate:
                bag.SetDate(name, Between(0, 80000) + Between(0, 86399) / 86400.0, encoding);
                break;
            case ptColor:
                bag.SetColor(name, rng_() & 0xFFFFFFu, encoding);
                break;
            case ptFont:
                bag.SetFont(name, FontData{Text(ansi, false), Between(2, 144) / 2.0, Chance(50), Chance(50), Chance(50)},
                            encoding);
                break;
            case ptRectangle:
                bag.SetRectangle(name,
                                 Rectangle{static_cast<std::int32_t>(rng_()), static_cast<std::int32_t>(rng_()),
                                           static_cast<std::int32_t>(rng_()), static_cast<std::int32_t>(rng_())},
                                 encoding);
                break;
            case ptAsset:
                bag.SetAsset(name,
                             AssetData{Text(ansi, false), Chance(70) ? Text(ansi, true) : std::string(),
                                       Chance(70) ? Text(ansi, true) : std::string()},
                             encoding);
                break;
            case ptLocation: {
                LocationData location{Chance(70) ? Text(ansi, false) : std::string(),
                                      Chance(70) ? Text(ansi, false) : std::string(),
                                      Chance(50) ? Text(ansi, false) : std::string()};
                bag.SetLocation(name, location, encoding);
                break;
            }
            case ptPPC:
                bag.SetPPC(name, Bag(depth - 1, ansi), encoding);
                break;
            default: {
                auto list = ChildElementCollection::Create();
                list->SetName(Text(ansi, false));
                const int count = Between(1, 3);
                for (int i = 0; i < count; ++i) {
                    auto element = ChildElement::Create();
                    element->FromPPC(Bag(depth - 1, ansi));
                    if (Chance(20)) {
                        element->SetName("");
                    }
                    element->SetElementType(Chance(80) ? Text(ansi, false) : std::string());
                    list->Append(element);
                }
                bag.SetCEC(name, list, encoding);
                break;
            }
        }
    }

    double Double() {
        switch (Between(0, 3)) {
            case 0:
                return std::uniform_real_distribution<double>(-1e6, 1e6)(rng_);
            case 1:
                return std::ldexp(std::uniform_real_distribution<double>(-1, 1)(rng_), Between(-60, 60));
            case 2:
                return static_cast<double>(Between(-1000, 1000));
            default:
                return Between(-1000, 1000) / 8.0;
        }
    }

    std::mt19937 rng_;
    int next_ = 0;
};

std::vector<std::string> Sorted(std::vector<std::string> names) {
    if (names.size() == 1 && names.front().empty()) {
        return {};
    }
    support::SortStrings(names);
    return names;
}

// The order a reader sees: the plain properties sorted, then the encoded ones
// sorted; or, from the clear form, all of them sorted.
std::vector<std::string> WrittenOrder(const PersistedPropertyCollection& bag, bool clear) {
    if (clear) {
        return Sorted(bag.GetPropertyNameArray());
    }
    std::vector<std::string> names = Sorted(bag.GetPropertyNameArray(etNotEncoded));
    for (auto& name : Sorted(bag.GetPropertyNameArray(etBase64Encoded))) {
        names.push_back(name);
    }
    return names;
}

void ExpectSameBag(const PersistedPropertyCollection& expected, const PersistedPropertyCollection& actual,
                   bool clear, const std::string& path);

void ExpectSameList(const ChildElementCollection& expected, const ChildElementCollection& actual,
                    const std::string& path) {
    EXPECT_EQ(actual.Name(), expected.Name()) << path;
    ASSERT_EQ(actual.Count(), expected.Count()) << path;
    for (std::int32_t i = 0; i < expected.Count(); ++i) {
        const auto& e = *expected.Item(i);
        const auto& a = *actual.Item(i);
        const std::string where = path + "[" + std::to_string(i) + "]";
        EXPECT_EQ(a.Name(), e.Name()) << where;
        EXPECT_EQ(a.ElementType(), e.ElementType()) << where;
        ExpectSameBag(*e.PPCObject(), *a.PPCObject(), false, where);
    }
}

void ExpectSameBag(const PersistedPropertyCollection& expected, const PersistedPropertyCollection& actual,
                   bool clear, const std::string& path) {
    EXPECT_EQ(actual.Name(), expected.Name()) << path;
    const auto names = WrittenOrder(expected, clear);
    ASSERT_EQ(actual.GetPropertyNameArray(), names.empty() ? std::vector<std::string>{""} : names) << path;
    for (const std::string& name : names) {
        const std::string where = path + "/" + name;
        const PropertyTypes type = expected.GetPropertyType(name);
        ASSERT_EQ(actual.GetPropertyType(name), type) << where;
        EXPECT_EQ(actual.GetEncodingType(name), clear ? etNotEncoded : expected.GetEncodingType(name)) << where;
        switch (type) {
            case ptDate:
                // Dates are written to the second.
                EXPECT_NEAR(actual.GetDate(name, -1), expected.GetDate(name, -2), 1e-8) << where;
                break;
            case ptPPC:
                ExpectSameBag(*expected.GetPPC(name, nullptr), *actual.GetPPC(name, nullptr), false, where);
                break;
            case ptCEC:
                ExpectSameList(*expected.GetCEC(name, nullptr), *actual.GetCEC(name, nullptr), where);
                break;
            default:
                EXPECT_EQ(actual.GetValue(name), expected.GetValue(name)) << where;
                break;
        }
    }
}

class BagRoundTrip : public ::testing::TestWithParam<unsigned> {};

TEST_P(BagRoundTrip, NormalFormReadsBackAnEqualBag) {
    Generator generator(GetParam());
    auto bag = generator.Bag(4, false);
    const std::string text = bag->ToXMLString();
    auto back = PersistedPropertyCollection::Create();
    back->FromXMLString(text);
    ExpectSameBag(*bag, *back, false, "");
    EXPECT_EQ(back->ToXMLString(), text);
}

TEST_P(BagRoundTrip, ClearFormReadsBackAnEqualUnencodedBag) {
    Generator generator(GetParam() + 1000);
    auto bag = generator.Bag(4, false);
    const std::string text = bag->ToClearXMLString();
    auto back = PersistedPropertyCollection::Create();
    back->FromXMLString(text);
    ExpectSameBag(*bag, *back, true, "");
    EXPECT_EQ(back->ToClearXMLString(), text);
}

TEST_P(BagRoundTrip, ChildElementStringReadsBackAnEqualElement) {
    Generator generator(GetParam() + 2000);
    auto element = ChildElement::Create();
    element->FromPPC(generator.Bag(3, false));
    element->SetElementType("generated \xE4\xB8\xAD");
    auto back = ChildElement::Create();
    back->FromXMLString(element->ToXMLString());
    EXPECT_EQ(back->ElementType(), element->ElementType());
    ExpectSameBag(*element->PPCObject(), *back->PPCObject(), false, "ce");
}

TEST_P(BagRoundTrip, CloneIsAnEqualBag) {
    Generator generator(GetParam() + 3000);
    auto bag = generator.Bag(4, false);
    auto copy = bag->Clone();
    EXPECT_EQ(copy->GetPropertyNameArray(), bag->GetPropertyNameArray());
    EXPECT_EQ(copy->ToXMLString(), bag->ToXMLString());
}

INSTANTIATE_TEST_SUITE_P(Seeds, BagRoundTrip, ::testing::Range(0u, 30u));

}  // namespace
}  // namespace quillbank
