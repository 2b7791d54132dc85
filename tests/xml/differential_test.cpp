// The parser against libxml2: name characters, and the trees of a corpus of well-formed
// documents compared as element names in order, attribute names and values, and the
// concatenated text (text and CDATA) of each element. Comparing concatenated text
// accounts for Zu's own text nodes: one per stretch between references, comments and
// PIs, one per character reference, and white space between elements kept as text.
#include "xml_corpus.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

#ifdef ZU_TEST_LIBXML2

#include <libxml/chvalid.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

namespace {

std::string utf8(unsigned c) {
    if (c < 0x80)
        return std::string(1, char(c));
    if (c < 0x800)
        return {char(0xC0 | c >> 6), char(0x80 | (c & 0x3F))};
    return {char(0xE0 | c >> 12), char(0x80 | ((c >> 6) & 0x3F)), char(0x80 | (c & 0x3F))};
}

bool parses(const std::string& text) {
    ZuXmlDocument doc;
    return parseInto(doc, text + "        ").code == 0;
}

// Zu's classes: the standard's, except that 0x3021-0x3029 are not ideographic.
bool nameStart(unsigned c) {
    const bool ideographic = xmlIsIdeographic(c) && !(c >= 0x3021 && c <= 0x3029);
    return xmlIsBaseChar(c) || ideographic || c == '_' || c == ':';
}

bool nameChar(unsigned c) {
    return nameStart(c) || xmlIsDigit(c) || c == '.' || c == '-' || xmlIsCombining(c) ||
           xmlIsExtender(c);
}

std::string zuTree(const ZuXmlElementI* e) {
    std::string s = "<" + std::string(e->getTag()), text, children;
    ZuXmlNodeIterator attributes(e->createAttributesIterator()), it(e->createChildrenIterator());
    while (const ZuXmlNodeI* n = attributes.getNextNode()) {
        const ZuXmlAttributeI* a = static_cast<const ZuXmlAttributeI*>(n);
        s += " " + std::string(a->getName()) + "=[" + (a->getValue() ? a->getValue() : "") + "]";
    }
    while (const ZuXmlNodeI* n = it.getNextNode()) {
        if (n->getType() == ZuXmlNodeI::TextNode)
            text += static_cast<const ZuXmlTextI*>(n)->getText();
        else if (n->getType() == ZuXmlNodeI::CDataNode && static_cast<const ZuXmlCDataI*>(n)->getData())
            text += static_cast<const ZuXmlCDataI*>(n)->getData();
        else if (n->getType() == ZuXmlNodeI::ElementNode)
            children += zuTree(static_cast<const ZuXmlElementI*>(n));
    }
    return s + ">{" + text + "}" + children + "</>";
}

std::string libxmlTree(xmlDocPtr doc, xmlNodePtr e) {
    std::string s = "<" + std::string(reinterpret_cast<const char*>(e->name)), text, children;
    for (xmlAttrPtr a = e->properties; a; a = a->next) {
        xmlChar* value = xmlNodeListGetString(doc, a->children, 1);
        s += " " + std::string(reinterpret_cast<const char*>(a->name)) + "=[" +
             (value ? reinterpret_cast<const char*>(value) : "") + "]";
        xmlFree(value);
    }
    for (xmlNodePtr n = e->children; n; n = n->next) {
        if ((n->type == XML_TEXT_NODE || n->type == XML_CDATA_SECTION_NODE) && n->content)
            text += reinterpret_cast<const char*>(n->content);
        else if (n->type == XML_ELEMENT_NODE)
            children += libxmlTree(doc, n);
    }
    return s + ">{" + text + "}" + children + "</>";
}

void compareWithLibxml2(const std::string& text) {
    xmlDocPtr reference = xmlReadMemory(text.data(), int(text.size()), nullptr, nullptr,
                                        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    ASSERT_NE(reference, nullptr) << "the corpus must be well-formed:\n" << text;
    const std::string expected = libxmlTree(reference, xmlDocGetRootElement(reference));
    xmlFreeDoc(reference);
    ZuXmlDocument doc;
    const XmlOutcome o = parseInto(doc, text);
    ASSERT_EQ(o.code, 0) << o.name << " at line " << o.line << " in\n" << text;
    EXPECT_EQ(zuTree(doc.getRootElement()), expected) << text;
}

} // namespace

TEST(XmlDifferential, NameCharactersMatchTheStandardTables) {
    // Every code point where a class changes, its neighbours, and a sample in between.
    auto classes = [](unsigned c) { return nameStart(c) * 2 + nameChar(c); };
    unsigned checked = 0;
    for (unsigned c = 1; c < 0xFFFE; ++c) {
        const bool edge = classes(c) != classes(c - 1) || classes(c) != classes(c + 1);
        if (!edge && c % 251 != 0)
            continue;
        ++checked;
        EXPECT_EQ(parses("<" + utf8(c) + "/>"), nameStart(c)) << std::hex << c;
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        EXPECT_EQ(parses("<a" + utf8(c) + "/>"), nameChar(c) || blank) << std::hex << c;
    }
    EXPECT_GT(checked, 1000u);
}

TEST(XmlDifferential, CorpusDocumentsGiveTheSameTree) {
    for (const std::string& text : corpus(20240601, 400)) {
        compareWithLibxml2(text);
        if (HasFatalFailure())
            return;
    }
}

#else

TEST(XmlDifferential, NeedsLibxml2) { GTEST_SKIP() << "libxml2 (libxml2-dev) was not found at build time"; }

#endif
