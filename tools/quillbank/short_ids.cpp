#include "short_ids.hpp"

#include <quillbank/functions.hpp>
#include <quillbank/xml.hpp>

namespace quillbank::tool {

std::map<std::string, std::string> ShortIds(const InputFile& input) {
    std::map<std::string, std::string> ids;
    auto document = xml::Document::Create();
    if (!document.LoadXML(Functions::CleanXMLString(input.decoded.text))) {
        return ids;
    }
    for (xml::Node part = document.DocumentElement().FirstChild(); part; part = part.NextSibling()) {
        if (part.Name() != "storyboards") {
            continue;
        }
        for (xml::Node node = part.FirstChild(); node; node = node.NextSibling()) {
            xml::Element storyboard = node.AsElement();
            if (!storyboard || storyboard.Name() != "storyboard") {
                continue;
            }
            auto sbid = storyboard.GetAttribute("sbid");
            auto shortId = storyboard.GetAttribute("shortid");
            if (sbid && shortId) {
                ids[*sbid] = *shortId;
            }
        }
    }
    return ids;
}

}  // namespace quillbank::tool
