#pragma once

// Lessons used by the golden-file and round-trip tests: one fixed, complete
// lesson, and lessons generated from a seed.

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <quillbank/quillbank.hpp>

#include "storyboards/storyboard_access.hpp"

namespace quillbank::testing {

// Every kind of property, some of them encoded, with names and values in
// several scripts. An encoded property other than a string is stored through
// the ANSI code page, so its name and values keep to Windows-1252.
inline void FillEveryKind(PersistedPropertyCollection& bag, const std::string& prefix) {
    bag.SetBoolean(prefix + "visible", true);
    bag.SetBoolean(prefix + "locked", false, etBase64Encoded);
    bag.SetLong(prefix + "count", -2147483647 - 1);
    bag.SetLong(prefix + "\xE6\x95\xB0", 7);  // 数
    bag.SetLong(prefix + "gr\xC3\xB6\xC3\x9F" "e", 3, etBase64Encoded);  // größe
    bag.SetDouble(prefix + "ratio", 0.1);
    bag.SetDouble(prefix + "scale", -1.5e-7, etBase64Encoded);
    bag.SetString(prefix + "caption", "Halves & quarters <\"\xC2\xBD\">\n\ttwo lines");
    bag.SetString(prefix + "notes", "\xE5\x88\x86\xE6\x95\xB0\xE3\x81\xAE\xE7\xB7\xB4\xE7\xBF\x92 \xE2\x82\xAC",
                  etBase64Encoded);  // 分数の練習 €
    bag.SetDate(prefix + "due", 45000.5);
    bag.SetDate(prefix + "created", 36526.0, etBase64Encoded);
    bag.SetColor(prefix + "fill", 0x00336699);
    bag.SetColor(prefix + "system", 0x80000005u, etBase64Encoded);
    bag.SetFont(prefix + "font", FontData{"MS \xE3\x82\xB4\xE3\x82\xB7\xE3\x83\x83\xE3\x82\xAF", 10.5, true, false,
                                          true});  // MS ゴシック
    bag.SetFont(prefix + "titleFont", FontData{"Tahoma", 12, false, true, false}, etBase64Encoded);
    bag.SetRectangle(prefix + "bounds", Rectangle{10, 20, 300, 200});
    bag.SetRectangle(prefix + "clip", Rectangle{-1, 0, 0, 2147483647}, etBase64Encoded);
    bag.SetAsset(prefix + "picture", AssetData{"pie.png", "A pie in halves", "library"});
    bag.SetAsset(prefix + "sound", AssetData{"clap.wav", "", ""}, etBase64Encoded);
}

// The complete lesson pinned by the golden files. Every identifier is fixed.
inline std::shared_ptr<Lesson> MakeFixedLesson() {
    auto lesson = Lesson::Create();
    lesson->SetLessonID("6F1C2A4E-0B7D-4C3A-9E21-5D8B7F0A1C33");
    lesson->SetTitle("Fractions \xE2\x80\x94 halves & quarters");
    lesson->SetIdentifier("MATH-101");
    lesson->SetClassification("Internal Use");
    FillEveryKind(*lesson->Properties(), "");

    const char* ids[] = {"A1B2C3D4-0000-4000-8000-000000000001", "A1B2C3D4-0000-4000-8000-000000000002",
                         "A1B2C3D4-0000-4000-8000-000000000003"};
    std::vector<std::shared_ptr<Storyboard>> sbs;
    for (const char* id : ids) {
        auto sb = Storyboard::Create();
        detail::StoryboardAccess::SetSBID(*sb, id);
        sbs.push_back(lesson->Storyboards()->Add(sb));
    }
    sbs[0]->SetTitle("Introduction");
    sbs[0]->SetSBType("title");
    sbs[0]->Properties()->SetString("caption", "What is a half?");
    LocationData next{ids[1], ids[2], "Main"};
    sbs[0]->Properties()->SetLocation("next", next);
    LocationData back{ids[0], "", ""};
    sbs[0]->Properties()->SetLocation("back", back, etBase64Encoded);

    sbs[1]->SetTitle("\xE5\x88\x86\xE6\x95\xB0");  // 分数
    sbs[1]->SetIdentifier("P2");
    sbs[1]->SetSBType("page");
    sbs[1]->SetClassification("Internal Use");
    FillEveryKind(*sbs[1]->Properties(), "p.");
    auto nested = PersistedPropertyCollection::Create();
    nested->SetName("style");
    nested->SetString("align", "centre");
    LocationData deep{ids[2], "", "Review"};
    nested->SetLocation("jump", deep, etBase64Encoded);
    auto nestedList = ChildElementCollection::Create();
    nestedList->SetName("steps");
    auto step = ChildElement::Create();
    step->SetName("step");
    step->SetElementType("text");
    step->SetString("body", "Fold the paper once.");
    nestedList->Append(step);
    nested->SetCEC("steps", nestedList);
    sbs[1]->Properties()->SetPPC("style", nested);
    sbs[1]->Properties()->SetPPC("hiddenStyle", nested, etBase64Encoded);

    auto button = ChildElement::Create();
    button->SetName("nextButton");
    button->SetElementType("button");
    button->SetString("label", "Next \xE2\x86\x92");
    LocationData target{ids[2], "", ""};
    button->SetLocation("target", target);
    button->SetFont("font", FontData{"Arial", 8, false, false, false}, etBase64Encoded);
    sbs[1]->Children()->Append(button);
    auto group = ChildElement::Create();
    group->SetName("group");
    group->SetElementType("panel");
    auto inner = ChildElementCollection::Create();
    auto innerChild = ChildElement::Create();
    innerChild->SetName("shape");
    innerChild->SetElementType("circle");
    innerChild->SetRectangle("bounds", Rectangle{1, 2, 3, 4});
    inner->Append(innerChild);
    group->SetCEC("members", inner);
    group->SetCEC("hiddenMembers", inner, etBase64Encoded);
    sbs[1]->Children()->Append(group);

    sbs[2]->SetTitle("Review");
    sbs[2]->SetSBType("quiz");

    auto main = LessonMap::Create();
    main->SetName("Main");
    main->InsertStoryboard("", sbitInsertAfter, ids[0]);
    main->InsertStoryboard(ids[0], sbitInsertAsChild, ids[1]);
    main->InsertStoryboard(ids[1], sbitInsertAsChild, ids[2]);
    main->InsertStoryboard(ids[0], sbitInsertAfter, ids[2]);
    auto review = LessonMap::Create();
    review->SetName("Review");
    review->InsertStoryboard("", sbitInsertAfter, ids[2]);
    review->InsertStoryboard(ids[2], sbitInsertBefore, ids[1]);
    auto empty = LessonMap::Create();
    empty->SetName("Empty");
    lesson->Maps()->Append(main);
    lesson->Maps()->Append(review);
    lesson->Maps()->Append(empty);
    lesson->Maps()->SetDefaultMap(review);
    return lesson;
}

// A lesson made from a seed: storyboards with random properties of every
// kind and encoding (names and texts in several scripts), children, nested
// bags and lists, and maps of nested items naming its storyboards (and now
// and then an identifier from outside).
class LessonGenerator {
public:
    explicit LessonGenerator(std::uint32_t seed) : random_(seed) {}

