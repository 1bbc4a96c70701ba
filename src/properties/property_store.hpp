#pragma once

// The storage of a property bag: properties in insertion order, found by their
// name folded to lower case. Lookup, replacement and removal take constant
// time on average, whatever the size of the bag.

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "properties/persisted_property.hpp"

namespace quillbank::detail {

class PropertyStore {
public:
    using List = std::list<std::shared_ptr<PersistedProperty>>;

    std::size_t Size() const noexcept { return order_.size(); }
    const List& Items() const noexcept { return order_; }

    // The property stored under the name (ignoring case), or null.
    std::shared_ptr<PersistedProperty> Find(std::string_view name) const;
    // Removes any property of the same name, then appends this one under its own name.
    void Add(std::shared_ptr<PersistedProperty> property);
    // Nothing happens when the name is absent.
    void Remove(std::string_view name);

private:
    List order_;
    std::unordered_map<std::string, List::iterator> index_;
};

}  // namespace quillbank::detail
