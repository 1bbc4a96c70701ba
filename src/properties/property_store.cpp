#include "properties/property_store.hpp"

#include <functional>
#include <utility>

#include "support/sort.hpp"

namespace quillbank::detail {

namespace {

std::size_t HashOf(std::string_view key) { return std::hash<std::string_view>{}(key); }

bool IsAscii(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return false;
        }
    }
    return true;
}

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

// Whether `name` folds to `key` (a name folded to lower case already).
bool FoldsTo(std::string_view name, std::string_view key) {
    if (IsAscii(name)) {
        if (name.size() != key.size()) {
            return false;
        }
        for (std::size_t i = 0; i < name.size(); ++i) {
            if (LowerAscii(name[i]) != key[i]) {
                return false;
            }
        }
        return true;
    }
    return support::LowerCase(name) == key;
}

bool Matches(const std::shared_ptr<PersistedProperty>& property, std::string_view key) {
    return property && FoldsTo(property->NameRef(), key);
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
    const std::string key = support::LowerCase(name);
    const std::uint32_t position = Locate(key, HashOf(key));
    return position == kFree ? nullptr : entries_[position].property;
}

void PropertyStore::Add(std::shared_ptr<PersistedProperty> property) {
    const std::string key = support::LowerCase(property->NameRef());
    const std::size_t hash = HashOf(key);
    if (const std::uint32_t old = Locate(key, hash); old != kFree) {
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
    const std::string key = support::LowerCase(name);
    if (const std::uint32_t position = Locate(key, HashOf(key)); position != kFree) {
        Erase(position);
    }
}

std::uint32_t PropertyStore::Locate(std::string_view key, std::size_t hash) const {
    if (table_.empty()) {
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            const Entry& entry = entries_[i];
            if (entry.hash == hash && Matches(entry.property, key)) {
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
        if (position != kRemoved && entries_[position].hash == hash && Matches(entries_[position].property, key)) {
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
