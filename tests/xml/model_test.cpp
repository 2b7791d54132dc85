// The document model: node kinds, string ownership, lookups, factories and iterators.
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

char* newString(const char* s) {
    char* copy = new char[std::strlen(s) + 1];
    std::strcpy(copy, s);
    return copy;
}

std::vector<ZuXmlNodeI*> drain(ZuXmlNodeIteratorI* raw) {
    ZuXmlNodeIterator it(raw);
    std::vector<ZuXmlNodeI*> nodes;
    while (it.hasMoreNodes())
        nodes.push_back(it.getNextNode());
    EXPECT_EQ(it.getNextNode(), nullptr);
    return nodes;
}

} // namespace

TEST(XmlModel, NodeKindsAreZeroToSix) {
    ZuXmlAttribute attribute("n", "v");
    ZuXmlElement element("e");
    ZuXmlText text;
    ZuXmlComment comment;
    ZuXmlCData cdata;
    ZuXmlPI pi;
    ZuXmlCharRef ref;
    const ZuXmlNodeI* nodes[] = {&attribute, &element, &text, &comment, &cdata, &pi, &ref};
    for (unsigned kind = 0; kind < 7; ++kind)
        EXPECT_EQ(nodes[kind]->getType(), kind);
}

TEST(XmlModel, SettersCopyAndStoreAdopts) {
    char source[] = "abc";
    ZuXmlText text;
    text.setText(source);
    source[0] = 'X';
    EXPECT_STREQ(text.getText(), "abc");
    EXPECT_NE(text.getText(), source);
    text.setText("");
    EXPECT_EQ(text.getText(), nullptr) << "a copy of an empty string is null";
    char* owned = newString("mine");
    text.storeText(owned);
    EXPECT_EQ(text.getText(), owned);
    text.appendText("+more");
    EXPECT_STREQ(text.getText(), "mine+more");

    ZuXmlAttribute attribute("", nullptr);
    EXPECT_EQ(attribute.getName(), nullptr);
    attribute.setName("n");
    attribute.storeValue(newString("v"));
    EXPECT_STREQ(attribute.getName(), "n");
    EXPECT_STREQ(attribute.getValue(), "v");

    ZuXmlPI pi;
    pi.setTarget("t");
    pi.setData("");
    EXPECT_STREQ(pi.getTarget(), "t");
    EXPECT_EQ(pi.getData(), nullptr);
    ZuXmlComment comment;
    comment.setComment("c");
    ZuXmlCData cdata;
    cdata.storeData(newString("<d>"));
    EXPECT_STREQ(comment.getComment(), "c");
    EXPECT_STREQ(cdata.getData(), "<d>");
    ZuXmlElement element("");
    EXPECT_EQ(element.getTag(), nullptr);
    element.setTag("tag");
    EXPECT_STREQ(element.getTag(), "tag");
}

TEST(XmlModel, CharRefHoldsEitherNameOrCode) {
    ZuXmlCharRef ref;
    ref.setRefName("amp");
    EXPECT_EQ(ref.getRefCode(), -1);
    EXPECT_STREQ(ref.getRefName(), "amp");
    ref.setRefCode(65);
    EXPECT_EQ(ref.getRefName(), nullptr);
    EXPECT_EQ(ref.getRefCode(), 65);
    ref.storeRefName(newString("lt"));
    EXPECT_EQ(ref.getRefCode(), -1);

    // Names and codes as the parser maps them.
    const struct {
        const char* name;
        int code;
        int expected;
    } cases[] = {{"gt", 0, '>'},      {"LT", 0, '<'},         {"Amp", 0, '&'},
                 {"QUOTE", 0, '\''},  {"quot", 0, 0xFFFF},    {"apos", 0, 0xFFFF},
                 {nullptr, 65, 'A'},  {nullptr, 0x10041, 'A'}, {nullptr, -1, 0xFFFF}};
    for (const auto& c : cases) {
        ZuXmlCharRef r;
        if (c.name)
            r.setRefName(c.name);
        else
            r.setRefCode(c.code);
        EXPECT_EQ(ZuXmlParser::GetChar(&r), c.expected) << (c.name ? c.name : "code");
    }
}

TEST(XmlModel, ElementLookups) {
    ZuXmlElement root("root");
    ZuXmlComment* comment = new ZuXmlComment;
    ZuXmlText* first = new ZuXmlText;
    ZuXmlText* second = new ZuXmlText;
    first->setText("first");
    second->setText("second");
    ZuXmlElement* b1 = new ZuXmlElement("b");
    ZuXmlElement* c = new ZuXmlElement("c");
    ZuXmlElement* b2 = new ZuXmlElement("b");
    EXPECT_EQ(root.getText(), nullptr);
    for (ZuXmlNodeI* n : std::vector<ZuXmlNodeI*>{comment, first, b1, c, second, b2})
        root.addChild(n);
    EXPECT_STREQ(root.getText(), "first") << "first text child only";
    EXPECT_EQ(root.getChildrenCardinal(), 6u);

    EXPECT_EQ(root.getElement("b"), b1);
    EXPECT_EQ(root.getElement("b", b1), b2);
    EXPECT_EQ(root.getElement("b", b2), nullptr) << "after the last match";
    EXPECT_EQ(root.getElement("b", c), b2);
    EXPECT_EQ(root.getElement("B"), nullptr) << "case-sensitive";
    ZuXmlElement stranger("b");
    EXPECT_EQ(root.getElement("b", &stranger), nullptr) << "after is not a child";

    root.storeAttribute(nullptr, newString("k"), newString("v1"));
    root.addAttribute(new ZuXmlAttribute("k", "v2"));
    root.addAttribute(new ZuXmlAttribute("K", "v3"));
    EXPECT_EQ(root.getAttributesCardinal(), 3u);
    EXPECT_STREQ(root.getAttributeValue("k"), "v1");
    EXPECT_STREQ(root.getAttributeValue("K"), "v3");
    EXPECT_EQ(root.getAttributeValue("x"), nullptr);
    EXPECT_EQ(root.getAttribute("x"), nullptr);
    EXPECT_FALSE(root.doesPreserveWhiteSpaces());
    root.preserveWhiteSpaces(true);
    EXPECT_TRUE(root.doesPreserveWhiteSpaces());
}

