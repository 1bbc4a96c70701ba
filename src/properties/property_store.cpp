#include "properties/property_store.hpp"

#include <functional>
#include <utility>

#include "support/folded_keys.hpp"

namespace quillbank::detail {

namespace {

bool Matches(const std::shared_ptr<PersistedProperty>& property, std::string_view name) {
    return property && support::SameFolded(property->NameRef(), name);
}

}  // namespace

void PropertyStore::Reserve(std::size_t count) {
    entries_.reserve(count);
    if (count > kLinearLimit && table_.Full(count)) {
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
    const bool full = table_.Empty() ? entries_.size() + 1 > kLinearLimit : table_.Full(entries_.size() + 1);
    if (full) {
        Rebuild(live_ + 1);
    }
    entries_.push_back(Entry{std::move(property), hash});
    ++live_;
    if (!table_.Empty()) {
        table_.Insert(static_cast<std::uint32_t>(entries_.size() - 1), hash);
    }
}

void PropertyStore::Remove(std::string_view name) {
    if (const std::uint32_t position = Locate(name, support::FoldedHash(name)); position != kFree) {
        Erase(position);
    }
}

std::uint32_t PropertyStore::Locate(std::string_view name, std::size_t hash) const {
    auto matches = [&](std::uint32_t position) {
        const Entry& entry = entries_[position];
        return entry.hash == hash && Matches(entry.property, name);
    };
    if (table_.Empty()) {
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (matches(static_cast<std::uint32_t>(i))) {
                return static_cast<std::uint32_t>(i);
            }
        }
        return kFree;
    }
    return table_.Find(hash, matches);
}

void PropertyStore::Erase(std::uint32_t position) {
    Entry& entry = entries_[position];
    if (!table_.Empty()) {
        table_.Remove(position, entry.hash);
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
        table_.Clear();
        return;
    }
    table_.Reset(wanted);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        table_.Insert(static_cast<std::uint32_t>(i), entries_[i].hash);
    }
}

}  // namespace quillbank::detail
