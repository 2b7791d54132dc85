#ifndef ZU_XML_H
#define ZU_XML_H

// XML: a non-validating recursive-descent parser over 16-bit code units, the document
// model it builds (interface classes ending in I, one concrete class each) and a writer.
// All strings held by nodes are NUL-terminated UTF-8 arrays from new[]; a node owns its
// strings. Setters copy their argument (an empty string is stored as null); the store
// operations take ownership of a new[] array. A document owns its top-level nodes, an
// element its attributes and children. Parse errors go to the process-wide ZuXmlError.
// Nothing here is thread-safe: the error record, the writer's indentation and the
// free lists of node memory are process-wide.

#include <zu/array.h>
#include <zu/export.h>
#include <zu/list.h>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <new>

class ZuXmlDocumentI;
class ZuXmlNodeIteratorI;

// The process-wide record of the last parse error: a severity, a code and a line.
// Codes 1 to 25 are the parser's; 26 is a nesting deeper than ZuXmlParser::MaxDepth.
// Parsing never clears it: call Reset() before ZuXmlDocumentI::read.
class ZU_API ZuXmlError {
public:
    enum Severity : int { NoError = 0, Warning = 1, Fatal = 2 };

    enum Code {
        InvalidDocument = 1,
        EmptyDocument = 2,
        EarlyEndOfDocument = 3,
        EndOfDocumentExpected = 4,
        EndOfDocumentUnexpected = 5,
        InvalidVersionInfo = 6,
        InvalidSDDeclaration = 7,
        InvalidPubidLiteral = 8,
        InvalidDeclarationEnd = 9,
        InvalidCommentChars = 10,
        ReservedPITargetName = 11,
        InvalidCData = 12,
        InvalidEncodingName = 13,
        InvalidEncodingDeclaration = 14,
        InvalidTagName = 15,
        UnexpectedTagSymbol = 16,
        EndTagExpected = 17,
        EndTagNotMatched = 18,
        InvalidTagEnd = 19,
        EqualSignExpected = 20,
        InvalidAttributeValue = 21,
        InvalidReferenceDeclaration = 22,
        InvalidCharRefDeclaration = 23,
        InvalidDoctypeName = 24,
        NoElementCreated = 25,
        NestingTooDeep = 26
    };

    // Stores all three values.
    static void Set(Severity severity, int code, int line);
    // The same with the severity as a number (0, 1 or 2).
    static void Set(int severity, int code, int line);
    // True when the severity is not 0.
    static bool IsSet();
    // Sets all three values to 0.
    static void Reset();
    // Fills in the three values; returns the code's name ("INVALID_DOCUMENT", ...), or
    // null for 0, 8, 25 and any unlisted code (26 included).
    static const char* Get(Severity& severity, int& code, int& line);

private:
    static Severity _severity;
    static int _code;
    static int _line;
};

// Root of all nodes.
class ZU_API ZuXmlNodeI {
public:
    // Values of getType().
    enum Type {
        AttributeNode = 0,
        ElementNode = 1,
        TextNode = 2,
        CommentNode = 3,
        CDataNode = 4,
        PINode = 5,
        CharRefNode = 6
    };

    virtual ~ZuXmlNodeI();
    // Nodes (and subclasses) of up to 128 bytes come from per-size free lists carved
    // from large chunks; larger ones from malloc. Null when memory runs out.
    static void* operator new(size_t size) noexcept;
    static void* operator new(size_t size, const std::nothrow_t&) noexcept;
    static void* operator new(size_t, void* place) noexcept { return place; }
    static void operator delete(void* p, size_t size);

    // The node kind, 0 to 6.
    virtual unsigned int getType() const = 0;
    // Writes the node as XML text.
    virtual void write(std::ostream& os) const = 0;
};