TEST(XmlModel, IteratorsWalkListsAndArrays) {
    ZuXmlElement root("r");
    ZuXmlText* t = new ZuXmlText;
    ZuXmlElement* e = new ZuXmlElement("e");
    root.addChild(t);
    root.addChild(e);
    root.addAttribute(new ZuXmlAttribute("a", "1"));
    EXPECT_EQ(drain(root.createChildrenIterator()), (std::vector<ZuXmlNodeI*>{t, e}));
    EXPECT_EQ(drain(root.createAttributesIterator()).size(), 1u);
    EXPECT_TRUE(drain(nullptr).empty()) << "a holder of nothing";

    ZuArray array;
    array.add(t);
    array.add(e);
    EXPECT_EQ(drain(new ZuXmlNodeArrayIterator(array)), (std::vector<ZuXmlNodeI*>{t, e}));
    const ZuXmlNodeI* plain[] = {e, t, e};
    EXPECT_EQ(drain(new ZuXmlNodePtrArrayIterator(3, plain)),
              (std::vector<ZuXmlNodeI*>{e, t, e}));
}

TEST(XmlModel, DocumentOwnsTopLevelNodes) {
    ZuXmlDocument doc;
    EXPECT_STREQ(doc.getVersion(), "1.0");
    EXPECT_EQ(doc.getRootElement(), nullptr);
    doc.addNode(new ZuXmlComment);
    ZuXmlElement* root = new ZuXmlElement("r");
    doc.addNode(root);
    doc.addNode(new ZuXmlElement("second"));
    EXPECT_EQ(doc.getRootElement(), root);
    EXPECT_EQ(drain(doc.createNodesIterator()).size(), 3u);

    char* v1 = newString("1.1");
    doc.storeVersion(v1);
    doc.storeVersion(newString("1.2"));
    EXPECT_STREQ(doc.getVersion(), "1.2");
    EXPECT_STREQ(v1, "1.1") << "a version stored earlier stays valid";
    doc.storeDoctype(newString("n"), newString(" rest"));
    doc.empty();
    EXPECT_EQ(nodeCount(doc), 0u);
    EXPECT_STREQ(doc.getDoctypeName(), "n") << "empty() keeps version and DOCTYPE";
    EXPECT_STREQ(doc.getVersion(), "1.2");
}

namespace {

// A document built on the interface alone, with a factory that marks its text nodes.
class MarkedText : public ZuXmlText {};

class MarkingFactory : public ZuXmlNodeFactory {
public:
    ZuXmlTextI* createText() override { return new MarkedText; }
};

class InterfaceDocument : public ZuXmlDocumentI {
public:
    void addNode(ZuXmlNodeI* node) override { delete node; }
    ZuXmlNodeFactory* getNodeFactory() const override { return _factory; }
    ZuXmlNodeFactory* _factory = nullptr;
};

} // namespace

TEST(XmlModel, InterfaceDefaultsAndFactories) {
    InterfaceDocument doc;
    EXPECT_STREQ(doc.getVersion(), "1.0");
    EXPECT_EQ(doc.getDoctypeName(), nullptr);
    EXPECT_EQ(doc.createNodesIterator(), nullptr);
    doc.storeVersion(newString("9"));        // freed, not kept
    doc.storeDoctype(newString("d"), nullptr);
    EXPECT_STREQ(doc.getVersion(), "1.0");
    EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n");

    std::vector<ZuXmlNodeI*> made = {doc.createElement(newString("e")), doc.createText(),
                                     doc.createComment(), doc.createCharRef(),
                                     doc.createPI(), doc.createCData()};
    const unsigned kinds[] = {1, 2, 3, 6, 5, 4};
    for (size_t i = 0; i < made.size(); ++i) {
        ASSERT_NE(made[i], nullptr);
        EXPECT_EQ(made[i]->getType(), kinds[i]);
    }
    EXPECT_STREQ(static_cast<ZuXmlElementI*>(made[0])->getTag(), "e");
    ZuXmlAttributeI* attribute = doc.createAttribute(nullptr, newString("n"), newString("v"));
    EXPECT_STREQ(attribute->getValue(), "v");
    made.push_back(attribute);

    MarkingFactory factory;
    doc._factory = &factory;
    ZuXmlTextI* marked = doc.createText();
    EXPECT_NE(dynamic_cast<MarkedText*>(marked), nullptr) << "the factory hook supplies nodes";
    made.push_back(marked);
    made.push_back(doc.createComment());
    EXPECT_EQ(dynamic_cast<ZuXmlComment*>(made.back())->getComment(), nullptr);
    for (ZuXmlNodeI* n : made)
        delete n;
}

TEST(XmlModel, DeepTreesAreDeletedWithoutDeepRecursion) {
    // Built by hand, far deeper than the parser accepts.
    ZuXmlDocument doc;
    ZuXmlElement* parent = new ZuXmlElement("d");
    doc.addNode(parent);
    for (int i = 0; i < 200000; ++i) {
        ZuXmlElement* child = new ZuXmlElement("d");
        parent->addChild(child);
        parent = child;
    }
    doc.empty();
    EXPECT_EQ(nodeCount(doc), 0u);
}
