#pragma once

// One page of a lesson: its identity, a property bag and a list of child elements.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <quillbank/child_element_collection.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>

namespace quillbank {

namespace detail {
struct ModelReader;
struct StoryboardAccess;
}  // namespace detail

// A storyboard is created with a new identifier (36-character upper-case GUID
// text), the title "New Storyboard", empty Identifier, SBType and
// Classification, an empty property bag and an empty child-element list. The
// identifier is read-only to hosts.
class Storyboard {
public:
    static std::shared_ptr<Storyboard> Create();

    Storyboard(const Storyboard&) = delete;
    Storyboard& operator=(const Storyboard&) = delete;

    std::string SBID() const;
    std::string Title() const;
    void SetTitle(std::string_view NewValue);
    std::string Identifier() const;
    void SetIdentifier(std::string_view NewValue);
    std::string SBType() const;
    void SetSBType(std::string_view NewValue);
    std::string Classification() const;
    void SetClassification(std::string_view NewValue);

    // The owned bag and list themselves (the same objects until CopyFrom or
    // FromXMLElement replaces them).
    std::shared_ptr<PersistedPropertyCollection> Properties() const;
    std::shared_ptr<ChildElementCollection> Children() const;

    // A deep copy with the same identifier.
    std::shared_ptr<Storyboard> Clone() const;
    // A deep copy with a new identifier, titled NewTitlePrefix followed
    // directly by this storyboard's title.
    std::shared_ptr<Storyboard> Duplicate(std::string_view NewTitlePrefix = "") const;
    // Copies everything but the identifier from SB: the texts, the short
    // number, and new deep copies of its bag and list, which replace the ones
    // this storyboard owned. Always returns an Empty variant.
    Variant CopyFrom(const std::shared_ptr<Storyboard>& SB);

    // A new "storyboard" element of Document, not attached anywhere, holding
    // the bag (renamed "properties") and the list (renamed "children").
    xml::Element ToClearXMLElement(const xml::Document& Document);
    xml::Element ToXMLElement(const xml::Document& Document);
    // Resets the storyboard as at creation (a new identifier included), then
    // reads a "storyboard" element.
    void FromXMLElement(const xml::Element& Element);

private:
    struct Unfilled {};
    Storyboard();
    // A storyboard whose identity and parts are left unset, for a reader that
    // fills it at once with FromXMLElement.
    explicit Storyboard(Unfilled);
    template <class... Arguments>
    static std::shared_ptr<Storyboard> Make(Arguments... arguments);
    void Initialize(bool withNewSBID);
    void CopyContentFrom(const Storyboard& SB);
    xml::Element WriteElement(const xml::Document& Document, bool clear, const char* source);

    // Internal to the library (see detail::StoryboardAccess).
    void SetSBID(std::string_view NewSBID);
    std::int32_t ShortID() const;
    void SetShortID(std::int32_t NewValue);

    std::string sbid_;
    std::string title_;
    std::string identifier_;
    std::string sb_type_;
    std::string classification_;
    std::int32_t short_id_ = -1;
    std::shared_ptr<PersistedPropertyCollection> properties_;
    std::shared_ptr<ChildElementCollection> children_;

    friend struct detail::StoryboardAccess;
    friend struct detail::ModelReader;
};

}  // namespace quillbank
