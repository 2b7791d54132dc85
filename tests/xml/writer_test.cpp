// The writer: exact text of every node kind, escaping and indentation.
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

char* newString(const char* s) {
    char* copy = new char[std::strlen(s) + 1];
    std::strcpy(copy, s);
    return copy;
}

template <typename T> std::string shown(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

// r (one attribute) holding: e (attribute, no child), t (text only), a comment, a
// CDATA section, a processing instruction and a character reference, then p (PI only).
void buildSample(ZuXmlDocument& doc) {
    ZuXmlElement* root = new ZuXmlElement("r");
    root->addAttribute(new ZuXmlAttribute("a", "x&y\"'<>"));
    ZuXmlElement* e = new ZuXmlElement("e");
    e->addAttribute(new ZuXmlAttribute("k", "v"));
    e->addAttribute(new ZuXmlAttribute("n", nullptr));
    ZuXmlElement* t = new ZuXmlElement("t");
    ZuXmlText* text = new ZuXmlText;
    text->setText("hi & <bye>");
    t->addChild(text);
    ZuXmlComment* comment = new ZuXmlComment;
    comment->setComment("note <&>");
    ZuXmlCData* cdata = new ZuXmlCData;
    cdata->setData("<raw & data>");
    ZuXmlPI* pi = new ZuXmlPI;
    pi->setTarget("pi");
    pi->setData("lost");
    ZuXmlCharRef* ref = new ZuXmlCharRef;
    ref->setRefName("lost");
    ZuXmlElement* p = new ZuXmlElement("p");
    p->addChild(new ZuXmlPI);
    for (ZuXmlNodeI* n : {static_cast<ZuXmlNodeI*>(e), static_cast<ZuXmlNodeI*>(t),
                          static_cast<ZuXmlNodeI*>(comment), static_cast<ZuXmlNodeI*>(cdata),
                          static_cast<ZuXmlNodeI*>(pi), static_cast<ZuXmlNodeI*>(ref),
                          static_cast<ZuXmlNodeI*>(p)})
        root->addChild(n);
    doc.addNode(root);
}

} // namespace

TEST(XmlWriter, FreshDocumentIsTheDeclarationOnly) {
    ZuXmlDocument doc;
    EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n");
}

TEST(XmlWriter, WritesTheExactTreeText) {
    ZuXmlDocument doc;
    buildSample(doc);
    EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n"
                            "<r a=\"x&amp;y\"'&lt;&gt;\">\n"
                            "  <e k=\"v\" n=\"\"/>\n"
                            "  <t>\n"
                            "hi &amp; &lt;bye&gt;  </t>\n"
                            "<!--note <&>-->\n"
                            "<![CDATA[<raw & data>]]>\n"
                            "  <p>\n"
                            "  </p>\n"
                            "</r>\n");
    // Writing again starts from indentation 0, and the step is process-wide.
    ZuXmlElementI::_indentation = 4;
    const std::string wide = written(doc);
    ZuXmlElementI::_indentation = 2;
    EXPECT_NE(wide.find("\n    <e k="), std::string::npos) << wide;
    EXPECT_EQ(ZuXmlElementI::_indent, 0u);
}

TEST(XmlWriter, DeclarationAndDoctype) {
    ZuXmlDocument doc;
    doc.storeVersion(newString("1.1"));
    doc.storeDoctype(newString("greeting"), newString(" SYSTEM \"hello.dtd\""));
    doc.addNode(new ZuXmlElement("greeting"));
    EXPECT_EQ(written(doc), "<?xml version=\"1.1\"?>\n"
                            "<!DOCTYPE greeting  SYSTEM \"hello.dtd\">\n"
                            "<greeting/>\n");
    doc.storeDoctype(newString("g"), nullptr);
    EXPECT_EQ(written(doc), "<?xml version=\"1.1\"?>\n<!DOCTYPE g>\n<greeting/>\n");
}

TEST(XmlWriter, EscapingAndSpaces) {
    const struct {
        const char* in;
        const char* out;
    } cases[] = {{nullptr, ""}, {"", ""}, {"plain", "plain"}, {"a<b>&c", "a&lt;b&gt;&amp;c"},
                 {"\"'", "\"'"}, {"&&", "&amp;&amp;"}, {"\xC3\xA9<", "\xC3\xA9&lt;"}};
    for (const auto& c : cases)
        EXPECT_EQ(shown(ZuXmlString(c.in)), c.out) << (c.in ? c.in : "null");
    EXPECT_EQ(shown(ZuXmlSpaces(-1)), "");
    EXPECT_EQ(shown(ZuXmlSpaces(0)), "");
    EXPECT_EQ(shown(ZuXmlSpaces(3)), "   ");
    EXPECT_EQ(shown(ZuXmlSpaces(100)), std::string(100, ' '));

    std::ostringstream out;
    ZuXmlAttributeI::Write(out, "i", 42);
    out << ' ';
    ZuXmlAttributeI::Write(out, "d", 1.5);
    out << ' ';
    ZuXmlAttributeI::Write(out, "s", "<\"&\">");
    EXPECT_EQ(out.str(), "i=\"42\" d=\"1.5\" s=\"&lt;\"&amp;\"&gt;\"");
}

TEST(XmlWriter, ParsedDocumentWrittenBack) {
    ZuXmlDocument doc;
    ASSERT_EQ(parseInto(doc, "<?xml version='1.0'?><a x='1'><b>t</b><?p d?><c/></a>").code, 0);
    EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n"
                            "<a x=\"1\">\n"
                            "  <b>\n"
                            "t  </b>\n"
                            "  <c/>\n"
                            "</a>\n");
}
