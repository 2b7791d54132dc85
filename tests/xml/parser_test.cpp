// The parser: error codes with their names, severities and lines, what the tree holds
// after success and failure, references, encodings, termination and the depth limit.
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The children in order: "[text]" for a text, "(kind)" for any other node.
std::string texts(const ZuXmlElement* element) {
    std::string all;
    for (Zu_List::Cell* c = element->getChildren()._first; c; c = c->_next) {
        const ZuXmlNodeI* node = static_cast<const ZuXmlNodeI*>(c->_value);
        all += node->getType() == ZuXmlNodeI::TextNode
                   ? "[" + std::string(static_cast<const ZuXmlTextI*>(node)->getText()) + "]"
                   : "(" + std::to_string(node->getType()) + ")";
    }
    return all;
}

std::string nested(unsigned depth) {
    std::string open, close;
    for (unsigned i = 0; i < depth; ++i, open += "<d>", close += "</d>") {}
    return open + "<leaf/>" + close;
}

} // namespace

TEST(XmlParser, ErrorCodesNamesLinesAndWhatIsKept) {
    // Every failure empties the document, nodes read before the error included; only an
    // empty document keeps what it read. Trailing content is the one mild error.
    struct Case {
        std::string text;
        int line;
        unsigned kept = 0;
    };
    const struct {
        int code;
        const char* name;
        std::vector<Case> cases;
    } families[] = {
        {1, "INVALID_DOCUMENT", {{"<a></a>", 1}, {"  <a></a>", 1}}},
        {2, "EMPTY_DOCUMENT",
         {{"<?xml version='1.0'?>\n<!-- only -->\n", 3, 1}, {"<!--c--><?p d?>text", 1, 2}}},
        {3, "EARLY_END_OF_DOCUMENT",
         {{"<a>\n<!-- open", 2}, {"<a b='xy", 1}, {"<a><![CDATA[x</a>", 1},
          {"<!DOCTYPE a [ <!ELEMENT a ANY>", 1}, {"<?pi never closed", 1},
          {"<a><?pi never closed</a>", 1}}},
        {4, "END_OF_DOCUMENT_EXPECTED",
         {{"<a/>\n xyz", 2}, {"<a/><b/>", 1}, {"<a/><![CDATA[x]]>", 1}}},
        {5, "END_OF_DOCUMENT_UNEXPECTED",
         {{"<a>text\n", 2}, {"<!--c--><a><b/>", 1}, {"<a>]]]]]]", 1}}},
        {6, "INVALID_VERSION_INFO",
         {{"<?xml?><a/>", 1}, {"<?xml version=1.0?><a/>", 1}, {"<?xml version='1.0\"?><a/>", 1},
          {"<?xml VERSION='1.0'?><a/>", 1}, {"<?xml-stylesheet href='s'?><a/>", 1}}},
        {7, "INVALID_SD_DECLARATION", {{"<?xml version='1.0' standalone='maybe'?><a/>", 1}}},
        {8, "", {{"<!DOCTYPE a PUBLIC \"x{y\" \"s\"><a/>", 1}, {"<!DOCTYPE a SYSTEM x><a/>", 1}}},
        {9, "INVALID_DECLARATION_END", {{"<?xml version='1.0' foo?><a/>", 1}}},
        {10, "INVALID_COMMENT_CHARS", {{"<a><!-- a -- b --></a>", 1}}},
        {11, "RESERVED_PI_TARGET_NAME",
         {{"<?xml version='1.0'?>\n<?XmLfoo x?><a/>", 2}, {"<!--c--><?xml-x d?><a/>", 1},
          {"<!--c--><?xml-stylesheet d?><?xml version='1.0'?><a/>", 1}}},
        {12, "INVALID_CDATA", {{"<a><![CDATA[\x01]]></a>", 1}}},
        {13, "INVALID_ENCODING_NAME",
         {{"<?xml version='1.0' encoding='1x'?><a/>", 1},
          {"<?xml version='1.0' encoding=''?><a/>", 1}}},
        {14, "INVALID_ENCODING_DECLARATION", {{"<?xml version='1.0' encoding=utf8?><a/>", 1}}},
        {15, "INVALID_TAG_NAME", {{"<a>\n\n<1/></a>", 3}, {"<a></ a></a>", 1}}},
        {16, "UNEXPECTED_TAG_SYMBOL", {{"<a b='<'/>    ", 1}}},
        {17, "END_TAG_EXPECTED", {{"<a></a     ", 1}}},
        {18, "END_TAG_NOT_MATCHED", {{"<a>\n</b>", 2}}},
        {19, "INVALID_TAG_END", {{"<a b='1'c='2'/>", 1}, {"<a/ >    ", 1}}},
        {20, "EQUAL_SIGN_EXPECTED", {{"<a b/>    ", 1}}},
        {21, "INVALID_ATTRIBUTE_VALUE", {{"<a b=1/>    ", 1}}},
        {22, "INVALID_REFERENCE_DECLARATION", {{"<a>&#X41;</a>", 1}, {"<a>%p;</a>   ", 1}}},
        {23, "INVALID_CHARREF_DECLARATION", {{"<a b='&#X41;'/>", 1}, {"<a b='&lt'/>    ", 1}}},
        {24, "INVALID_DOCTYPE_NAME", {{"<!DOCTYPE 1><a/>", 1}}},
        {ZuXmlError::NestingTooDeep, "", {{nested(ZuXmlParser::MaxDepth + 1), 1}}},
    };
    for (const auto& family : families) {
        for (const Case& c : family.cases) {
            ZuXmlDocument doc;
            const XmlOutcome o = parseInto(doc, c.text);
            const std::string shown = c.text.substr(0, 60);
            EXPECT_EQ(o.code, family.code) << shown;
            EXPECT_EQ(o.line, c.line) << shown;
            EXPECT_EQ(o.name, family.name) << shown;
            EXPECT_EQ(o.severity, family.code == 4 ? 1 : 2) << shown;
            EXPECT_EQ(doc.getRootElement(), nullptr) << shown;
            EXPECT_EQ(nodeCount(doc), c.kept) << shown;
        }
    }
    ZuXmlDocument doc;
    EXPECT_EQ(parseInto(doc, nested(ZuXmlParser::MaxDepth)).code, 0) << "the deepest accepted";
}

