#include <iostream>

#include <quillbank/quillbank.hpp>

int main() {
    std::cout << quillbank::Functions::EmptyGUID() << '\n';
    auto doc = quillbank::xml::Document::Create();
    auto e = doc.CreateElement("ppc");
    e.SetAttribute("name", "properties");
    std::cout << e.Xml() << '\n';
    return 0;
}
