#include <quillbank/storyboard_collection.hpp>

#include <utility>
#include <vector>

#include "frame/raise.hpp"
#include "storyboards/storyboard_access.hpp"
#include "support/sort.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"

namespace quillbank {

namespace {

// The reader visits child nodes with a signed 16-bit position, so 32767 is
// the last position it can reach.
constexpr std::int32_t kLastVisitablePosition = 32767;

// Both writers report failures under the normal writer's name, spelt so.
constexpr const char* kWriterSource = "StoryboardtCollection.ToXMLElement";

std::string KeyOf(std::string_view SBID) { return support::LowerCase(SBID); }

// The storyboards of a collection at this moment, so that a collection can
// be merged with or subtracted from itself.
std::vector<std::shared_ptr<Storyboard>> Snapshot(const StoryboardCollection& collection) {
    return std::vector<std::shared_ptr<Storyboard>>(collection.begin(), collection.end());
}

}  // namespace

StoryboardCollection::StoryboardCollection() = default;

std::shared_ptr<StoryboardCollection> StoryboardCollection::Create() {
    return std::shared_ptr<StoryboardCollection>(new StoryboardCollection());
}

std::shared_ptr<Storyboard> StoryboardCollection::CurrentSB() const { return current_; }

void StoryboardCollection::SetCurrentSB(std::shared_ptr<Storyboard> NewValue) { current_ = std::move(NewValue); }

std::string StoryboardCollection::CurrentSBID() const { return current_ ? current_->SBID() : std::string(); }

void StoryboardCollection::SetCurrentSBID(std::string_view NewValue) {
    support::RequireUtf8(NewValue, "StoryboardCollection.CurrentSBID (Set)");
    current_ = NewValue.empty() ? nullptr : Item(NewValue);
}

void StoryboardCollection::Append(std::string key, const std::shared_ptr<Storyboard>& SB) {
    auto position = entries_.insert(entries_.end(), SB);
    index_.emplace(std::move(key), position);
}

bool StoryboardCollection::EraseKey(const std::string& key) {
    auto found = index_.find(key);
    if (found == index_.end()) {
        return false;
    }
    entries_.erase(found->second);
    index_.erase(found);
    return true;
}

std::shared_ptr<Storyboard> StoryboardCollection::Add(const std::shared_ptr<Storyboard>& SB) {
    if (!SB) {
        return nullptr;
    }
    const std::string& sbid = detail::StoryboardAccess::SBIDRef(*SB);
    std::string key = KeyOf(sbid);
    auto found = index_.find(key);
    if (found != index_.end()) {
        // The existing entry goes as Remove takes it (the current storyboard
        // is dropped when its identifier is exactly this one), and the new
        // one is appended under the same key.
        if (current_ && current_->SBID() == sbid) {
            current_ = nullptr;
        }
        entries_.erase(found->second);
        found->second = entries_.insert(entries_.end(), SB);
        return SB;
    }
    index_.emplace(std::move(key), entries_.insert(entries_.end(), SB));
    return SB;
}

bool StoryboardCollection::Contains(std::string_view SBID) const { return index_.contains(KeyOf(SBID)); }

std::int32_t StoryboardCollection::Count() const { return static_cast<std::int32_t>(index_.size()); }

std::shared_ptr<Storyboard> StoryboardCollection::Item(std::string_view SBID) const {
    auto found = index_.find(KeyOf(SBID));
    return found == index_.end() ? nullptr : *found->second;
}

void StoryboardCollection::Remove(std::string_view SBID) {
    // The current storyboard is compared exactly, letter case included; the
    // entry is found without regard to case.
    if (current_ && current_->SBID() == SBID) {
        current_ = nullptr;
    }
    EraseKey(KeyOf(SBID));
}

Variant StoryboardCollection::Clear() {
    entries_.clear();
    index_.clear();
    current_ = nullptr;
    return Variant();
}

void StoryboardCollection::RemoveCollection(const std::shared_ptr<StoryboardCollection>& Storyboards) {
    if (!Storyboards) {
        return;
    }
    for (const auto& sb : Snapshot(*Storyboards)) {
        EraseKey(KeyOf(detail::StoryboardAccess::SBIDRef(*sb)));
    }
}

void StoryboardCollection::AddCollection(const std::shared_ptr<StoryboardCollection>& Storyboards,
                                         bool OverwriteExisting) {
    if (!Storyboards) {
        return;
    }
    for (const auto& sb : Snapshot(*Storyboards)) {
        std::string key = KeyOf(detail::StoryboardAccess::SBIDRef(*sb));
        if (OverwriteExisting) {
            EraseKey(key);
        }
        if (!index_.contains(key)) {
            Append(std::move(key), sb);
        }
    }
}

std::shared_ptr<StoryboardCollection> StoryboardCollection::Clone(bool CloneStoryboards) const {
    auto copy = Create();
    for (const auto& sb : entries_) {
        copy->Add(CloneStoryboards ? sb->Clone() : sb);
    }
    const std::string currentSBID = CurrentSBID();
    copy->current_ = currentSBID.empty() ? nullptr : copy->Item(currentSBID);
    return copy;
}

void storyboards::WriteStoryboards(StoryboardCollection& collection, xml::Writer& writer, bool clear) {
    writer.StartElement("storyboards");
    std::int32_t counter = 0;
    for (const auto& sb : collection) {
        detail::StoryboardAccess::SetShortID(*sb, counter);
        detail::StoryboardAccess::Write(*sb, writer, clear);
        ++counter;
    }
    writer.EndElement();
}

xml::Element StoryboardCollection::WriteElement(const xml::Document& Document, bool clear) {
    if (!Document) {
        frame::Raise(ErrNullArgument, kWriterSource, frame::kDocumentCannotBeNull);
    }
    return xml::WriteElementIn(Document, [&](xml::Writer& writer) { storyboards::WriteStoryboards(*this, writer, clear); });
}

xml::Element StoryboardCollection::ToClearXMLElement(const xml::Document& Document) {
    return WriteElement(Document, true);
}

xml::Element StoryboardCollection::ToXMLElement(const xml::Document& Document) { return WriteElement(Document, false); }

void StoryboardCollection::FromXMLElement(const xml::Element& Element) {
    // The overflow of the node counter is reported under this member's name too.
    const char* source = "StoryboardCollection.FromXMLElement";
    if (!Element) {
        frame::Raise(ErrNullArgument, source, frame::kElementCannotBeNull);
    }
    if (Element.Name() != "storyboards") {
        frame::Raise(ErrXmlForm, source, frame::NotAnElementDescription("storyboards"));
    }
    Clear();
    // Every child node counts (comments and text too). The last position must
    // fit the 16-bit counter before the first child is read, so with 32769
    // or more nodes nothing is read; with exactly 32768 every node is read
    // and the step past the last one overflows, leaving the entries in place.
    const std::int32_t nodeCount = Element.ChildCount();
    if (nodeCount - 1 > kLastVisitablePosition) {
        frame::Raise(ErrOverflow, source, frame::kOverflow);
    }
    index_.reserve(static_cast<std::size_t>(nodeCount));
    for (xml::Node child = Element.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsElement() && child.Name() == "storyboard") {
            Add(detail::StoryboardAccess::CreateFromElement(child.AsElement()));
        }
    }
    if (nodeCount - 1 == kLastVisitablePosition) {
        frame::Raise(ErrOverflow, source, frame::kOverflow);
    }
}

}  // namespace quillbank
