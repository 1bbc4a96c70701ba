#pragma once

// The creatable classes of the server: each creates a new object and hands
// out the asked-for interface.

#include "com/com_headers.hpp"

namespace quillbank::com {

// Hands out `iid` of an object just made and drops the maker's reference:
// the object goes when the interface cannot be had.
template <class Interface>
HRESULT CreateAs(Interface* created, REFIID iid, void** object) {
    const HRESULT hr = created->QueryInterface(iid, object);
    created->Release();
    return hr;
}

HRESULT CreateConstants(REFIID iid, void** object);
HRESULT CreateFunctions(REFIID iid, void** object);

}  // namespace quillbank::com

#include <memory>

namespace quillbank {
class ChildElement;
class ChildElementCollection;
class PersistedPropertyCollection;
class Storyboard;
class StoryboardCollection;
class LessonMap;
class LessonMapCollection;
}

namespace quillbank::com {

// Asked for through QueryInterface, hands back the server's own C++ object
// (with a reference): how the server recognises its objects when a host
// passes them back in. Not in the type library; never answered by objects
// of other servers.
inline constexpr GUID kServerObjectId = {0x2A4E8C71, 0x5B0D, 0x4F3E, {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};
// The same for child elements and child-element lists: each class answers
// only its own identifier, so an object of one class is never taken for
// another.
inline constexpr GUID kServerChildElementId = {0x2A4E8C72, 0x5B0D, 0x4F3E,
                                               {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};
inline constexpr GUID kServerChildElementListId = {0x2A4E8C73, 0x5B0D, 0x4F3E,
                                                   {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};
inline constexpr GUID kServerStoryboardId = {0x2A4E8C74, 0x5B0D, 0x4F3E,
                                             {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};
inline constexpr GUID kServerStoryboardSetId = {0x2A4E8C75, 0x5B0D, 0x4F3E,
                                                {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};
inline constexpr GUID kServerLessonMapId = {0x2A4E8C76, 0x5B0D, 0x4F3E,
                                            {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};
inline constexpr GUID kServerLessonMapListId = {0x2A4E8C77, 0x5B0D, 0x4F3E,
                                                {0x9C, 0x61, 0x7D, 0x12, 0xA8, 0x3B, 0xE4, 0x05}};

HRESULT CreatePersistedPropertyCollection(REFIID iid, void** object);

// The one COM object of a bag (the same bag always gives the same object);
// null for null.
_PersistedPropertyCollection* WrapPPC(const std::shared_ptr<PersistedPropertyCollection>& bag);
// The bag behind a host's object: empty for null; raises a type mismatch
// for an object that is not one of the server's bags.
std::shared_ptr<PersistedPropertyCollection> UnwrapPPC(IUnknown* object);

HRESULT CreateChildElement(REFIID iid, void** object);
HRESULT CreateChildElementCollection(REFIID iid, void** object);

// The one COM object of a child element or of a child-element list; null for
// null.
_ChildElement* WrapCE(const std::shared_ptr<ChildElement>& element);
_ChildElementCollection* WrapCEC(const std::shared_ptr<ChildElementCollection>& list);
// The core object behind a host's object: empty for null; a type mismatch for
// an object of another kind.
std::shared_ptr<ChildElement> UnwrapCE(IUnknown* object);
std::shared_ptr<ChildElementCollection> UnwrapCEC(IUnknown* object);

HRESULT CreateStoryboard(REFIID iid, void** object);
HRESULT CreateStoryboardCollection(REFIID iid, void** object);

// The one COM object of a storyboard or of a set of storyboards; null for
// null. Unwrapping as above.
_Storyboard* WrapSB(const std::shared_ptr<Storyboard>& storyboard);
_StoryboardCollection* WrapSBC(const std::shared_ptr<StoryboardCollection>& storyboards);
std::shared_ptr<Storyboard> UnwrapSB(IUnknown* object);
std::shared_ptr<StoryboardCollection> UnwrapSBC(IUnknown* object);

HRESULT CreateLessonMap(REFIID iid, void** object);

// The one COM object of a lesson map; null for null. Unwrapping as above.
_LessonMap* WrapMap(const std::shared_ptr<LessonMap>& map);
std::shared_ptr<LessonMap> UnwrapMap(IUnknown* object);

HRESULT CreateLessonMapCollection(REFIID iid, void** object);

// The one COM object of a list of maps; null for null.
_LessonMapCollection* WrapMaps(const std::shared_ptr<LessonMapCollection>& maps);

HRESULT CreateLesson(REFIID iid, void** object);

}  // namespace quillbank::com
