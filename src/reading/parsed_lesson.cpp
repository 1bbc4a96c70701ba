// Built with the pugixml backend only.

#include "reading/parsed_lesson.hpp"

#include "frame/raise.hpp"
#include "reading/model_reader.hpp"
#include "xml/pugi/document_impl.hpp"
#include "xml/pugi/node_cursor.hpp"

namespace quillbank::detail::reading {

void ReadLessonFromParse(Lesson& lesson, const xml::Document& document) {
    const xml::Element root = document.DocumentElement();
    if (!root) {
        frame::Raise(ErrNullArgument, "Lesson.FromXMLElement", frame::kElementCannotBeNull);
    }
    const std::shared_ptr<xml::detail::DocumentImpl>& impl = xml::detail::DocumentImpl::ImplOf(document);
    const xml::detail::CursorSource source{{impl->preserveWhiteSpace, impl->mayHaveXmlSpace, impl->LayoutOrNull()},
                                           &impl};
    ModelReader::ReadLesson(lesson, xml::detail::NodeCursor(xml::detail::DocumentImpl::PugiOf(root), &source));
}

}  // namespace quillbank::detail::reading
