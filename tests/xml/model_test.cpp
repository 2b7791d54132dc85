// The document model: node kinds, string ownership, lookups, factories and iterators.
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

std::vector<ZuXmlNodeI*> drain(ZuXmlNodeIteratorI* raw) {
    ZuXmlNodeIterator it(raw);
    std::vector<ZuXmlNodeI*> nodes;
    while (it.hasMoreNodes())
        nodes.push_back(it.getNextNode());
    EXPECT_EQ(it.getNextNode(), nullptr);
    return nodes;
}

} // namespace

// One string slot of a node: its setter, storing operation and getter.
struct Slot {
    const char* name;
    std::function<void(const char*)> set;
    std::function<void(char*)> store;
    std::function<const char*()> get;
};
#define ZU_SLOT(node, Name)                                                                 \
    Slot{#node "." #Name, [&](const char* s) { node.set##Name(s); },                        \
         [&](char* s) { node.store##Name(s); }, [&] { return node.get##Name(); }}

TEST(XmlModel, SettersCopyEmptyIsNullStoreAdopts) {
    ZuXmlAttribute attribute(nullptr, nullptr);
    ZuXmlElement element("");
    ZuXmlText text;
    ZuXmlComment comment;
    ZuXmlCData cdata;
    ZuXmlPI pi;
    ZuXmlCharRef ref;
    EXPECT_EQ(element.getTag(), nullptr);
    const Slot slots[] = {ZU_SLOT(attribute, Name), ZU_SLOT(attribute, Value),
                          ZU_SLOT(element, Tag),    ZU_SLOT(text, Text),
                          ZU_SLOT(comment, Comment), ZU_SLOT(cdata, Data),
                          ZU_SLOT(pi, Target),      ZU_SLOT(pi, Data),
                          ZU_SLOT(ref, RefName)};
    for (const Slot& slot : slots) {
        char source[] = "abc";
        slot.set(source);
        source[0] = 'X';
        EXPECT_STREQ(slot.get(), "abc") << slot.name;
        slot.set("");
        EXPECT_EQ(slot.get(), nullptr) << slot.name;
        char* owned = newString("own");
        slot.store(owned);
        EXPECT_EQ(slot.get(), owned) << slot.name;
    }
    text.appendText("+more");
    EXPECT_STREQ(text.getText(), "own+more");
    ZuXmlText fresh;
    fresh.appendText("first");
    EXPECT_STREQ(fresh.getText(), "first");
}

TEST(XmlModel, CharRefHoldsEitherNameOrCode) {
    ZuXmlCharRef ref;
    ref.setRefName("Gt");
    EXPECT_EQ(ref.getRefCode(), -1);
    EXPECT_EQ(ZuXmlParser::GetChar(&ref), '>');
    ref.setRefName("apos");
    EXPECT_EQ(ZuXmlParser::GetChar(&ref), 0xFFFF) << "only gt, lt, amp and quote are known";
    ref.setRefCode(0x10041);
    EXPECT_EQ(ref.getRefName(), nullptr);
    EXPECT_EQ(ZuXmlParser::GetChar(&ref), 'A') << "codes are cut to 16 bits";
    ref.storeRefName(newString("lt"));
    EXPECT_EQ(ref.getRefCode(), -1);
    EXPECT_EQ(ZuXmlParser::GetChar(&ref), '<');
}

TEST(XmlModel, ElementLookups) {
    ZuXmlElement root("root");
    EXPECT_EQ(root.getText(), nullptr);
    ZuXmlElement *b1 = new ZuXmlElement("b"), *c = new ZuXmlElement("c"), *b2 = new ZuXmlElement("b");
    for (ZuXmlNodeI* n : std::initializer_list<ZuXmlNodeI*>{new ZuXmlComment, textNode("first"), b1,
                                                             c, textNode("second"), b2})
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

// An element that keeps only its tag: the interface's defaults do the rest.
class InterfaceElement : public ZuXmlElementI {
public:
    const char* getTag() const override { return "i"; }
    void storeTag(char* tag) override { delete[] tag; }
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
    EXPECT_EQ(doc.getDoctypeName(), nullptr);
    EXPECT_EQ(doc.createNodesIterator(), nullptr);
    doc.storeVersion(newString("9")); // freed, not kept
    doc.storeDoctype(newString("d"), nullptr);
    EXPECT_EQ(written(doc), "<?xml version=\"1.0\"?>\n");

    // Without a factory: one node of each kind, in the order of the kind numbers.
    std::vector<ZuXmlNodeI*> made = {
        doc.createAttribute(nullptr, newString("n"), newString("v")),
        doc.createElement(newString("e")), doc.createText(), doc.createComment(),
        doc.createCData(), doc.createPI(), doc.createCharRef()};
    for (unsigned kind = 0; kind < made.size(); ++kind) {
        ASSERT_NE(made[kind], nullptr);
        EXPECT_EQ(made[kind]->getType(), kind);
    }
    EXPECT_STREQ(static_cast<ZuXmlAttributeI*>(made[0])->getValue(), "v");
    EXPECT_STREQ(static_cast<ZuXmlElementI*>(made[1])->getTag(), "e");
    MarkingFactory factory;
    doc._factory = &factory;
    made.push_back(doc.createText());
    EXPECT_NE(dynamic_cast<MarkedText*>(made.back()), nullptr) << "the factory hook supplies nodes";
    made.push_back(doc.createComment());
    EXPECT_EQ(dynamic_cast<ZuXmlComment*>(made.back())->getComment(), nullptr);
    for (ZuXmlNodeI* n : made)
        delete n;

    InterfaceElement element;
    element.addChild(new ZuXmlText); // deleted at once
    element.storeAttribute(&doc, newString("n"), newString("v"));
    EXPECT_EQ(element.getAttributeValue("n"), nullptr) << "the interface keeps nothing";
    EXPECT_EQ(element.getText(), nullptr);
    char tag[] = "c";
    EXPECT_EQ(element.createChildElement(tag), nullptr) << "null: the caller keeps the tag";
    std::ostringstream out;
    element.write(out);
    EXPECT_EQ(out.str(), "<i/>\n");
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