    std::shared_ptr<Lesson> Make(int storyboards = 12) {
        auto lesson = Lesson::Create();
        lesson->SetTitle(Text());
        if (Chance(2)) lesson->SetIdentifier(Text());
        if (Chance(2)) lesson->SetClassification(Text());
        FillBag(*lesson->Properties(), 0);
        ids_.clear();
        for (int i = 0; i < storyboards; ++i) {
            auto sb = lesson->Storyboards()->Add(Storyboard::Create());
            ids_.push_back(sb->SBID());
            sb->SetTitle(Text());
            if (Chance(2)) sb->SetIdentifier(Text());
            sb->SetSBType(Chance(2) ? "page" : "");
            if (Chance(3)) sb->SetClassification(Text());
        }
        for (auto& sb : *lesson->Storyboards()) {
            FillBag(*sb->Properties(), 0);
            FillList(*sb->Children(), 0);
        }
        const int maps = Number(0, 3);
        for (int m = 0; m < maps; ++m) {
            auto map = LessonMap::Create();
            map->SetName("map " + std::to_string(m) + " " + Text());
            std::vector<std::string> placed;
            const int items = Number(0, 2 * storyboards);
            for (int k = 0; k < items; ++k) {
                const std::string id = Chance(10) ? "OUTSIDE-" + std::to_string(k) : AnyId();
                if (placed.empty()) {
                    map->InsertStoryboard("", sbitInsertAfter, id);
                } else {
                    const std::string& root = placed[static_cast<std::size_t>(Number(0, static_cast<int>(placed.size()) - 1))];
                    map->InsertStoryboard(root, static_cast<StoryboardInsertTypes>(Number(1, 3)), id);
                }
                placed.push_back(id);
            }
            lesson->Maps()->Append(map);
        }
        // A single map without a default reads back as the default, so the
        // written form reproduces a lesson only when such a map is the default.
        if (lesson->Maps()->Count() == 1 || (lesson->Maps()->Count() > 0 && Chance(2))) {
            lesson->Maps()->SetDefaultMap(lesson->Maps()->ItemAt(Number(0, lesson->Maps()->Count() - 1)));
        }
        return lesson;
    }

private:
    bool Chance(int oneIn) { return Number(1, oneIn) == 1; }
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    std::string AnyId() {
        return ids_.empty() ? std::string("OUTSIDE") : ids_[static_cast<std::size_t>(Number(0, static_cast<int>(ids_.size()) - 1))];
    }