// A name and a value.
class ZU_API ZuXmlAttributeI : public ZuXmlNodeI {
public:
    // 0.
    unsigned int getType() const override;
    // name="value", the value escaped (quotation marks are not).
    void write(std::ostream& os) const override;
    virtual const char* getName() const = 0;
    // Stores a copy (null for a null or empty name).
    virtual void setName(const char* name);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeName(char* name) = 0;
    virtual const char* getValue() const = 0;
    // Stores a copy (null for a null or empty value).
    virtual void setValue(const char* value);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeValue(char* value) = 0;

    // Writes one attribute directly: name="value" with the value escaped.
    static void Write(std::ostream& os, const char* name, const char* value);
    // The same with a number, as the stream formats it.
    static void Write(std::ostream& os, const char* name, int value);
    static void Write(std::ostream& os, const char* name, double value);
};

// An element: a tag, attributes and children. The interface keeps nothing: its addChild
// and addAttribute delete what they are given.
class ZU_API ZuXmlElementI : public ZuXmlNodeI {
public:
    // 1.
    unsigned int getType() const override;
    // Indentation, "<tag", the attributes, then ">" and the children and the closing tag
    // on their own lines, or "/>" when there is no child; a line end.
    void write(std::ostream& os) const override;
    virtual const char* getTag() const = 0;
    // Stores a copy (null for a null or empty tag).
    virtual void setTag(const char* tag);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeTag(char* tag) = 0;
    // Adopts child. The interface deletes it.
    virtual void addChild(ZuXmlNodeI* child);
    // Makes an attribute with doc's createAttribute (taking name and value), tells doc
    // (attributeAdded), then addAttribute. A null doc makes a ZuXmlAttribute.
    virtual void storeAttribute(ZuXmlDocumentI* doc, char* name, char* value);
    // Lets a subclass choose the class of its child elements: null here. A non-null
    // result owns tag; with null the caller keeps it.
    virtual ZuXmlElementI* createChildElement(char* tag) const;
    // Lets a subclass choose the class of its attributes: null here (ownership as above).
    virtual ZuXmlAttributeI* createAttribute(char* name, char* value) const;
    // Adopts attribute. The interface deletes it.
    virtual void addAttribute(ZuXmlAttributeI* attribute);
    // The first attribute named name (case-sensitive), or null.
    virtual ZuXmlAttributeI* getAttribute(const char* name) const;
    // False here.
    virtual bool doesPreserveWhiteSpaces() const;
    // Nothing here.
    virtual void preserveWhiteSpaces(bool preserve);
    // For each attribute, a blank and the attribute.
    virtual void writeAttributes(std::ostream& os) const;
    // ">" and a line end before the first child, then each child; true when there was one.
    virtual bool writeChildren(std::ostream& os) const;
    // Null here.
    virtual const char* getText() const;
    // New iterators owned by the caller (hold them in a ZuXmlNodeIterator); null here.
    virtual ZuXmlNodeIteratorI* createChildrenIterator() const;
    virtual ZuXmlNodeIteratorI* createAttributesIterator() const;

    // The value of getAttribute(name), or null when there is no such attribute.
    const char* getAttributeValue(const char* name) const;

    // Writer state, process-wide: the indentation step (2) and the current depth in
    // blanks (0). Two documents must not be written at the same time.
    static unsigned int _indentation;
    static unsigned int _indent;
};

// Text.
class ZU_API ZuXmlTextI : public ZuXmlNodeI {
public:
    // 2.
    unsigned int getType() const override;
    // The text escaped, with no indentation and no line end.
    void write(std::ostream& os) const override;
    virtual const char* getText() const = 0;
    // Stores a copy (null for a null or empty text).
    virtual void setText(const char* text);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeText(char* text) = 0;
    // Replaces the text by the old text followed by text (sets it when there was none).
    virtual void appendText(const char* text);
};

// A comment.
class ZU_API ZuXmlCommentI : public ZuXmlNodeI {
public:
    // 3.
    unsigned int getType() const override;
    // "<!--", the comment, "-->" and a line end, not indented.
    void write(std::ostream& os) const override;
    virtual const char* getComment() const = 0;
    // Stores a copy (null for a null or empty comment).
    virtual void setComment(const char* comment);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeComment(char* comment) = 0;
};

