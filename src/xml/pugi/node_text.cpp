#include "xml/pugi/node_text.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/layout.hpp"
#include "xml/pugi/serialize.hpp"
#include "xml/pugi/walk.hpp"
#include "xml/pugi/xml_space.hpp"
#include "xml/text_checks.hpp"

namespace quillbank::xml::detail {

namespace {

bool IsWhitespaceOnly(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return IsXmlWhitespace(c); });
}

// Whether whitespace is preserved in the content of `element` (or, for any
// other node, of its parent).
bool PreservesIn(pugi::xml_node node, const TextRules& rules) {
    if (rules.preserveWhiteSpace) {
        return true;
    }
    if (!rules.mayHaveXmlSpace) {
        return false;
    }
    for (pugi::xml_node n = node.type() == pugi::node_element ? node : node.parent(); n && n.type() == pugi::node_element;
         n = n.parent()) {
        if (const int space = XmlSpaceOf(n); space != 0) {
            return space > 0;
        }
    }
    return false;
}

// `text` without the whitespace at its start (but not at or after `keepFrom`)
// and at its end (but not before `keepTo`): the ends of the CDATA sections.
std::string Trimmed(std::string text, std::size_t keepFrom, std::size_t keepTo) {
    std::size_t begin = 0;
    while (begin < text.size() && begin < keepFrom && IsXmlWhitespace(text[begin])) {
        ++begin;
    }
    std::size_t end = text.size();
    while (end > begin && end > keepTo && IsXmlWhitespace(text[end - 1])) {
        --end;
    }
    if (begin == 0 && end == text.size()) {
        return text;
    }
    return text.substr(begin, end - begin);
}

// Joins the text of a subtree. Each element on the way down has a frame: where
// its own text begins in the result, whether whitespace that is not preserved
// waits to stand as a space before its next text, and whether it preserves
// whitespace.
class TextJoiner {
public:
    explicit TextJoiner(const TextRules& rules) : rules_(rules) {}

    void Open(pugi::xml_node element, bool preserving) {
        frames_.push_back({out_.size(), (Marks(element) & Layout::kSpaceInside) != 0, preserving});
    }

    // Closes the frame of `element` (a child of the frame below).
    void Close(pugi::xml_node element) {
        const bool pending = frames_.back().spacePending;
        frames_.pop_back();
        frames_.back().spacePending =
            frames_.back().spacePending || pending || (Marks(element) & Layout::kSpaceAfter) != 0;
    }

    // A node without children inside the current frame.
    void Leaf(pugi::xml_node node) {
        Frame& frame = frames_.back();
        switch (node.type()) {
            case pugi::node_pcdata: {
                const std::string_view value = node.value();
                if (!frame.preserving && IsWhitespaceOnly(value)) {
                    frame.spacePending = true;
                } else {
                    Piece(value, false);
                }
                break;
            }
            case pugi::node_cdata:
                Piece(node.value(), true);
                break;
            default:
                break;
        }
        if (Marks(node) & Layout::kSpaceAfter) {
            frames_.back().spacePending = true;
        }
    }

    bool Preserving() const { return frames_.back().preserving; }

    std::string Result(bool trim) && {
        if (!trim) {
            return std::move(out_);
        }
        return Trimmed(std::move(out_), cdataStart_, cdataEnd_);
    }

private:
    struct Frame {
        std::size_t start;
        bool spacePending;
        bool preserving;
    };

    std::uint8_t Marks(pugi::xml_node node) const { return rules_.layout ? rules_.layout->Of(node) : 0; }

    void Piece(std::string_view text, bool cdata) {
        if (text.empty()) {
            // An empty CDATA section still counts as text of its element.
            if (cdata) {
                Frame& frame = frames_.back();
                if (frame.spacePending && out_.size() > frame.start) {
                    out_.push_back(' ');
                }
                frame.spacePending = false;
                cdataStart_ = std::min(cdataStart_, out_.size());
                cdataEnd_ = std::max(cdataEnd_, out_.size());
            }
            return;
        }
        // The text begins the text of every frame whose own text has not
        // begun yet; the nearest frame whose text has begun decides whether
        // a space stands before it.
        std::size_t begun = frames_.size();
        while (begun > 0 && frames_[begun - 1].start == out_.size()) {
            --begun;
        }
        if (begun > 0) {
            if (frames_[begun - 1].spacePending) {
                out_.push_back(' ');
            }
            frames_[begun - 1].spacePending = false;
        }
        for (std::size_t j = begun; j < frames_.size(); ++j) {
            frames_[j].start = out_.size();
            frames_[j].spacePending = false;
        }
        if (cdata) {
            cdataStart_ = std::min(cdataStart_, out_.size());
        }
        out_ += text;
        if (cdata) {
            cdataEnd_ = std::max(cdataEnd_, out_.size());
        }
    }

    const TextRules& rules_;
    std::string out_;
    std::vector<Frame> frames_;
    std::size_t cdataStart_ = std::string::npos;
    std::size_t cdataEnd_ = 0;
};

void JoinSubtree(TextJoiner& joiner, pugi::xml_node top, const TextRules& rules) {
    WalkSubtree(
        top,
        [&](pugi::xml_node n) {
            if (n.type() != pugi::node_element) {
                joiner.Leaf(n);
                return false;
            }
            bool preserving = joiner.Preserving();
            if (!rules.preserveWhiteSpace && rules.mayHaveXmlSpace) {
                if (const int space = XmlSpaceOf(n); space != 0) {
                    preserving = space > 0;
                }
            }
            joiner.Open(n, preserving);
            return true;
        },
        [&](pugi::xml_node n) {
            if (n.type() == pugi::node_element) {
                joiner.Close(n);
            }
        });
}

}  // namespace

std::string NodeText(pugi::xml_node node, const TextRules& rules) {
    switch (node.type()) {
        case pugi::node_declaration:
            return DeclarationText(node);
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi:
            return node.value();
        case pugi::node_pcdata:
            return PreservesIn(node, rules) ? std::string(node.value()) : Trimmed(node.value(), std::string::npos, 0);
        case pugi::node_element:
        case pugi::node_document:
            break;
        default:
            return std::string();
    }
    const bool preserving = node.type() == pugi::node_document ? rules.preserveWhiteSpace : PreservesIn(node, rules);
    // The common case: an element holding one text node, nothing remembered.
    if (node.type() == pugi::node_element && rules.layout == nullptr) {
        const pugi::xml_node child = node.first_child();
        if (child && child.type() == pugi::node_pcdata && !child.next_sibling()) {
            return preserving ? std::string(child.value()) : Trimmed(child.value(), std::string::npos, 0);
        }
        if (!child) {
            return std::string();
        }
    }
    TextJoiner joiner(rules);
    if (node.type() == pugi::node_document) {
        joiner.Open(node, preserving);
        for (pugi::xml_node child = VisibleFirstChild(node); child; child = child.next_sibling()) {
            JoinSubtree(joiner, child, rules);
        }
    } else {
        joiner.Open(node, preserving);
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            JoinSubtree(joiner, child, rules);
        }
    }
    return std::move(joiner).Result(!preserving);
}

}  // namespace quillbank::xml::detail
