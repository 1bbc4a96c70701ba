#include "xml/pugi/node_cursor.hpp"

#include <vector>

#include "xml/dom_error.hpp"
#include "xml/pugi/parse.hpp"

namespace quillbank::xml::detail {

struct ParseScratch {
    pugi::xml_document document;
    Layout layout;
    CursorSource source;
};

namespace {

// The scratch documents of this thread, and how many are in use.
struct ScratchPool {
    std::vector<std::unique_ptr<ParseScratch>> documents;
    std::size_t inUse = 0;
};

thread_local ScratchPool pool;

}  // namespace

NodeCursor::Parsed::Parsed(std::string_view text) {
    if (pool.inUse == pool.documents.size()) {
        pool.documents.push_back(std::make_unique<ParseScratch>());
    }
    scratch_ = pool.documents[pool.inUse++].get();
    // As Document::ParseRootElement parses: whitespace not preserved, the
    // first element below the document is the root.
    const ParseOutcome outcome = ParseXmlText(scratch_->document, text, false, scratch_->layout);
    if (!outcome.loaded) {
        return;
    }
    loaded_ = true;
    scratch_->source.rules = {false, outcome.mentionsXmlSpace, scratch_->layout.Empty() ? nullptr : &scratch_->layout};
    for (pugi::xml_node n = scratch_->document.first_child(); n; n = n.next_sibling()) {
        if (n.type() == pugi::node_element) {
            root_ = NodeCursor(n, &scratch_->source);
            return;
        }
    }
}

NodeCursor::Parsed::~Parsed() {
    scratch_->document.reset();
    scratch_->layout = Layout();
    scratch_->source = CursorSource();
    --pool.inUse;
}

Element NodeCursor::Facade() const {
    if (source_ == nullptr || source_->owner == nullptr) {
        RaiseDomError("The node has no document.");
    }
    return DocumentImpl::MakeElement(*source_->owner, node_);
}

}  // namespace quillbank::xml::detail