// A CDATA section.
class ZU_API ZuXmlCDataI : public ZuXmlNodeI {
public:
    // 4.
    unsigned int getType() const override;
    // "<![CDATA[", the data unescaped, "]]>" and a line end, not indented.
    void write(std::ostream& os) const override;
    virtual const char* getData() const = 0;
    // Stores a copy (null for a null or empty string).
    virtual void setData(const char* data);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeData(char* data) = 0;
};

// A processing instruction.
class ZU_API ZuXmlPII : public ZuXmlNodeI {
public:
    // 5.
    unsigned int getType() const override;
    // Writes nothing, deliberately: processing instructions are lost on output.
    void write(std::ostream& os) const override;
    virtual const char* getTarget() const = 0;
    // Stores a copy (null for a null or empty string).
    virtual void setTarget(const char* target);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeTarget(char* target) = 0;
    virtual const char* getData() const = 0;
    // Stores a copy (null for a null or empty string).
    virtual void setData(const char* data);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeData(char* data) = 0;
};

// A character or entity reference: either a name or a code.
class ZU_API ZuXmlCharRefI : public ZuXmlNodeI {
public:
    // 6.
    unsigned int getType() const override;
    // Writes nothing, deliberately: references are lost on output.
    void write(std::ostream& os) const override;
    // The character code; -1 when the reference is by name.
    virtual int getRefCode() const = 0;
    virtual void setRefCode(int code) = 0;
    virtual const char* getRefName() const = 0;
    // setRefCode(-1), then stores a copy of name.
    virtual void setRefName(const char* name);
    // Takes ownership of a new[] string and frees the one it replaces.
    virtual void storeRefName(char* name) = 0;
};

class ZU_API ZuXmlAttribute : public ZuXmlAttributeI {
public:
    // Copies both (null or empty stays null).
    ZuXmlAttribute(const char* name, const char* value);
    ~ZuXmlAttribute() override;
    ZuXmlAttribute(const ZuXmlAttribute&) = delete;
    ZuXmlAttribute& operator=(const ZuXmlAttribute&) = delete;

    const char* getName() const override;
    void storeName(char* name) override;
    const char* getValue() const override;
    void storeValue(char* value) override;

    char* _name;
    char* _value;
};

class ZU_API ZuXmlElement : public ZuXmlElementI {
public:
    // Copies tag (null or empty stays null).
    explicit ZuXmlElement(const char* tag);
    // Deletes the attributes, then the children, then the tag.
    ~ZuXmlElement() override;
    ZuXmlElement(const ZuXmlElement&) = delete;
    ZuXmlElement& operator=(const ZuXmlElement&) = delete;

    const char* getTag() const override;
    void storeTag(char* tag) override;
    // Appends to the children (adopted).
    void addChild(ZuXmlNodeI* child) override;
    // Appends to the attributes (adopted).
    void addAttribute(ZuXmlAttributeI* attribute) override;
    // The first attribute named name (case-sensitive), or null.
    ZuXmlAttributeI* getAttribute(const char* name) const override;
    bool doesPreserveWhiteSpaces() const override;
    void preserveWhiteSpaces(bool preserve) override;
    // The text of the first text child, or null; later text children are not joined.
    const char* getText() const override;
    // A new ZuXmlNodeListIterator over the children, owned by the caller.
    ZuXmlNodeIteratorI* createChildrenIterator() const override;
    // A new ZuXmlNodeListIterator over the attributes, owned by the caller.
    ZuXmlNodeIteratorI* createAttributesIterator() const override;

    unsigned int getChildrenCardinal() const { return _children.getLength(); }
    unsigned int getAttributesCardinal() const { return _attributes.getLength(); }
    // The first child element named tag (case-sensitive); with after, the search starts
    // at the child following after, and finds nothing when after is not a child. Only
    // children of class ZuXmlElement are returned.
    ZuXmlElement* getElement(const char* tag, ZuXmlNodeI* after = nullptr) const;
    const Zu_List& getChildren() const { return _children; }
    const Zu_List& getAttributes() const { return _attributes; }