TEST(XmlParser, ErrorsInContentAreClearedByLaterConstructs) {
    // In content every comment, PI and CDATA follows a failed element attempt, so the
    // reserved PI target that aborts in the prolog is lost inside content.
    ZuXmlDocument doc;
    EXPECT_EQ(parseInto(doc, "<a><!--c--><?xml-x d?><![CDATA[z]]></a>").code, 0);
    EXPECT_EQ(texts(doc.getRootElement()), "(3)(5)(4)");
    EXPECT_EQ(parseInto(doc, "<?xml version='1.0'?><?XML-STYLESHEET d?><a/>").code, 0);
    EXPECT_EQ(parseInto(doc, "<a/>\n<!-- c --> <?p d?>\n").code, 0);
    EXPECT_EQ(nodeCount(doc), 3u) << "comments and PIs after the root are kept";
}

TEST(XmlParser, ErrorLeftFromAnEarlierParseFailsTheNext) {
    ZuXmlDocument doc;
    ZuXmlError::Set(ZuXmlError::Fatal, 18, 7);
    std::istringstream in("<?xml version='1.0'?><a/>");
    doc.read(in);
    EXPECT_TRUE(ZuXmlError::IsSet());
    EXPECT_EQ(doc.getRootElement(), nullptr);
    ZuXmlError::Reset();
    ZuXmlError::Severity severity;
    int code = 1, line = 1;
    EXPECT_EQ(ZuXmlError::Get(severity, code, line), nullptr);
    EXPECT_EQ(code + line + int(severity), 0);
    for (int unnamed : {0, 8, 25, 26, 99, -1}) {
        ZuXmlError::Set(2, unnamed, 1);
        EXPECT_EQ(ZuXmlError::Get(severity, code, line), nullptr) << unnamed;
    }
    ZuXmlError::Reset();
}

TEST(XmlParser, ReferencesInAttributesAndContent) {
    ZuXmlDocument doc;
    ASSERT_EQ(parseInto(doc, "<a v='x&lt;y' q='&QUOTE;' d='&quot;z' h='&#x41;&#66;' n='&#;'"
                             " p='50%' u=\"it's\">x&amp;y&quot;&#x41;&#;&unknown;</a>")
                  .code,
              0);
    const ZuXmlElement* a = doc.getRootElement();
    // Unknown names stay verbatim; character 0 ends the string.
    for (const auto& [name, value] : {std::pair<const char*, const char*>{"v", "x<y"}, {"q", "'"},
                                      {"d", "&quot;z"}, {"h", "AB"}, {"n", ""}, {"p", "50%"},
                                      {"u", "it's"}})
        EXPECT_STREQ(a->getAttributeValue(name), value) << name;
    // Text pieces around references are separate nodes; &#; adds nothing; an unknown
    // name stays as a reference node.
    EXPECT_EQ(texts(a), "[x][&][y](6)[A](6)");
    EXPECT_STREQ(a->getText(), "x");
    // Character references keep their low 8 bits only, as one byte.
    ASSERT_EQ(parseInto(doc, "<a v='&#x20AC;'>&#233;</a>").code, 0);
    EXPECT_STREQ(doc.getRootElement()->getAttributeValue("v"), "\xAC");
    EXPECT_STREQ(doc.getRootElement()->getText(), "\xE9");
}

