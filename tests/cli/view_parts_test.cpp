// The pieces of `quillbank view` and `tree --format dot`, called directly:
// the page's data, the escapes of text for HTML, for the script element and
// for DOT, and the filling of the page template.

#include <string>

#include <gtest/gtest.h>

#include <quillbank/lesson.hpp>

#include "check_findings.hpp"
#include "tree_graph.hpp"
#include "view_assets.hpp"
#include "view_data.hpp"
#include "view_page.hpp"

using namespace quillbank::tool;

namespace {

const char* const kLesson =
    R"(<lesson lessonid="L-1" title="T" identifier="I" classification="C"><ppc name="properties">)"
    R"(<boolProp name="b" value="true"/><colorProp name="c" value="#1B4F72"/></ppc>)"
    R"(<maps default="M"><map name="Other"><item sbid="S-2"/></map><map name="M"><item sbid="S-1"><item sbid="S-9"/>)"
    R"(</item><item/></map></maps><storyboards>)"
    R"(<storyboard sbid="S-1" title="One" identifier="X" type="page" shortid="4"><ppc name="properties">)"
    R"(<fontProp name="f" familyName="Arial" emSize="12" bold="-1" italic="0" underline="-1"/>)"
    R"(<locationProp name="l" from="S-1" to="S-9" map="M"/><dateProp name="d" value="2024-02-29 08:30:00"/>)"
    R"(<ppcProp name="n"><ppc name="properties"><intProp name="i" value="7"/></ppc></ppcProp></ppc>)"
    R"(<cec name="children"><ce name="e" type="t"><rectProp name="r" left="1" top="2" width="3" height="4"/>)"
    R"(<assetProp name="a" filename="x.png"><description>d</description><source>s</source></assetProp>)"
    R"(<cecProp name="k"><cec name="children"><ce name="in" type="u"><floatProp name="v" value="1.5"/></ce></cec>)"
    R"(</cecProp></ce></cec></storyboard>)"
    R"(<storyboard sbid="S-2" title="Two" type=""><ppc name="properties"/><cec name="children"/></storyboard>)"
    R"(</storyboards></lesson>)";

}  // namespace

TEST(ViewData, HoldsTheLessonDecodedInCompactRecords) {
    auto lesson = quillbank::Lesson::Create();
    lesson->FromXMLString(kLesson);
    Findings findings;
    findings.Add("L01", "lesson", "about the lesson");
    findings.Add("M01", "map \"M\" / item 1.1", "about an item");
    findings.Add("S01", "storyboard S-2", "about a storyboard");
    findings.Add("P01", "storyboard S-1 / properties / l", "about a property");
    findings.Add("M09", "maps", "about the maps");
    const Json data = ViewData("f.xml", *lesson, {{"S-1", "4"}}, findings);
    EXPECT_EQ(data.dump(),
              R"({"file":"f.xml","lesson":{"title":"T","identifier":"I","id":"L-1","classification":"C",)"
              R"("props":[["b",1,true],["c",6,"#1B4F72"]]},)"
              R"("maps":[{"name":"Other","default":false,"items":[0,1]},)"
              R"({"name":"M","default":true,"items":[0,0,1,"S-9",0,null]}],)"
              R"("sbs":[["S-1","4","page","One","X","",)"
              R"([["d",5,"2024-02-29 08:30:00"],["f",7,["Arial",12.0,5]],["l",10,[0,"S-9","M"]],)"
              R"(["n",11,[["i",2,7]]]],)"
              R"([["e","t",[["a",9,["x.png","d","s"]],["k",12,[["in","u",[["v",3,1.5]]]]],["r",8,[1,2,3,4]]]]],1],)"
              R"(["S-2",null,"","Two","","",[],[],1]],)"
              R"("findings":[[1,"L01","lesson","about the lesson",0,-1],)"
              R"([0,"M01","map \"M\" / item 1.1","about an item",1,1],)"
              R"([1,"S01","storyboard S-2","about a storyboard",2,1],)"
              R"([0,"P01","storyboard S-1 / properties / l","about a property",2,0],)"
              R"([1,"M09","maps","about the maps",0,-1]]})");
}

TEST(ViewPage, EscapesTextForHtml) {
    EXPECT_EQ(HtmlEscaped(R"(<a href="x">'&'</a>)"), "&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;");
    EXPECT_EQ(HtmlEscaped("plain é"), "plain é");
}

TEST(ViewPage, JsonCannotEndTheScriptElement) {
    Json data = {{"t", "</script><!--&\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xA7"}, {"bad", "a\xFF" "b"}};
    EXPECT_EQ(ScriptSafeJson(data),
              R"({"t":"\u003c/script\u003e\u003c!--\u0026\u2028\u2029)"
              "\xE2\x80\xA7"
              R"(","bad":"a)"
              "\xEF\xBF\xBD"
              R"(b"})");
}

TEST(ViewPage, FillsTheTemplateOnceAndNeverReadsWhatItPutIn) {
    const std::string page = ViewPage("<T>", Json{{"x", "{{TITLE}} /*{{SCRIPT}}*/"}});
    EXPECT_NE(page.find("<title>&lt;T&gt;</title>"), std::string::npos);
    EXPECT_NE(page.find(R"({"x":"{{TITLE}} /*{{SCRIPT}}*/"})"), std::string::npos);
    EXPECT_NE(page.find(kViewScript), std::string::npos);
    EXPECT_NE(page.find(kViewStyle), std::string::npos);
    EXPECT_EQ(page.find("{{DATA}}"), std::string::npos);
    EXPECT_EQ(page.find("/*{{STYLE}}*/"), std::string::npos);
}

TEST(ViewPage, TheEmbeddedFilesCannotEndTheirElements) {
    EXPECT_EQ(kViewScript.find("</"), std::string::npos);
    EXPECT_EQ(kViewScript.find("<!--"), std::string::npos);
    EXPECT_EQ(kViewStyle.find("</"), std::string::npos);
    EXPECT_EQ(kViewPageTemplate.substr(0, 15), "<!DOCTYPE html>");
}

TEST(TreeGraph, EscapesDotStrings) {
    EXPECT_EQ(DotEscaped("a \"b\" \\N\nc\td\x7F" "e"), "a \\\"b\\\" \\\\N\\ncde");
    EXPECT_EQ(DotEscaped("caf\xC3\xA9 \xC3 \xED\xA0\x80!"), "caf\xC3\xA9 \xEF\xBF\xBD \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD!");
}