    char* _tag;
    Zu_List _children;   // ZuXmlNodeI*, owned
    Zu_List _attributes; // ZuXmlAttributeI*, owned
    bool _preserveWhiteSpaces;
};

class ZU_API ZuXmlText : public ZuXmlTextI {
public:
    ZuXmlText();
    ~ZuXmlText() override;
    ZuXmlText(const ZuXmlText&) = delete;
    ZuXmlText& operator=(const ZuXmlText&) = delete;

    const char* getText() const override;
    void storeText(char* text) override;
    // Replaces the text by a new array holding the old text and text.
    void appendText(const char* text) override;

    char* _text;
};

class ZU_API ZuXmlComment : public ZuXmlCommentI {
public:
    ZuXmlComment();
    ~ZuXmlComment() override;
    ZuXmlComment(const ZuXmlComment&) = delete;
    ZuXmlComment& operator=(const ZuXmlComment&) = delete;

    const char* getComment() const override;
    void storeComment(char* comment) override;

    char* _comment;
};

class ZU_API ZuXmlCData : public ZuXmlCDataI {
public:
    ZuXmlCData();
    ~ZuXmlCData() override;
    ZuXmlCData(const ZuXmlCData&) = delete;
    ZuXmlCData& operator=(const ZuXmlCData&) = delete;

    const char* getData() const override;
    void storeData(char* data) override;

    char* _data;
};

class ZU_API ZuXmlPI : public ZuXmlPII {
public:
    ZuXmlPI();
    ~ZuXmlPI() override;
    ZuXmlPI(const ZuXmlPI&) = delete;
    ZuXmlPI& operator=(const ZuXmlPI&) = delete;

    const char* getTarget() const override;
    void storeTarget(char* target) override;
    const char* getData() const override;
    void storeData(char* data) override;

    char* _target;
    char* _data;
};

class ZU_API ZuXmlCharRef : public ZuXmlCharRefI {
public:
    // Code 0, no name.
    ZuXmlCharRef();
    ~ZuXmlCharRef() override;
    ZuXmlCharRef(const ZuXmlCharRef&) = delete;
    ZuXmlCharRef& operator=(const ZuXmlCharRef&) = delete;

    int getRefCode() const override;
    // Stores a null name first, then the code.
    void setRefCode(int code) override;
    const char* getRefName() const override;
    // Frees the old name, stores name and sets the code to -1.
    void storeRefName(char* name) override;

    int32_t _code; // -1 when the reference is by name
    char* _name;
};

// A hook for the document's factories. Every operation returns null here; a subclass
// that returns a node (made with new) takes ownership of the strings it is given.
// The operations are virtual so that a subclass can actually supply nodes.
class ZU_API ZuXmlNodeFactory {
public:
    virtual ~ZuXmlNodeFactory();
    virtual ZuXmlAttributeI* createAttribute(ZuXmlElementI* element, char* name, char* value);
    virtual ZuXmlElementI* createElement(char* tag);
    virtual ZuXmlTextI* createText();
    virtual ZuXmlCommentI* createComment();
    virtual ZuXmlCharRefI* createCharRef();
    virtual ZuXmlPII* createPI();
    virtual ZuXmlCDataI* createCData();
};

// A document: top-level nodes, a version and a DOCTYPE. The parser builds the tree only
// through these operations, so a subclass can supply its own nodes (the create
// functions) or watch the parse (the notifications, which do nothing here).
class ZU_API ZuXmlDocumentI {
public:
    ZuXmlDocumentI() = default;
    virtual ~ZuXmlDocumentI();
    ZuXmlDocumentI(const ZuXmlDocumentI&) = delete;
    ZuXmlDocumentI& operator=(const ZuXmlDocumentI&) = delete;

