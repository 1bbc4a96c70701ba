#include "properties/property_store.hpp"

#include <functional>
#include <utility>

#include "support/folded_keys.hpp"

namespace quillbank::detail {

namespace {

bool Matches(const std::shared_ptr<PersistedProperty>& property, std::string_view name) {
    return property && support::SameFolded(property->NameRef(), name);
}

std::size_t TableSizeFor(std::size_t entries) {
    std::size_t size = 16;
    while (size < entries * 2) {
        size *= 2;
    }
    return size;
}

}  // namespace

void PropertyStore::Reserve(std::size_t count) {
    entries_.reserve(count);
    if (count > kLinearLimit && table_.size() < TableSizeFor(count)) {
        Rebuild(count);
    }
}

std::shared_ptr<PersistedProperty> PropertyStore::Find(std::string_view name) const {
    const std::uint32_t position = Locate(name, support::FoldedHash(name));
    return position == kFree ? nullptr : entries_[position].property;
}

void PropertyStore::Add(std::shared_ptr<PersistedProperty> property) {
    const std::size_t hash = support::FoldedHash(property->NameRef());
    if (const std::uint32_t old = Locate(property->NameRef(), hash); old != kFree) {
        Erase(old);
    }
    const bool full = table_.empty() ? entries_.size() + 1 > kLinearLimit : (entries_.size() + 1) * 2 > table_.size();
    if (full) {
        Rebuild(live_ + 1);
    }
    entries_.push_back(Entry{std::move(property), hash});
    ++live_;
    if (!table_.empty()) {
        InsertIntoTable(static_cast<std::uint32_t>(entries_.size() - 1));
    }
}

void PropertyStore::Remove(std::string_view name) {
    if (const std::uint32_t position = Locate(name, support::FoldedHash(name)); position != kFree) {
        Erase(position);
    }
}

std::uint32_t PropertyStore::Locate(std::string_view name, std::size_t hash) const {
    if (table_.empty()) {
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            const Entry& entry = entries_[i];
            if (entry.hash == hash && Matches(entry.property, name)) {
                return static_cast<std::uint32_t>(i);
            }
        }
        return kFree;
    }
    const std::size_t mask = table_.size() - 1;
    for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const std::uint32_t position = table_[slot];
        if (position == kFree) {
            return kFree;
        }
        if (position != kRemoved && entries_[position].hash == hash && Matches(entries_[position].property, name)) {
            return position;
        }
    }
}

void PropertyStore::Erase(std::uint32_t position) {
    Entry& entry = entries_[position];
    if (!table_.empty()) {
        const std::size_t mask = table_.size() - 1;
        std::size_t slot = entry.hash & mask;
        while (table_[slot] != position) {
            slot = (slot + 1) & mask;
        }
        table_[slot] = kRemoved;
    }
    // Taken out before it is released, so that the store is whole again
    // whatever the property's release does.
    std::shared_ptr<PersistedProperty> released = std::move(entry.property);
    --live_;
    const std::size_t gaps = entries_.size() - live_;
    if (gaps > live_ && gaps > kLinearLimit) {
        Rebuild(live_);
    }
}

void PropertyStore::InsertIntoTable(std::uint32_t position) {
    const std::size_t mask = table_.size() - 1;
    std::size_t slot = entries_[position].hash & mask;
    while (table_[slot] != kFree && table_[slot] != kRemoved) {
        slot = (slot + 1) & mask;
    }
    table_[slot] = position;
}

void PropertyStore::Rebuild(std::size_t room) {
    if (live_ != entries_.size()) {
        std::vector<Entry> kept;
        kept.reserve(room > live_ ? room : live_);
        for (Entry& entry : entries_) {
            if (entry.property) {
                kept.push_back(std::move(entry));
            }
        }
        entries_ = std::move(kept);
    }
    const std::size_t wanted = room > live_ ? room : live_;
    if (wanted <= kLinearLimit) {
        table_.clear();
        table_.shrink_to_fit();
        return;
    }
    table_.assign(TableSizeFor(wanted), kFree);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        InsertIntoTable(static_cast<std::uint32_t>(i));
    }
}

}  // namespace quillbank::detail