    // Texts that stay exact through a write and a read: no control
    // characters other than tab and line feed, no CR, and never whitespace at
    // either end (a reader that does not preserve whitespace trims it).
    // With `ansi`, only characters of the Windows-1252 code page.
    std::string Text(bool ansi = false) {
        static const char* pieces[] = {"a", "Z", "7", "&", "<", ">", "\"", "'", "\xC3\xA9", "\xE2\x82\xAC", " ", "\t", "\n",
                                       "x y", "\xE5\xAD\xA6", "\xF0\x9F\x98\x80", "\xD0\x96"};
        std::string text = "t";
        const int length = Number(0, 12);
        for (int i = 0; i < length; ++i) {
            text += pieces[Number(0, ansi ? 13 : 16)];
        }
        return text + "e";
    }

    EncodingTypes Encoding() { return Chance(2) ? etBase64Encoded : etNotEncoded; }

    std::string Name(int index, bool ansi) {
        return "n" + std::to_string(index) + (Chance(3) ? (ansi ? "\xC3\xB1" : "\xE5\x90\x8D") : "");
    }

    // An encoded property other than a string goes through the ANSI code
    // page, so everything inside one keeps to it (`ansi`).
    void FillBag(PersistedPropertyCollection& bag, int depth, bool ansi = false) {
        const int count = Number(0, depth == 0 ? 14 : 4);
        for (int i = 0; i < count; ++i) {
            const EncodingTypes encoding = Encoding();
            const int kind = Number(1, depth < 3 ? 12 : 10);
            const bool inner = ansi || (encoding == etBase64Encoded && kind != 4);
            const std::string name = Name(i, inner);
            auto text = [this, inner] { return Text(inner); };
            switch (kind) {
                case 1: bag.SetBoolean(name, Chance(2), encoding); break;
                case 2: bag.SetLong(name, static_cast<std::int32_t>(random_()), encoding); break;
                case 3: bag.SetDouble(name, std::uniform_real_distribution<double>(-1e6, 1e6)(random_), encoding); break;
                case 4: bag.SetString(name, text(), encoding); break;
                case 5: bag.SetDate(name, Number(1, 80000) + Number(0, 3) * 0.25, encoding); break;
                case 6: bag.SetColor(name, static_cast<OleColor>(Number(0, 0xFFFFFF)), encoding); break;
                case 7: bag.SetFont(name, FontData{text(), Number(1, 72) / 2.0, Chance(2), Chance(2), Chance(2)}, encoding); break;
                case 8: bag.SetRectangle(name, Rectangle{Number(-99, 99), Number(-99, 99), Number(0, 999), Number(0, 999)}, encoding); break;
                case 9: bag.SetAsset(name, AssetData{text(), text(), text()}, encoding); break;
                case 10: {
                    LocationData location{AnyId(), Chance(2) ? AnyId() : "", Chance(2) ? text() : ""};
                    bag.SetLocation(name, location, encoding);
                    break;
                }
                case 11: {
                    auto nested = PersistedPropertyCollection::Create();
                    nested->SetName(text());
                    FillBag(*nested, depth + 1, inner);
                    bag.SetPPC(name, nested, encoding);
                    break;
                }
                default: {
                    auto list = ChildElementCollection::Create();
                    list->SetName(text());
                    FillList(*list, depth + 1, inner);
                    bag.SetCEC(name, list, encoding);
                    break;
                }
            }
        }
    }

    void FillList(ChildElementCollection& list, int depth, bool ansi = false) {
        const int count = Number(0, depth == 0 ? 4 : 2);
        for (int i = 0; i < count; ++i) {
            auto child = ChildElement::Create();
            child->SetName(Text(ansi));
            child->SetElementType(Text(ansi));
            FillBag(*child->PPCObject(), depth + 1, ansi);
            list.Append(child);
        }
    }

    std::mt19937 random_;
    std::vector<std::string> ids_;
};

}  // namespace quillbank::testing