    // Adopts a top-level node.
    virtual void addNode(ZuXmlNodeI* node) = 0;
    // Notifications, called by the parser. A start tag is notified before its
    // attributes; an element is added to its parent after its end tag.
    virtual void startElement(ZuXmlElementI* element);
    virtual void attributeAdded(ZuXmlElementI* element, ZuXmlAttributeI* attribute);
    virtual void endElement(ZuXmlElementI* element);
    virtual void textAdded(ZuXmlTextI* text);
    virtual void commentAdded(ZuXmlCommentI* comment);
    virtual void charRefAdded(ZuXmlCharRefI* charRef);
    // Never called by the parser, deliberately.
    virtual void processingInstructionAdded(ZuXmlPII* pi);
    virtual void cDataAdded(ZuXmlCDataI* cData);
    // element's createAttribute, else the node factory's, else a ZuXmlAttribute holding
    // name and value (taken over).
    virtual ZuXmlAttributeI* createAttribute(ZuXmlElementI* element, char* name,
                                             char* value) const;
    // The node factory's, else a ZuXmlElement holding tag (taken over).
    virtual ZuXmlElementI* createElement(char* tag) const;
    // The node factory's, else an empty node of the matching concrete class.
    virtual ZuXmlTextI* createText() const;
    virtual ZuXmlCommentI* createComment() const;
    virtual ZuXmlCharRefI* createCharRef() const;
    virtual ZuXmlPII* createPI() const;
    virtual ZuXmlCDataI* createCData() const;
    // Null here.
    virtual ZuXmlNodeFactory* getNodeFactory() const;
    // "1.0" here.
    virtual const char* getVersion() const;
    // Null here.
    virtual const char* getDoctypeName() const;
    // Null here.
    virtual const char* getDoctypeRest() const;
    // Nothing here.
    virtual void empty();
    // The declaration line with getVersion(), the DOCTYPE line when there is a name,
    // then the top-level nodes from indentation 0.
    virtual void write(std::ostream& os) const;
    // Each top-level node in order.
    virtual void writeNodes(std::ostream& os) const;
    // Null here.
    virtual ZuXmlNodeIteratorI* createNodesIterator() const;
    // Frees version here.
    virtual void storeVersion(char* version);
    // Frees both here.
    virtual void storeDoctype(char* name, char* rest);

    // empty(), then parses in into this document (see ZuXmlParser). The outcome is in
    // ZuXmlError, which this does not reset: an error left from an earlier parse makes
    // this one fail at once.
    void read(std::istream& in);
};

class ZU_API ZuXmlDocument : public ZuXmlDocumentI {
public:
    ZuXmlDocument();
    // Frees version and DOCTYPE strings and empties the node list.
    ~ZuXmlDocument() override;

    // Appends to the top-level nodes (adopted).
    void addNode(ZuXmlNodeI* node) override;
    // The stored version, or "1.0".
    const char* getVersion() const override;
    const char* getDoctypeName() const override;
    const char* getDoctypeRest() const override;
    // Deletes every top-level node; version and DOCTYPE stay.
    void empty() override;
    // A new ZuXmlNodeListIterator over the top-level nodes, owned by the caller.
    ZuXmlNodeIteratorI* createNodesIterator() const override;
    // Takes ownership. A value stored earlier is not freed, deliberately: pointers
    // already handed out stay valid until the document is destroyed.
    void storeVersion(char* version) override;
    void storeDoctype(char* name, char* rest) override;

    const Zu_List& getNodes() const { return _nodes; }
    // The first top-level element, or null. Only a ZuXmlElement is returned.
    ZuXmlElement* getRootElement() const;

    Zu_List _nodes; // ZuXmlNodeI*, owned
    char* _version;
    char* _doctypeName;
    char* _doctypeRest;

private:
    Zu_List _replaced; // strings replaced by the store operations, freed at destruction
};

// Walks nodes.
class ZU_API ZuXmlNodeIteratorI {
public:
    virtual ~ZuXmlNodeIteratorI();
    virtual bool hasMoreNodes() const = 0;
    // The next node, or null when exhausted.
    virtual ZuXmlNodeI* getNextNode() = 0;
};

