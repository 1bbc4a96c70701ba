// Deterministic lessons of any size; see lesson_generator.hpp.

#include "lesson_generator.hpp"

#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

#include "storyboards/storyboard_access.hpp"

namespace quillbank::bench {

namespace {

// SplitMix64: small, fast, and the same everywhere.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t Next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // A number from 0 to bound - 1.
    int Below(int bound) { return static_cast<int>(Next() % static_cast<std::uint64_t>(bound)); }
    bool Chance(int oneIn) { return Below(oneIn) == 0; }

private:
    std::uint64_t state_;
};

// Texts that stay exact through a write and a read: no whitespace at either
// end, line breaks as CR LF. The first group keeps to the Windows-1252 code
// page, which is what an encoded property other than a string is stored in.
constexpr std::array kAnsiTexts{
    std::string_view("Halves and quarters"),
    std::string_view("Fold the paper once, then again."),
    std::string_view("Caf\xC3\xA9 cr\xC3\xA8me \xE2\x82\xAC" "5"),  // Café crème €5
    std::string_view("Tom & Jerry <share> \"a pie\""),
    std::string_view("Step one\r\nStep two"),
    std::string_view("Na\xC3\xAFve r\xC3\xA9sum\xC3\xA9"),  // Naïve résumé
    std::string_view("Press Next to continue"),
    std::string_view("Which is larger: 1/2 or 2/4?"),
};
constexpr std::array kWideTexts{
    std::string_view("\xE5\x88\x86\xE6\x95\xB0\xE3\x81\xAE\xE7\xB7\xB4\xE7\xBF\x92"),  // 分数の練習
    std::string_view("\xD0\x94\xD1\x80\xD0\xBE\xD0\xB1\xD0\xB8 \xE2\x80\x94 \xD0\xBF\xD0\xBE\xD0\xBB\xD0\xBE"
                     "\xD0\xB2\xD0\xB8\xD0\xBD\xD0\xB0"),  // Дроби — половина
    std::string_view("Br\xC3\xBC" "che \xE2\x80\x94 H\xC3\xA4lften \xF0\x9F\x8D\xB0"),  // Brüche — Hälften 🍰
};

class Generator {
public:
    Generator(int storyboards, std::uint64_t seed) : random_(seed ^ 0x5157494C4C42414Bull), seed_(seed) {
        ids_ = GeneratedSBIDs(storyboards, seed);
    }

    std::shared_ptr<Lesson> Make() {
        auto lesson = Lesson::Create();
        lesson->SetLessonID(GeneratedSBID(seed_, -1));
        lesson->SetTitle("Fractions " + std::to_string(ids_.size()));
        lesson->SetIdentifier("GEN-" + std::to_string(seed_));
        lesson->SetClassification("Internal Use");
        auto& bag = *lesson->Properties();
        bag.SetString("author", Text(false));
        bag.SetLong("version", 3);
        bag.SetDate("created", 45000.25);
        bag.SetPPC("theme", NestedBag(1, false));

        const int count = static_cast<int>(ids_.size());
        for (int i = 0; i < count; ++i) {
            auto sb = Storyboard::Create();
            detail::StoryboardAccess::SetSBID(*sb, ids_[static_cast<std::size_t>(i)]);
            sb->SetTitle("Page " + std::to_string(i + 1) + " " + std::string(Text(false)));
            if (random_.Chance(2)) sb->SetIdentifier("P" + std::to_string(i + 1));
            sb->SetSBType(random_.Chance(3) ? "quiz" : "page");
            if (random_.Chance(4)) sb->SetClassification("Internal Use");
            FillStoryboardBag(*sb->Properties(), i);
            for (int c = 0, children = 3 + random_.Below(3); c < children; ++c) {
                sb->Children()->Append(Child(c));
            }
            lesson->Storyboards()->Add(sb);
        }

        const char* names[] = {"Main", "Review", "Remedial"};
        std::shared_ptr<LessonMap> maps[3];
        for (int m = 0; m < 3; ++m) {
            maps[m] = Map(names[m], m);
            lesson->Maps()->Append(maps[m]);
        }
        lesson->Maps()->SetDefaultMap(maps[1]);
        return lesson;
    }

