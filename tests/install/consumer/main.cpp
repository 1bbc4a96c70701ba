#include <iostream>

#include <quillbank/quillbank.hpp>
#ifdef QUILLBANK_WITH_JSON
#include <quillbank/json.hpp>
#endif

int main() {
    std::cout << quillbank::Functions::EmptyGUID() << '\n';
    auto doc = quillbank::xml::Document::Create();
    auto e = doc.CreateElement("ppc");
    e.SetAttribute("name", "properties");
    std::cout << e.Xml() << '\n';
#ifdef QUILLBANK_WITH_JSON
    auto lesson = quillbank::Lesson::Create();
    lesson->SetTitle("Installed");
    std::cout << "JSON title: " << quillbank::LessonFromJSON(quillbank::LessonToJSON(*lesson))->Title() << '\n';
#endif
    return 0;
}