// Holds (and deletes) the iterator returned by a create...Iterator operation and
// forwards to it; false and null when it holds none.
class ZU_API ZuXmlNodeIterator : public ZuXmlNodeIteratorI {
public:
    explicit ZuXmlNodeIterator(ZuXmlNodeIteratorI* iterator);
    ~ZuXmlNodeIterator() override;
    ZuXmlNodeIterator(const ZuXmlNodeIterator&) = delete;
    ZuXmlNodeIterator& operator=(const ZuXmlNodeIterator&) = delete;

    bool hasMoreNodes() const override;
    ZuXmlNodeI* getNextNode() override;

    ZuXmlNodeIteratorI* _iterator;
};

// Walks a Zu_List of nodes; the list must outlive it and not lose the current cell.
class ZU_API ZuXmlNodeListIterator : public ZuXmlNodeIteratorI, public Zu_LIterator {
public:
    explicit ZuXmlNodeListIterator(const Zu_List& list);

    bool hasMoreNodes() const override;
    ZuXmlNodeI* getNextNode() override;
};

// Walks a ZuArray of nodes from index 0.
class ZU_API ZuXmlNodeArrayIterator : public ZuXmlNodeIteratorI {
public:
    explicit ZuXmlNodeArrayIterator(const ZuArray& array);

    bool hasMoreNodes() const override;
    ZuXmlNodeI* getNextNode() override;

    const ZuArray& _array;
    unsigned int _index;
};

// Walks count node pointers from index 0.
class ZU_API ZuXmlNodePtrArrayIterator : public ZuXmlNodeIteratorI {
public:
    ZuXmlNodePtrArrayIterator(unsigned int count, const ZuXmlNodeI* const* nodes);

    bool hasMoreNodes() const override;
    ZuXmlNodeI* getNextNode() override;

    unsigned int _count;
    const ZuXmlNodeI* const* _nodes;
    unsigned int _index;
};

// Writes a string with "<", ">" and "&" escaped; quotation marks and apostrophes are
// not escaped. Nothing for a null or empty string.
class ZU_API ZuXmlString {
public:
    explicit ZuXmlString(const char* string) : _string(string) {}
    const char* _string;
};
ZU_API std::ostream& operator<<(std::ostream& os, const ZuXmlString& string);

// Writes count blanks; nothing below 1.
class ZU_API ZuXmlSpaces {
public:
    explicit ZuXmlSpaces(int count) : _count(count) {}
    int _count;
};
ZU_API std::ostream& operator<<(std::ostream& os, const ZuXmlSpaces& spaces);

// The parser behind ZuXmlDocumentI::read; the whole parse runs in the constructor and
// the object keeps nothing afterwards. Input: UTF-16 with a byte-order mark, or UTF-8
// (with or without one) whose first byte is "<"; fewer than 8 bytes fail. Errors go to
// ZuXmlError (only the first is meaningful); on any failure but EMPTY_DOCUMENT the
// document is emptied, even a complete one followed by stray content (code 4).
// Deliberate: "<?xml" matches in any case; a reference keeps only the low 8 bits of its
// character; an unknown entity stays verbatim in an attribute value and becomes a
// reference node in content; "&quote;" is an apostrophe; in content every comment, PI
// and CDATA clears the error record; PIs are not notified. Every parse ends: an
// unterminated PI is EARLY_END_OF_DOCUMENT, "]" in content is character data, and
// nesting deeper than MaxDepth is NestingTooDeep. Scratch memory comes from
// ZuCharPool::_Pool; the pages of buffers of 1 MB or more are given back after use.
class ZU_API ZuXmlParser {
public:
    // Open elements allowed; one more records NestingTooDeep (26). The parse recurses
    // once per level (about 2 MB of stack at this depth in an optimised build).
    static const unsigned int MaxDepth = 10000;