    std::shared_ptr<PersistedPropertyCollection> Bag(int count) {
        auto bag = PersistedPropertyCollection::Create();
        for (int i = 0; i < count; ++i) {
            const std::string name = "p" + std::to_string(i);
            switch (i % 10) {
                case 0: bag->SetBoolean(name, random_.Chance(2)); break;
                case 1: bag->SetLong(name, static_cast<std::int32_t>(random_.Next())); break;
                case 2: bag->SetDouble(name, Double()); break;
                case 3: bag->SetString(name, Text(false)); break;
                case 4: bag->SetDate(name, Date()); break;
                case 5: bag->SetColor(name, Color()); break;
                case 6: bag->SetFont(name, Font(false)); break;
                case 7: bag->SetRectangle(name, Rect()); break;
                case 8: bag->SetAsset(name, Asset(false)); break;
                default: {
                    LocationData location{AnyId(), "", ""};
                    bag->SetLocation(name, location);
                    break;
                }
            }
        }
        return bag;
    }

private:
    // About a fifth of the properties are encoded.
    EncodingTypes Encoding() { return random_.Chance(5) ? etBase64Encoded : etNotEncoded; }

    std::string_view Text(bool ansi) {
        if (!ansi && random_.Chance(4)) {
            return kWideTexts[static_cast<std::size_t>(random_.Below(static_cast<int>(kWideTexts.size())))];
        }
        return kAnsiTexts[static_cast<std::size_t>(random_.Below(static_cast<int>(kAnsiTexts.size())))];
    }
    double Double() { return static_cast<double>(random_.Below(2000000) - 1000000) / 64.0; }
    quillbank::Date Date() { return 40000 + random_.Below(10000) + random_.Below(4) * 0.25; }
    OleColor Color() { return static_cast<OleColor>(random_.Below(0x1000000)); }
    FontData Font(bool ansi) {
        static constexpr std::string_view faces[] = {"Arial", "Tahoma", "Times New Roman",
                                                     "MS \xE3\x82\xB4\xE3\x82\xB7\xE3\x83\x83\xE3\x82\xAF"};
        return FontData{std::string(faces[random_.Below(ansi ? 3 : 4)]), 8 + random_.Below(20) / 2.0, random_.Chance(3),
                        random_.Chance(5), random_.Chance(7)};
    }
    quillbank::Rectangle Rect() {
        return quillbank::Rectangle{random_.Below(800), random_.Below(600), 1 + random_.Below(400), 1 + random_.Below(300)};
    }
    AssetData Asset(bool ansi) {
        return AssetData{"media/asset" + std::to_string(random_.Below(1000)) + ".png", std::string(Text(ansi)),
                         random_.Chance(2) ? "library" : ""};
    }
    const std::string& AnyId() { return ids_[static_cast<std::size_t>(random_.Below(static_cast<int>(ids_.size())))]; }
    const std::string& IdAt(int index) {
        const int count = static_cast<int>(ids_.size());
        return ids_[static_cast<std::size_t>(((index % count) + count) % count)];
    }

    // A bag inside a property; `depth` 1 or 2. Properties encoded at any
    // level keep what they hold to the ANSI code page (`ansi`).
    std::shared_ptr<PersistedPropertyCollection> NestedBag(int depth, bool ansi) {
        auto bag = PersistedPropertyCollection::Create();
        bag->SetName(depth == 1 ? "style" : "palette");
        bag->SetString("align", random_.Chance(2) ? "centre" : "left");
        bag->SetRectangle("margin", Rect());
        bag->SetColor("border", Color());
        bag->SetFont("font", Font(ansi));
        if (depth < 2) {
            bag->SetPPC("palette", NestedBag(depth + 1, ansi));
            bag->SetCEC("parts", NestedList(depth + 1, ansi));
        } else {
            bag->SetString("note", Text(ansi));
        }
        return bag;
    }

    std::shared_ptr<ChildElementCollection> NestedList(int depth, bool ansi) {
        auto list = ChildElementCollection::Create();
        list->SetName(depth == 1 ? "steps" : "parts");
        for (int i = 0, count = 2 + random_.Below(2); i < count; ++i) {
            auto child = ChildElement::Create();
            child->SetName("step" + std::to_string(i + 1));
            child->SetElementType("text");
            child->SetString("body", Text(ansi));
            child->SetLong("order", i);
            if (depth < 2) {
                child->SetCEC("parts", NestedList(depth + 1, ansi));
            } else {
                child->SetBoolean("done", random_.Chance(2));
            }
            list->Append(child);
        }
        return list;
    }

