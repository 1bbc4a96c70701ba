#include <quillbank/storyboard_collection.hpp>

#include <utility>
#include <vector>

#include "frame/raise.hpp"
#include "storyboards/storyboard_access.hpp"
#include "support/folded_keys.hpp"
#include "support/sort.hpp"
#include "support/text.hpp"
#include "xml/writing.hpp"
#include "reading/element_cursor.hpp"
#include "reading/model_reader.hpp"

namespace quillbank {

namespace {

// Both writers report failures under the normal writer's name, spelt so.
constexpr const char* kWriterSource = "StoryboardtCollection.ToXMLElement";


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

std::uint32_t StoryboardCollection::Locate(std::string_view SBID, std::size_t hash) const {
    return table_.Find(hash, [&](std::uint32_t position) {
        const Entry& entry = entries_[position];
        return entry.hash == hash &&
               support::FoldsTo(SBID, std::string_view(keys_).substr(entry.keyStart, entry.keyLength));
    });
}

void StoryboardCollection::Append(std::string_view SBID, std::size_t hash, const std::shared_ptr<Storyboard>& SB) {
    if (table_.Full(entries_.size() + 1)) {
        Rebuild(live_ + 1);
    }
    const std::size_t keyStart = keys_.size();
    keys_ += support::LowerCase(SBID);
    entries_.push_back(Entry{SB, hash, keyStart, keys_.size() - keyStart});
    ++live_;
    table_.Insert(static_cast<std::uint32_t>(entries_.size() - 1), hash);
}

void StoryboardCollection::Erase(std::uint32_t position) {
    Entry& entry = entries_[position];
    table_.Remove(position, entry.hash);
    // Taken out before it is released, so that the collection is whole again
    // whatever the storyboard's release does.
    std::shared_ptr<Storyboard> released = std::move(entry.storyboard);
    --live_;
    const std::size_t gaps = entries_.size() - live_;
    if (gaps > live_ && gaps > 16) {
        Rebuild(live_);
    }
}

void StoryboardCollection::EraseKey(std::string_view SBID) {
    if (const std::uint32_t position = Locate(SBID, support::FoldedHash(SBID)); position != kFree) {
        Erase(position);
    }
}

void StoryboardCollection::Rebuild(std::size_t room) {
    if (live_ != entries_.size()) {
        std::vector<Entry> kept;
        kept.reserve(room > live_ ? room : live_);
        std::string keptKeys;
        for (Entry& entry : entries_) {
            if (entry.storyboard) {
                const std::size_t keyStart = keptKeys.size();
                keptKeys.append(keys_, entry.keyStart, entry.keyLength);
                entry.keyStart = keyStart;
                kept.push_back(std::move(entry));
            }
        }
        entries_ = std::move(kept);
        keys_ = std::move(keptKeys);
    }
    table_.Reset(room > live_ ? room : live_);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        table_.Insert(static_cast<std::uint32_t>(i), entries_[i].hash);
    }
}

std::shared_ptr<Storyboard> StoryboardCollection::Add(const std::shared_ptr<Storyboard>& SB) {
    if (!SB) {
        return nullptr;
    }
    const std::string& sbid = detail::StoryboardAccess::SBIDRef(*SB);
    const std::size_t hash = support::FoldedHash(sbid);
    if (const std::uint32_t old = Locate(sbid, hash); old != kFree) {
        // The existing entry goes as Remove takes it (the current storyboard
        // is dropped when its identifier is exactly this one), and the new
        // one is appended under the same key.
        if (current_ && current_->SBID() == sbid) {
            current_ = nullptr;
        }
        Erase(old);
    }
    Append(sbid, hash, SB);
    return SB;
}

bool StoryboardCollection::Contains(std::string_view SBID) const {
    return Locate(SBID, support::FoldedHash(SBID)) != kFree;
}

std::int32_t StoryboardCollection::Count() const { return static_cast<std::int32_t>(live_); }

std::shared_ptr<Storyboard> StoryboardCollection::Item(std::string_view SBID) const {
    const std::uint32_t position = Locate(SBID, support::FoldedHash(SBID));
    return position == kFree ? nullptr : entries_[position].storyboard;
}

void StoryboardCollection::Remove(std::string_view SBID) {
    // The current storyboard is compared exactly, letter case included; the
    // entry is found without regard to case.
    if (current_ && current_->SBID() == SBID) {
        current_ = nullptr;
    }
    EraseKey(SBID);
}

Variant StoryboardCollection::Clear() {
    // Emptied before the storyboards are released.
    std::vector<Entry> released = std::move(entries_);
    entries_.clear();
    table_.Clear();
    keys_.clear();
    live_ = 0;
    current_ = nullptr;
    return Variant();
}

void StoryboardCollection::RemoveCollection(const std::shared_ptr<StoryboardCollection>& Storyboards) {
    if (!Storyboards) {
        return;
    }
    for (const auto& sb : Snapshot(*Storyboards)) {
        EraseKey(detail::StoryboardAccess::SBIDRef(*sb));
    }
}

void StoryboardCollection::AddCollection(const std::shared_ptr<StoryboardCollection>& Storyboards,
                                         bool OverwriteExisting) {
    if (!Storyboards) {
        return;
    }
    for (const auto& sb : Snapshot(*Storyboards)) {
        const std::string& sbid = detail::StoryboardAccess::SBIDRef(*sb);
        const std::size_t hash = support::FoldedHash(sbid);
        std::uint32_t existing = Locate(sbid, hash);
        if (OverwriteExisting && existing != kFree) {
            Erase(existing);
            existing = kFree;
        }
        if (existing == kFree) {
            Append(sbid, hash, sb);
        }
    }
}

std::shared_ptr<StoryboardCollection> StoryboardCollection::Clone(bool CloneStoryboards) const {
    auto copy = Create();
    for (const auto& sb : *this) {
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
    detail::ModelReader::ReadStoryboards(*this, detail::reading::ElementCursor(Element));
}

}  // namespace quillbank
