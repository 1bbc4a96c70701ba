#include "plain_properties.hpp"

#include <memory>
#include <vector>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/storyboard.hpp>

#include "bag_walk.hpp"

namespace quillbank::tool {

namespace {

void StorePlain(PersistedPropertyCollection& bag, const std::string& name) {
    switch (bag.GetPropertyType(name)) {
    case ptBoolean: bag.SetBoolean(name, bag.GetBoolean(name, false)); break;
    case ptLong: bag.SetLong(name, bag.GetLong(name, 0)); break;
    case ptDouble: bag.SetDouble(name, bag.GetDouble(name, 0)); break;
    case ptString: bag.SetString(name, bag.GetString(name, "")); break;
    case ptDate: bag.SetDate(name, bag.GetDate(name, 0)); break;
    case ptColor: bag.SetColor(name, bag.GetColor(name, 0)); break;
    case ptFont: bag.SetFont(name, bag.GetFont(name, {})); break;
    case ptRectangle: bag.SetRectangle(name, bag.GetRectangle(name, {})); break;
    case ptAsset: bag.SetAsset(name, bag.GetAsset(name, {})); break;
    case ptLocation: {
        LocationData location = bag.GetLocation(name, {});
        if (!location.StartPoint.empty() || location.EndPoint.empty()) {
            bag.SetLocation(name, location);
        }
        break;
    }
    case ptPPC: bag.SetPPC(name, bag.GetPPC(name, nullptr)); break;
    case ptCEC: bag.SetCEC(name, bag.GetCEC(name, nullptr)); break;
    case ptNone: break;
    }
}

}  // namespace

void WriteEveryPropertyPlain(Lesson& lesson) {
    // Bags still to be done, on a stack of our own (no walk calls itself).
    std::vector<std::shared_ptr<PersistedPropertyCollection>> bags;
    for (const auto& placed : LessonBags(lesson)) {
        bags.push_back(placed.bag);
    }
    while (!bags.empty()) {
        auto bag = std::move(bags.back());
        bags.pop_back();
        if (bag->Count() == 0) {
            continue;
        }
        for (const auto& name : bag->GetPropertyNameArray()) {
            if (bag->GetEncodingType(name) == etBase64Encoded) {
                StorePlain(*bag, name);
            }
            // After storing: the nested bag or list is now the new copy.
            const PropertyTypes type = bag->GetPropertyType(name);
            if (type == ptPPC) {
                if (auto nested = bag->GetPPC(name, nullptr)) {
                    bags.push_back(nested);
                }
            } else if (type == ptCEC) {
                if (auto list = bag->GetCEC(name, nullptr)) {
                    for (std::int32_t i = 0; i < list->Count(); ++i) {
                        if (auto element = list->Item(i)) {
                            bags.push_back(element->PPCObject());
                        }
                    }
                }
            }
        }
    }
}

}  // namespace quillbank::tool
