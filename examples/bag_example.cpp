// Builds the property bag of a lesson page, as an authoring host would, and
// prints it in the stored form and in the clear form.

#include <iostream>

#include <quillbank/quillbank.hpp>

using namespace quillbank;

int main() {
    try {
        auto page = PersistedPropertyCollection::Create();
        page->SetName("properties");
        page->SetString("caption", "Halves and quarters");
        page->SetLong("duration", 90);
        page->SetBoolean("showTimer", true);
        page->SetDouble("passMark", 0.75);
        page->SetColor("background", Functions::HTMLColorToOLEColor("#FFF8E7"));
        page->SetFont("titleFont", Functions::NewFontData("Georgia", 18, true));
        page->SetRectangle("stage", Functions::NewRectangle(0, 0, 800, 600));
        page->SetAsset("picture", Functions::NewAssetData("pie.png", "A pie cut in four"));
        LocationData next = Functions::NewLocationData("", "6B1F0C8E-2A54-4E63-9C1B-0D0E3F4A5B6C");
        page->SetLocation("next", next);
        page->SetString("narration", "One half is two quarters.\r\nTwo quarters make a half.", etBase64Encoded);
        page->SetString("greeting", "\xE4\xBD\xA0\xE5\xA5\xBD", etBase64Encoded);

        auto quiz = PersistedPropertyCollection::Create();
        quiz->SetString("question", "How many quarters make a whole?");
        quiz->SetLong("answer", 4);
        page->SetPPC("quiz", quiz);

        std::cout << "Stored form:\n" << Functions::FormatXMLString(page->ToXMLString()) << "\n\n";
        std::cout << "Clear form:\n" << Functions::FormatXMLString(page->ToClearXMLString()) << "\n";
        return 0;
    } catch (const Error& e) {
        std::cerr << "error " << e.Number() << " in " << e.Source() << ": " << e.Description() << '\n';
        return 1;
    }
}