    // A saved position.
    class ZU_API Marker {
    public:
        Marker(const ZuXmlParser& parser, const unsigned short* position)
            : _parser(&parser), _position(position) {}
        // A new[] NUL-terminated UTF-8 copy of the units from the saved position up to
        // end less the last drop units; null when fewer than drop units lie between.
        char* getBlock(const unsigned short* end, unsigned int drop) const;

        const ZuXmlParser* _parser;
        const unsigned short* _position;
    };

    // Loads in and parses it into doc (not owned).
    ZuXmlParser(std::istream& in, ZuXmlDocumentI* doc);
    // Forgets the document (it is not emptied) and calls reset().
    ~ZuXmlParser();
    ZuXmlParser(const ZuXmlParser&) = delete;
    ZuXmlParser& operator=(const ZuXmlParser&) = delete;

    // Empties the document when one is set; releases the buffer to the pool.
    void reset();

    // The character a reference stands for: by name "gt", "lt", "amp" and, deliberately,
    // "quote" (an apostrophe), any case; 0xFFFF for any other name (the standard ones for
    // the quotation mark and apostrophe included); else the code's low 16 bits.
    static int GetChar(ZuXmlCharRefI* ref);

private:
    friend class Marker;

    bool fillBuffer(std::istream& in);
    bool useUtf16(unsigned int bytes, bool swap, bool marked);
    bool useUtf8(const unsigned char* bytes, unsigned int count);
    void releaseBlocks();
    static void releaseBlock(void*& block, unsigned int used, bool lazily = true);
    void parseDocument();

    // Reading primitives.
    int nextChar();
    void previousChar();
    bool parseChar(int c);
    bool parseS();
    bool parseString(const char* s);
    bool parseIString(const char* s);
    bool parseEq();
    void error(int code, ZuXmlError::Severity severity = ZuXmlError::Fatal);
    int lineAt(const unsigned short* pos);

    // Productions.
    bool parseXMLDecl();
    bool parseVersionInfo();
    bool parseVersionNum();
    bool parseEncodingDecl();
    bool parseSDDecl();
    bool parseAttribute(const char* name);
    bool parseMisc();
    bool parseMiscs();
    bool parseProlog();
    bool parseDoctypedecl();
    bool parseExternalID();
    bool parseLiteral(bool pubid);
    bool parseElement(ZuXmlElementI*& element);
    bool parseTagStart(ZuXmlElementI*& element, bool& empty);
    bool parseAttribute(ZuXmlElementI* element, bool& spaceGiven);
    bool parseAttValue(char*& value);
    bool parseTagEnd(ZuXmlElementI* element);
    bool parseContent();
    bool parseReference(ZuXmlCharRefI*& ref);
    bool parseName(char*& name);
    const unsigned short* scanName(const unsigned short* p) const;
    // Reads up to and past `first` followed by `rest`. The end of input records
    // EARLY_END_OF_DOCUMENT; with cdata, a control character other than white space
    // records INVALID_CDATA. False on either.
    bool scanPast(int first, const char* rest, bool cdata);
    bool parseComment();
    bool parsePI();
    bool parseCDSect();
    bool parseCharData();

    // Tree building.
    void addNode(ZuXmlNodeI* node);
    void addText(const char* utf8);
    void addText(Marker& marker);
    char* scratch(unsigned int size);
    const char* scratchUtf8(const unsigned short* from, const unsigned short* to);

    ZuXmlDocumentI* _document;
    void* _block;                    // pool block holding the text
    const unsigned short* _text;     // first unit of the decoded document
    uint32_t _length;                // units in the text
    const unsigned short* _position; // next unit to read
    ZuXmlElementI* _current;         // element whose content is parsed, null at top level

    const unsigned short* _end;      // _text + _length; a 0 unit is kept there
    void* _scratchBlock;             // pool block for temporary UTF-8 text
    unsigned int _scratchSize;       // largest size asked of the scratch block
    unsigned int _depth;             // open elements
    const unsigned short* _linePos;  // line-number cache: a position and its line
    int _line;
};

#endif
