// The parser: error codes with their names, severities and lines, what the tree holds
// after success and failure, references, encodings, termination and the depth limit.
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <string>

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
    const struct {
        std::string text;
        int code;
        int line;
        const char* name;
        unsigned kept = 0;
    } cases[] = {
        {"<a></a>", 1, 1, "INVALID_DOCUMENT"},
        {"  <a></a>", 1, 1, "INVALID_DOCUMENT"},
        {"<?xml version='1.0'?>\n<!-- only -->\n", 2, 3, "EMPTY_DOCUMENT", 1},
        {"<!--c--><?p d?>text", 2, 1, "EMPTY_DOCUMENT", 2},
        {"<a>\n<!-- open", 3, 2, "EARLY_END_OF_DOCUMENT"},
        {"<a b='xy", 3, 1, "EARLY_END_OF_DOCUMENT"},
        {"<a><![CDATA[x</a>", 3, 1, "EARLY_END_OF_DOCUMENT"},
        {"<!DOCTYPE a [ <!ELEMENT a ANY>", 3, 1, "EARLY_END_OF_DOCUMENT"},
        {"<?pi never closed", 3, 1, "EARLY_END_OF_DOCUMENT"},
        {"<a><?pi never closed</a>", 3, 1, "EARLY_END_OF_DOCUMENT"},
        {"<a/>\n xyz", 4, 2, "END_OF_DOCUMENT_EXPECTED"},
        {"<a/><b/>", 4, 1, "END_OF_DOCUMENT_EXPECTED"},
        {"<a/><![CDATA[x]]>", 4, 1, "END_OF_DOCUMENT_EXPECTED"},
        {"<a>text\n", 5, 2, "END_OF_DOCUMENT_UNEXPECTED"},
        {"<!--c--><a><b/>", 5, 1, "END_OF_DOCUMENT_UNEXPECTED"},
        {"<a>]]]]]]", 5, 1, "END_OF_DOCUMENT_UNEXPECTED"},
        {"<?xml?><a/>", 6, 1, "INVALID_VERSION_INFO"},
        {"<?xml version=1.0?><a/>", 6, 1, "INVALID_VERSION_INFO"},
        {"<?xml version='1.0\"?><a/>", 6, 1, "INVALID_VERSION_INFO"},
        {"<?xml VERSION='1.0'?><a/>", 6, 1, "INVALID_VERSION_INFO"},
        {"<?xml-stylesheet href='s'?><a/>", 6, 1, "INVALID_VERSION_INFO"},
        {"<?xml version='1.0' standalone='maybe'?><a/>", 7, 1, "INVALID_SD_DECLARATION"},
        {"<!DOCTYPE a PUBLIC \"x{y\" \"s\"><a/>", 8, 1, ""},
        {"<!DOCTYPE a SYSTEM x><a/>", 8, 1, ""},
        {"<?xml version='1.0' foo?><a/>", 9, 1, "INVALID_DECLARATION_END"},
        {"<a><!-- a -- b --></a>", 10, 1, "INVALID_COMMENT_CHARS"},
        {"<?xml version='1.0'?>\n<?XmLfoo x?><a/>", 11, 2, "RESERVED_PI_TARGET_NAME"},
        {"<!--c--><?xml-x d?><a/>", 11, 1, "RESERVED_PI_TARGET_NAME"},
        {"<!--c--><?xml-stylesheet d?><?xml version='1.0'?><a/>", 11, 1,
         "RESERVED_PI_TARGET_NAME"},
        {"<a><![CDATA[\x01]]></a>", 12, 1, "INVALID_CDATA"},
        {"<?xml version='1.0' encoding='1x'?><a/>", 13, 1, "INVALID_ENCODING_NAME"},
        {"<?xml version='1.0' encoding=''?><a/>", 13, 1, "INVALID_ENCODING_NAME"},
        {"<?xml version='1.0' encoding=utf8?><a/>", 14, 1, "INVALID_ENCODING_DECLARATION"},
        {"<a>\n\n<1/></a>", 15, 3, "INVALID_TAG_NAME"},
        {"<a></ a></a>", 15, 1, "INVALID_TAG_NAME"},
        {"<a b='<'/>    ", 16, 1, "UNEXPECTED_TAG_SYMBOL"},
        {"<a></a     ", 17, 1, "END_TAG_EXPECTED"},
        {"<a>\n</b>", 18, 2, "END_TAG_NOT_MATCHED"},
        {"<a b='1'c='2'/>", 19, 1, "INVALID_TAG_END"},
        {"<a/ >    ", 19, 1, "INVALID_TAG_END"},
        {"<a b/>    ", 20, 1, "EQUAL_SIGN_EXPECTED"},
        {"<a b=1/>    ", 21, 1, "INVALID_ATTRIBUTE_VALUE"},
        {"<a>&#X41;</a>", 22, 1, "INVALID_REFERENCE_DECLARATION"},
        {"<a>%p;</a>   ", 22, 1, "INVALID_REFERENCE_DECLARATION"},
        {"<a b='&#X41;'/>", 23, 1, "INVALID_CHARREF_DECLARATION"},
        {"<a b='&lt'/>    ", 23, 1, "INVALID_CHARREF_DECLARATION"},
        {"<!DOCTYPE 1><a/>", 24, 1, "INVALID_DOCTYPE_NAME"},
        {nested(ZuXmlParser::MaxDepth + 1), ZuXmlError::NestingTooDeep, 1, ""},
    };
    for (const auto& c : cases) {
        ZuXmlDocument doc;
        const XmlOutcome o = parseInto(doc, c.text);
        const std::string shown = c.text.substr(0, 60);
        EXPECT_EQ(o.code, c.code) << shown;
        EXPECT_EQ(o.line, c.line) << shown;
        EXPECT_EQ(o.name, c.name) << shown;
        EXPECT_EQ(o.severity, c.code == 4 ? 1 : 2) << shown;
        EXPECT_EQ(doc.getRootElement(), nullptr) << shown;
        EXPECT_EQ(nodeCount(doc), c.kept) << shown;
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
