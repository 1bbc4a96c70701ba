// Writes the sample lessons of examples/: a short lesson with one map, and a
// larger one with several maps, nested items, child elements of several
// kinds, encoded and non-ASCII properties and a classification.
//
//   make_samples FOLDER
//
// Identifiers are fixed so that the samples stay the same from one run to
// the next; only each file's "documentid" (new at every write) changes.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/quillbank.hpp>

using namespace quillbank;

namespace {

// Storyboard identifiers are given by the library; to fix one, the
// storyboard reads it from an element.
std::shared_ptr<Storyboard> NewStoryboard(std::string_view sbid, std::string_view title, std::string_view type,
                                          std::string_view identifier = "") {
    auto document = xml::Document::Create();
    auto element = document.CreateElement("storyboard");
    element.SetAttribute("sbid", sbid);
    auto storyboard = Storyboard::Create();
    storyboard->FromXMLElement(element);
    storyboard->SetTitle(title);
    storyboard->SetSBType(type);
    storyboard->SetIdentifier(identifier);
    return storyboard;
}

std::shared_ptr<ChildElement> NewElement(std::string_view name, std::string_view type) {
    auto element = ChildElement::Create();
    element->SetName(name);
    element->SetElementType(type);
    return element;
}

std::shared_ptr<ChildElement> TextBlock(std::string_view name, std::string_view text, const Rectangle& bounds) {
    auto element = NewElement(name, "text");
    element->SetString("text", text);
    element->SetFont("font", Functions::NewFontData("Verdana", 14));
    element->SetRectangle("bounds", bounds);
    return element;
}

std::shared_ptr<ChildElement> Picture(std::string_view name, std::string_view file, std::string_view description,
                                      const Rectangle& bounds) {
    auto element = NewElement(name, "image");
    element->SetAsset("picture", Functions::NewAssetData(file, description, "Science picture library"));
    element->SetRectangle("bounds", bounds);
    return element;
}

std::shared_ptr<ChildElement> Button(std::string_view name, std::string_view caption, std::string_view target,
                                     std::string_view map = "") {
    auto element = NewElement(name, "button");
    element->SetString("caption", caption);
    LocationData location = Functions::NewLocationData(target, "", map);
    element->SetLocation("target", location);
    element->SetColor("face", Functions::HTMLColorToOLEColor("#2E86C1"));
    return element;
}

std::shared_ptr<ChildElement> Quiz(std::string_view question,
                                   std::initializer_list<std::pair<std::string_view, bool>> answers) {
    auto element = NewElement("question", "quiz");
    element->SetString("prompt", question);
    auto list = ChildElementCollection::Create();
    list->SetName("answers");
    for (const auto& [text, correct] : answers) {
        auto answer = NewElement("answer", "choice");
        answer->SetString("text", text);
        answer->SetBoolean("correct", correct);
        list->Append(answer);
    }
    element->SetCEC("answers", list);
    auto feedback = PersistedPropertyCollection::Create();
    feedback->SetString("right", "Well done!");
    feedback->SetString("wrong", "Not quite: look at the diagram again.", etBase64Encoded);
    feedback->SetLong("attempts", 2);
    element->SetPPC("feedback", feedback);
    return element;
}

std::shared_ptr<Lesson> ShortLesson() {
    auto lesson = Lesson::Create();
    lesson->SetLessonID("3E0A52C1-7D4B-4F0E-9B6A-2C81D5F4A001");
    lesson->SetTitle("Halves and quarters");
    lesson->SetIdentifier("MATH-101");
    lesson->Properties()->SetString("author", "R. Okafor");
    lesson->Properties()->SetLong("duration", 300);

    auto intro = NewStoryboard("3E0A52C1-7D4B-4F0E-9B6A-2C81D5F4A101", "What is a half?", "page");
    intro->Properties()->SetString("caption", "Cut a pie into two equal parts.");
    intro->Children()->Append(Picture("pie", "pie-halves.png", "A pie cut in halves", Functions::NewRectangle(40, 60, 320, 240)));
    auto quarters = NewStoryboard("3E0A52C1-7D4B-4F0E-9B6A-2C81D5F4A102", "Quarters", "page");
    quarters->Properties()->SetString("caption", "Cut each half again: four quarters.");
    quarters->Children()->Append(TextBlock("rule", "One half is two quarters.", Functions::NewRectangle(40, 320, 480, 40)));
    auto check = NewStoryboard("3E0A52C1-7D4B-4F0E-9B6A-2C81D5F4A103", "Check yourself", "quiz");
    check->Children()->Append(Quiz("How many quarters make a half?", {{"One", false}, {"Two", true}, {"Four", false}}));

    auto map = LessonMap::Create();
    map->SetName("Main");
    for (const auto& storyboard : {intro, quarters, check}) {
        lesson->Storyboards()->Add(storyboard);
        map->InsertStoryboard("", sbitInsertAfter, storyboard->SBID());
    }
    lesson->Maps()->Append(map);
    return lesson;
}

std::shared_ptr<Lesson> LargerLesson() {
    auto lesson = Lesson::Create();
    lesson->SetLessonID("8B5D0F37-21C9-4A6E-8E4F-6A0C3B9D7002");
    lesson->SetTitle("The water cycle — évaporation & rain");
    lesson->SetIdentifier("SCI-204");
    lesson->SetClassification("Internal Use");

    auto properties = lesson->Properties();
    properties->SetString("author", "Amélie Durand");
    properties->SetLong("version", 7);
    properties->SetDate("reviewed", 45123.5);
    properties->SetColor("theme", Functions::HTMLColorToOLEColor("#1B4F72"));
    properties->SetFont("titleFont", Functions::NewFontData("Georgia", 20, true));
    properties->SetString("narration", "Water rises, cools and falls: ça coûte 0 € to watch.", etBase64Encoded);
    properties->SetString("notes_ja", "水の循環：蒸発、凝結、降水", etBase64Encoded);
    auto settings = PersistedPropertyCollection::Create();
    settings->SetBoolean("autoplay", false);
    settings->SetDouble("volume", 0.75);
    settings->SetAsset("music", Functions::NewAssetData("calm-water.mp3", "Background music"), etBase64Encoded);
    properties->SetPPC("playback", settings);

    const std::string base = "8B5D0F37-21C9-4A6E-8E4F-6A0C3B9D7";
    auto intro = NewStoryboard(base + "101", "Where does rain come from?", "title", "W1");
    auto evaporation = NewStoryboard(base + "102", "Évaporation", "page", "W2");
    auto condensation = NewStoryboard(base + "103", "Condensation: clouds form", "page", "W3");
    auto precipitation = NewStoryboard(base + "104", "Precipitation", "page", "W4");
    auto collection = NewStoryboard(base + "105", "Collection in rivers and seas", "page", "W5");
    auto quiz1 = NewStoryboard(base + "106", "Quiz: the stages", "quiz", "Q1");
    auto quiz2 = NewStoryboard(base + "107", "Quiz: the sun's part", "quiz", "Q2");
    auto summary = NewStoryboard(base + "108", "Summary", "page", "W6");
    auto glossary = NewStoryboard(base + "109", "用語集 (glossary)", "reference", "G1");

    intro->Properties()->SetString("caption", "Follow one drop of water around the world.");
    intro->Children()->Append(Picture("hero", "globe.png", "The Earth from space", Functions::NewRectangle(0, 0, 800, 450)));
    intro->Children()->Append(Button("start", "Start", evaporation->SBID(), "Main"));

    evaporation->Properties()->SetString("caption", "The sun warms the sea; water becomes vapour.");
    evaporation->Children()->Append(TextBlock("body", "Warm water evaporates.\r\nVapour rises with warm air.",
                                              Functions::NewRectangle(40, 40, 400, 120)));
    evaporation->Children()->Append(Picture("diagram", "evaporation.svg", "Arrows rising from the sea",
                                            Functions::NewRectangle(460, 40, 300, 300)));
    auto audio = NewElement("voice", "audio");
    audio->SetAsset("clip", Functions::NewAssetData("evaporation-fr.mp3", "Narration en français"), etBase64Encoded);
    audio->SetDouble("delay", 1.5);
    evaporation->Children()->Append(audio);

    condensation->Properties()->SetString("caption", "High up, vapour cools into droplets: clouds.");
    condensation->Children()->Append(TextBlock("body", "Cold air holds less vapour.", Functions::NewRectangle(40, 40, 400, 80)));
    precipitation->Properties()->SetString("caption", "Droplets join and fall as rain, snow or hail.");
    precipitation->Children()->Append(Picture("rain", "rain.png", "", Functions::NewRectangle(40, 40, 640, 360)));
    collection->Properties()->SetString("caption", "Water gathers in rivers, lakes and the sea.");
    LocationData back = Functions::NewLocationData(intro->SBID(), "", "Main");
    collection->Properties()->SetLocation("restart", back, etBase64Encoded);

    quiz1->Children()->Append(Quiz("Which stage forms clouds?",
                                   {{"Evaporation", false}, {"Condensation", true}, {"Collection", false}}));
    quiz2->Children()->Append(Quiz("What drives evaporation?", {{"The moon", false}, {"The sun's heat", true}}));
    LocationData retry = Functions::NewLocationData(evaporation->SBID(), condensation->SBID(), "Review");
    quiz2->Properties()->SetLocation("retry", retry);

    summary->Properties()->SetString("caption", "Evaporation, condensation, precipitation, collection — and again.");
    summary->Children()->Append(Button("again", "See it again", intro->SBID()));
    glossary->Properties()->SetString("caption", "蒸発 evaporation · 凝結 condensation · 降水 precipitation",
                                      etBase64Encoded);
    glossary->SetClassification("Internal Use");

    for (const auto& storyboard :
         {intro, evaporation, condensation, precipitation, collection, quiz1, quiz2, summary, glossary}) {
        lesson->Storyboards()->Add(storyboard);
    }

    auto main = LessonMap::Create();
    main->SetName("Main");
    main->InsertStoryboard("", sbitInsertAfter, intro->SBID());
    main->InsertStoryboard(intro->SBID(), sbitInsertAsChild, evaporation->SBID());
    main->InsertStoryboard(evaporation->SBID(), sbitInsertAfter, condensation->SBID());
    main->InsertStoryboard(condensation->SBID(), sbitInsertAfter, precipitation->SBID());
    main->InsertStoryboard(precipitation->SBID(), sbitInsertAsChild, collection->SBID());
    main->InsertStoryboard("", sbitInsertAfter, quiz1->SBID());
    main->InsertStoryboard(quiz1->SBID(), sbitInsertAsChild, quiz2->SBID());
    main->InsertStoryboard("", sbitInsertAfter, summary->SBID());
    main->InsertStoryboard(summary->SBID(), sbitInsertAsChild, glossary->SBID());

    auto review = LessonMap::Create();
    review->SetName("Review");
    for (const auto& storyboard : {summary, quiz1, quiz2}) {
        review->InsertStoryboard("", sbitInsertAfter, storyboard->SBID());
    }
    auto tour = LessonMap::Create();
    tour->SetName("Quick tour");
    tour->InsertStoryboard("", sbitInsertAfter, intro->SBID());
    tour->InsertStoryboard("", sbitInsertAfter, summary->SBID());

    lesson->Maps()->Append(main);
    lesson->Maps()->Append(review);
    lesson->Maps()->Append(tour);
    lesson->Maps()->SetDefaultMap(main);
    return lesson;
}

bool Write(const std::string& path, const Lesson& lesson) {
    std::ofstream out(path, std::ios::binary);
    out << lesson.ToXMLString();
    return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_samples FOLDER\n";
        return 2;
    }
    const std::string folder = argv[1];
    if (!Write(folder + "/fractions.lesson.xml", *ShortLesson()) ||
        !Write(folder + "/water-cycle.lesson.xml", *LargerLesson())) {
        std::cerr << "make_samples: cannot write into " << folder << '\n';
        return 1;
    }
    return 0;
}