    void FillStoryboardBag(PersistedPropertyCollection& bag, int index) {
        EncodingTypes e = Encoding();
        bag.SetBoolean("visible", random_.Chance(8) == false, e);
        bag.SetLong("duration", random_.Below(600), Encoding());
        bag.SetDouble("opacity", random_.Below(101) / 100.0, Encoding());
        bag.SetString("caption", Text(false), Encoding());
        bag.SetString("narration", kWideTexts[static_cast<std::size_t>(index) % kWideTexts.size()], Encoding());
        e = Encoding();
        bag.SetDate("modified", Date(), e);
        bag.SetColor("background", Color(), Encoding());
        e = Encoding();
        bag.SetFont("titleFont", Font(e == etBase64Encoded), e);
        bag.SetRectangle("bounds", Rect(), Encoding());
        e = Encoding();
        bag.SetAsset("picture", Asset(e == etBase64Encoded), e);
        LocationData next{IdAt(index + 1), random_.Chance(2) ? IdAt(index + 2) : std::string(), "Main"};
        bag.SetLocation("next", next, Encoding());
        LocationData back{IdAt(index - 1), "", ""};
        bag.SetLocation("back", back, Encoding());
        e = Encoding();
        bag.SetPPC("style", NestedBag(1, e == etBase64Encoded), e);
        e = Encoding();
        bag.SetCEC("steps", NestedList(1, e == etBase64Encoded), e);
    }

    std::shared_ptr<ChildElement> Child(int position) {
        static constexpr const char* kinds[] = {"button", "text", "image", "shape", "sound"};
        auto child = ChildElement::Create();
        const char* kind = kinds[random_.Below(5)];
        child->SetName(std::string(kind) + std::to_string(position + 1));
        child->SetElementType(kind);
        child->SetString("label", Text(false), Encoding());
        child->SetRectangle("bounds", Rect());
        EncodingTypes e = Encoding();
        child->SetFont("font", Font(e == etBase64Encoded), e);
        LocationData target{AnyId(), "", random_.Chance(2) ? "Main" : ""};
        child->SetLocation("target", target, Encoding());
        if (random_.Chance(3)) {
            e = Encoding();
            child->SetPPC("style", NestedBag(1, e == etBase64Encoded), e);
        }
        return child;
    }

    // Every storyboard once, in an order of its own per map, as a sequence
    // of complete ternary trees four levels deep (1 + 3 + 9 + 27 items).
    std::shared_ptr<LessonMap> Map(const char* name, int which) {
        std::vector<std::size_t> order(ids_.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            order[i] = which == 1 ? order.size() - 1 - i : i;
        }
        if (which == 2) {
            for (std::size_t i = order.size(); i > 1; --i) {
                std::swap(order[i - 1], order[static_cast<std::size_t>(random_.Below(static_cast<int>(i)))]);
            }
        }
        xml::Document document = xml::Document::Create();
        xml::Element map = document.CreateElement("map");
        map.SetAttribute("name", name);
        std::size_t next = 0;
        while (next < order.size()) {
            PlaceSubtree(document, map, order, next, 1);
        }
        auto lessonMap = LessonMap::Create();
        lessonMap->FromXMLElement(map);
        return lessonMap;
    }

    void PlaceSubtree(xml::Document& document, xml::Element& parent, const std::vector<std::size_t>& order,
                      std::size_t& next, int level) {
        xml::Element item = document.CreateElement("item");
        item.SetAttribute("sbid", ids_[order[next++]]);
        for (int i = 0; i < 3 && level < 4 && next < order.size(); ++i) {
            PlaceSubtree(document, item, order, next, level + 1);
        }
        parent.AppendChild(item);
    }

    Random random_;
    std::uint64_t seed_;
    std::vector<std::string> ids_;
};

}  // namespace

std::string GeneratedSBID(std::uint64_t seed, int index) {
    Random random(seed * 0x100000001B3ull + static_cast<std::uint64_t>(static_cast<std::int64_t>(index)) + 7);
    const std::uint64_t high = random.Next();
    const std::uint64_t low = random.Next();
    char text[40];
    std::snprintf(text, sizeof text, "%08X-%04X-4%03X-%04X-%012llX", static_cast<unsigned>(high >> 32),
                  static_cast<unsigned>((high >> 16) & 0xFFFF), static_cast<unsigned>(high & 0xFFF),
                  static_cast<unsigned>(0x8000 | ((low >> 48) & 0x3FFF)),
                  static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFull));
    return text;
}

std::vector<std::string> GeneratedSBIDs(int storyboards, std::uint64_t seed) {
    std::vector<std::string> ids;
    ids.reserve(static_cast<std::size_t>(storyboards > 0 ? storyboards : 0));
    for (int i = 0; i < storyboards; ++i) {
        ids.push_back(GeneratedSBID(seed, i));
    }
    return ids;
}

std::shared_ptr<Lesson> GenerateLesson(int storyboards, std::uint64_t seed) {
    if (storyboards < 1) {
        storyboards = 1;
    }
    return Generator(storyboards, seed).Make();
}

std::shared_ptr<PersistedPropertyCollection> GenerateBag(int count, std::uint64_t seed) {
    return Generator(1, seed).Bag(count);
}

}  // namespace quillbank::bench