TEST(XmlParser, ContentAndPrologDetails) {
    ZuXmlDocument doc;
    ASSERT_EQ(parseInto(doc, "<?XML version='1.1' encoding='ISO-8859-1' standalone='no' ?>\n"
                             "<!DOCTYPE r SYSTEM 'r.dtd' [ <!ELEMENT r ANY> ]>\n"
                             "<r xml:space='preserve'>x[0]]]><b xml:space='Preserve'/>\n"
                             "<!--c--><c>t</c></r>")
                  .code,
              0);
    EXPECT_STREQ(doc.getVersion(), "1.1");
    EXPECT_STREQ(doc.getDoctypeName(), "r");
    EXPECT_STREQ(doc.getDoctypeRest(), " SYSTEM 'r.dtd' [ <!ELEMENT r ANY> ]");
    const ZuXmlElement* r = doc.getRootElement();
    EXPECT_TRUE(r->doesPreserveWhiteSpaces());
    EXPECT_FALSE(r->getElement("b")->doesPreserveWhiteSpaces());
    // "]]>" is character data, and white space between elements is text.
    EXPECT_EQ(texts(r), "[x[0]]]>](1)[\n](3)(1)");
    EXPECT_STREQ(r->getElement("c")->getText(), "t");

    ASSERT_EQ(parseInto(doc, "<a><?p  some data ?><?q?></a>").code, 0);
    ZuXmlNodeIterator it(doc.getRootElement()->createChildrenIterator());
    const ZuXmlPII* p = static_cast<const ZuXmlPII*>(it.getNextNode());
    EXPECT_STREQ(p->getTarget(), "p");
    EXPECT_STREQ(p->getData(), "some data ");
    EXPECT_STREQ(static_cast<const ZuXmlPII*>(it.getNextNode())->getData(), "");
}

TEST(XmlParser, LoadsUtf16WithAMarkAndUtf8) {
    const std::u16string text = u"\uFEFF<r\u00E9 a='\u20AC'>\u4E2D</r\u00E9>";
    const std::string utf8 = "<r\xC3\xA9 a='\xE2\x82\xAC'>\xE4\xB8\xAD</r\xC3\xA9>";
    const std::pair<std::string, int> cases[] = {
        {utf16(text, false), 0}, {utf16(text, true), 0}, {"\xEF\xBB\xBF" + utf8, 0}, {utf8, 0},
        {utf16(text.substr(1), false), 15}, // no mark: read as UTF-8, NUL after "<"
        {utf16(text.substr(1), true), 1},   // no mark, first byte 0
        {utf16(u"\uFEFF<a/>", false).substr(0, 7), 1},
        {"\xEF\xBB\xBF<a>\n</b>", 18},
    };
    for (const auto& [bytes, code] : cases) {
        ZuXmlDocument doc;
        EXPECT_EQ(parseInto(doc, bytes).code, code) << bytes;
        if (code != 0)
            continue;
        EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n<r\xC3\xA9 a=\"\xE2\x82\xAC\">\n"
                                "\xE4\xB8\xAD</r\xC3\xA9>\n");
    }
}

namespace {

// An element that makes its children of its own class.
class OwnElement : public ZuXmlElement {
public:
    explicit OwnElement(char* tag) : ZuXmlElement(nullptr) { storeTag(tag); }
    ZuXmlElementI* createChildElement(char* tag) const override { return new OwnElement(tag); }
};

// Records the notifications; makes its elements OwnElements, or none at all.
class RecordingDocument : public ZuXmlDocument {
public:
    void startElement(ZuXmlElementI* e) override { log += "<" + std::string(e->getTag()); }
    void attributeAdded(ZuXmlElementI*, ZuXmlAttributeI* a) override {
        log += " @" + std::string(a->getName());
    }
    void endElement(ZuXmlElementI* e) override { log += " </" + std::string(e->getTag()) + ">"; }
    void textAdded(ZuXmlTextI* t) override { log += " t:" + std::string(t->getText()); }
    void commentAdded(ZuXmlCommentI*) override { log += " comment"; }
    void charRefAdded(ZuXmlCharRefI*) override { log += " ref"; }
    void processingInstructionAdded(ZuXmlPII*) override { log += " pi"; }
    void cDataAdded(ZuXmlCDataI*) override { log += " cdata"; }
    ZuXmlElementI* createElement(char* tag) const override {
        return noElements ? nullptr : new OwnElement(tag);
    }
    std::string log;
    bool noElements = false;
};

} // namespace

TEST(XmlParser, NotifiesAndBuildsThroughTheDocument) {
    RecordingDocument doc;
    ASSERT_EQ(parseInto(doc, "<a x='1' y='2'><b/>t<!--c--><![CDATA[d]]>&unk;<?p q?></a>").code, 0);
    EXPECT_EQ(doc.log, "<a @x @y<b </b> t:t comment cdata ref </a>");
    ASSERT_EQ(parseInto(doc, "<a><b><c/></b></a>").code, 0);
    const ZuXmlElement* b = doc.getRootElement()->getElement("b");
    ASSERT_NE(b, nullptr);
    EXPECT_NE(dynamic_cast<const OwnElement*>(b->getElement("c")), nullptr);
    doc.noElements = true;
    EXPECT_EQ(parseInto(doc, "<a/>      ").code, 25);
}
