#include "xml/pugi/layout.hpp"

#include <algorithm>
#include <functional>

namespace quillbank::xml::detail {

namespace {

// Orders by address with a total order, as std::less does for pointers.
bool NodeBefore(const std::pair<const pugi::xml_node_struct*, std::uint8_t>& a,
                const std::pair<const pugi::xml_node_struct*, std::uint8_t>& b) {
    return std::less<const pugi::xml_node_struct*>()(a.first, b.first);
}

}  // namespace

void Layout::Seal() {
    if (!std::is_sorted(marks_.begin(), marks_.end(), NodeBefore)) {
        std::stable_sort(marks_.begin(), marks_.end(), NodeBefore);
    }
    // One entry a node: the marks of equal neighbours are joined.
    auto out = marks_.begin();
    for (auto in = marks_.begin(); in != marks_.end(); ++in) {
        if (out != marks_.begin() && std::prev(out)->first == in->first) {
            std::prev(out)->second = static_cast<std::uint8_t>(std::prev(out)->second | in->second);
        } else {
            *out++ = *in;
        }
    }
    marks_.erase(out, marks_.end());
}

void Layout::Merge(Layout&& other) {
    if (other.marks_.empty()) {
        return;
    }
    if (marks_.empty()) {
        marks_ = std::move(other.marks_);
        return;
    }
    marks_.insert(marks_.end(), other.marks_.begin(), other.marks_.end());
    Seal();
}

std::vector<Layout::Entry>::iterator Layout::Find(const pugi::xml_node_struct* node) {
    const auto found = std::lower_bound(marks_.begin(), marks_.end(), Entry(node, 0), NodeBefore);
    return found != marks_.end() && found->first == node ? found : marks_.end();
}

std::vector<Layout::Entry>::const_iterator Layout::Find(const pugi::xml_node_struct* node) const {
    const auto found = std::lower_bound(marks_.begin(), marks_.end(), Entry(node, 0), NodeBefore);
    return found != marks_.end() && found->first == node ? found : marks_.end();
}

}  // namespace quillbank::xml::detail
