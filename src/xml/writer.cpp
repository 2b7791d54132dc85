// The writer: escaping, indentation and the text form of every node kind.
#include <zu/xml.h>

#include <ostream>

unsigned int ZuXmlElementI::_indentation = 2;
unsigned int ZuXmlElementI::_indent = 0;

std::ostream& operator<<(std::ostream& os, const ZuXmlString& string) {
    const char* s = string._string;
    if (!s)
        return os;
    // Runs without a special byte are written in one piece.
    const char* run = s;
    for (; *s; ++s) {
        const char* entity;
        switch (*s) {
        case '<': entity = "&lt;"; break;
        case '>': entity = "&gt;"; break;
        case '&': entity = "&amp;"; break;
        default: continue;
        }
        if (s > run)
            os.write(run, s - run);
        os << entity;
        run = s + 1;
    }
    if (s > run)
        os.write(run, s - run);
    return os;
}

std::ostream& operator<<(std::ostream& os, const ZuXmlSpaces& spaces) {
    static const char Blanks[] = "                                                                ";
    const int chunk = static_cast<int>(sizeof Blanks - 1);
    for (int left = spaces._count; left > 0; left -= chunk)
        os.write(Blanks, left < chunk ? left : chunk);
    return os;
}

// ---- attributes ----------------------------------------------------------------------

void ZuXmlAttributeI::write(std::ostream& os) const { Write(os, getName(), getValue()); }

void ZuXmlAttributeI::Write(std::ostream& os, const char* name, const char* value) {
    if (name)
        os << name;
    os << "=\"" << ZuXmlString(value) << '"';
}

void ZuXmlAttributeI::Write(std::ostream& os, const char* name, int value) {
    if (name)
        os << name;
    os << "=\"" << value << '"';
}

void ZuXmlAttributeI::Write(std::ostream& os, const char* name, double value) {
    if (name)
        os << name;
    os << "=\"" << value << '"';
}

// ---- elements ------------------------------------------------------------------------

void ZuXmlElementI::write(std::ostream& os) const {
    const char* tag = getTag();
    os << ZuXmlSpaces(static_cast<int>(_indent)) << '<';
    if (tag)
        os << tag;
    writeAttributes(os);
    _indent += _indentation;
    const bool hasChildren = writeChildren(os);
    _indent -= _indentation;
    if (hasChildren) {
        os << ZuXmlSpaces(static_cast<int>(_indent)) << "</";
        if (tag)
            os << tag;
    } else {
        os << '/';
    }
    os << '>' << std::endl;
}

void ZuXmlElementI::writeAttributes(std::ostream& os) const {
    ZuXmlNodeIterator it(createAttributesIterator());
    while (ZuXmlNodeI* attribute = it.getNextNode()) {
        os << ' ';
        attribute->write(os);
    }
}

bool ZuXmlElementI::writeChildren(std::ostream& os) const {
    ZuXmlNodeIterator it(createChildrenIterator());
    bool any = false;
    while (ZuXmlNodeI* child = it.getNextNode()) {
        if (!any) {
            os << '>' << std::endl;
            any = true;
        }
        child->write(os);
    }
    return any;
}

// ---- leaves --------------------------------------------------------------------------

void ZuXmlTextI::write(std::ostream& os) const { os << ZuXmlString(getText()); }

void ZuXmlCommentI::write(std::ostream& os) const {
    const char* comment = getComment();
    os << "<!--";
    if (comment)
        os << comment;
    os << "-->" << std::endl;
}

void ZuXmlCDataI::write(std::ostream& os) const {
    const char* data = getData();
    os << "<![CDATA[";
    if (data)
        os << data;
    os << "]]>" << std::endl;
}

void ZuXmlPII::write(std::ostream&) const {}

void ZuXmlCharRefI::write(std::ostream&) const {}

// ---- documents -----------------------------------------------------------------------

void ZuXmlDocumentI::write(std::ostream& os) const {
    const char* version = getVersion();
    os << "<?xml version=\"";
    if (version)
        os << version;
    os << "\"?>" << std::endl;
    if (const char* name = getDoctypeName()) {
        os << "<!DOCTYPE " << name;
        if (const char* rest = getDoctypeRest())
            os << ' ' << rest;
        os << '>' << std::endl;
    }
    ZuXmlElementI::_indent = 0;
    writeNodes(os);
}

void ZuXmlDocumentI::writeNodes(std::ostream& os) const {
    ZuXmlNodeIterator it(createNodesIterator());
    while (ZuXmlNodeI* node = it.getNextNode())
        node->write(os);
}
