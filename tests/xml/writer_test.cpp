// The writer: exact text of every node kind, escaping and indentation.
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

template <typename T> std::string shown(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

template <typename Node> Node* made(Node* node, void (Node::*set)(const char*), const char* value) {
    (node->*set)(value);
    return node;
}

// r (one attribute) holding: e (attributes, no child), t (text only), a comment, a CDATA
// section, a processing instruction and a character reference, then p (PI only).
void buildSample(ZuXmlDocument& doc) {
    ZuXmlElement *root = new ZuXmlElement("r"), *e = new ZuXmlElement("e");
    ZuXmlElement *t = new ZuXmlElement("t"), *p = new ZuXmlElement("p");
    root->addAttribute(new ZuXmlAttribute("a", "x&y\"'<>"));
    e->addAttribute(new ZuXmlAttribute("k", "v"));
    e->addAttribute(new ZuXmlAttribute("n", nullptr));
    t->addChild(textNode("hi & <bye>"));
    p->addChild(new ZuXmlPI);
    for (ZuXmlNodeI* n : std::initializer_list<ZuXmlNodeI*>{
             e, t, made<ZuXmlCommentI>(new ZuXmlComment, &ZuXmlCommentI::setComment, "note <&>"),
             made<ZuXmlCDataI>(new ZuXmlCData, &ZuXmlCDataI::setData, "<raw & data>"),
             made<ZuXmlPII>(new ZuXmlPI, &ZuXmlPII::setTarget, "lost"),
             made<ZuXmlCharRefI>(new ZuXmlCharRef, &ZuXmlCharRefI::setRefName, "lost"), p})
        root->addChild(n);
    doc.addNode(root);
}

} // namespace

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
    EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n") << "a fresh document";
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
    const std::pair<const char*, const char*> cases[] = {
        {nullptr, ""}, {"", ""}, {"plain", "plain"}, {"a<b>&c", "a&lt;b&gt;&amp;c"},
        {"\"'", "\"'"}, {"&&", "&amp;&amp;"}, {"\xC3\xA9<", "\xC3\xA9&lt;"}};
    for (const auto& [in, out] : cases)
        EXPECT_EQ(shown(ZuXmlString(in)), out) << (in ? in : "null");
    for (int count : {-1, 0, 3, 100})
        EXPECT_EQ(shown(ZuXmlSpaces(count)), std::string(std::max(count, 0), ' ')) << count;

    std::ostringstream out;
    ZuXmlAttributeI::Write(out, "i", 42);
    ZuXmlAttributeI::Write(out << ' ', "d", 1.5);
    ZuXmlAttributeI::Write(out << ' ', "s", "<\"&\">");
    EXPECT_EQ(out.str(), "i=\"42\" d=\"1.5\" s=\"&lt;\"&amp;\"&gt;\"");
}
