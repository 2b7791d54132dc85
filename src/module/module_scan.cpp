// Scanning the module path for descriptor files, in either format.
#include "module/module_internal.h"

#include <zu/context.h>
#include <zu/locale.h>
#include <zu/pathlist.h>
#include <zu/xml.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <strings.h>

namespace {

const char DescriptorExtension[] = "imd";
const char ShLibExt[] = "so";
const char OldFormatMark[] = "// Marquesolt";
const size_t OldFormatMarkLength = sizeof OldFormatMark - 1; // 13
const size_t WordLimit = 1024;

bool initDone = false;

const char* textOf(const ZuString& s) {
    const char* value = s.getValue();
    return value ? value : "";
}

unsigned traceMask(const char* value) {
    if (!value)
        return 0;
    if (strcasecmp(value, "true") == 0 || strcasecmp(value, "yes") == 0)
        return TraceScan | TraceLoad;
    if (strcasecmp(value, "scan") == 0)
        return TraceScan;
    if (strcasecmp(value, "load") == 0)
        return TraceLoad;
    if (strcasecmp(value, "disableload") == 0)
        return TraceDisableLoad;
    return 0;
}

// The next whitespace-separated word, at most WordLimit - 1 characters (a longer word
// is cut into pieces); false at the end of the file.
bool readWord(std::istream& in, std::string& word) {
    word.clear();
    int c;
    while ((c = in.get()) != EOF && std::isspace(static_cast<unsigned char>(c))) {
    }
    while (c != EOF && !std::isspace(static_cast<unsigned char>(c))) {
        word.push_back(static_cast<char>(c));
        if (word.size() == WordLimit - 1)
            break;
        c = in.get();
    }
    return !word.empty();
}

ZuXmlElement* addElement(ZuXmlElement* parent, const char* tag) {
    ZuXmlElement* element = new ZuXmlElement(tag);
    parent->addChild(element);
    return element;
}

// Converts the old text format (the mark already read) into a "module" document with
// version "5.0"; null when it names no class.
ZuXmlDocument* readOldFormat(std::istream& in, const char* moduleName) {
    // The rest of the first line is ignored (at most 1024 characters of it).
    for (size_t n = 0; n < WordLimit; ++n) {
        const int c = in.get();
        if (c == EOF || c == '\n')
            break;
    }
    ZuXmlDocument* document = new ZuXmlDocument;
    ZuXmlElement* module = new ZuXmlElement("module");
    document->addNode(module);
    module->addAttribute(new ZuXmlAttribute("name", moduleName));
    module->addAttribute(new ZuXmlAttribute("version", "5.0"));
    unsigned classes = 0;
    std::string rootClass, word;
    while (readWord(in, rootClass)) {
        readWord(in, word); // normally "{", not checked
        while (readWord(in, word) && word != "}") {
            ZuXmlElement* element = addElement(module, "class");
            element->addAttribute(new ZuXmlAttribute("name", word.c_str()));
            element->addAttribute(new ZuXmlAttribute("rootClass", rootClass.c_str()));
            ++classes;
        }
    }
    if (classes == 0) {
        delete document;
        return nullptr;
    }
    return document;
}

// Reads one descriptor file and registers its module when the file is valid.
void scanDescriptor(const ZuPathName& descriptorPath, const ZuPathName& libPath) {
    const ZuString descriptorText = descriptorPath.getString(ZuPathName::SystemPathType);
    if (_ZuModuleDescriptor::_Trace & TraceScan)
        std::cerr << "ZuModuleLoader: Scanning " << descriptorText
                  << " - lib=" << libPath.getString(ZuPathName::SystemPathType) << std::endl;
    std::ifstream in(textOf(descriptorText), std::ios::binary);
    if (!in)
        return;
    const ZuString moduleName = descriptorPath.getBaseNameOnly();

    char mark[OldFormatMarkLength] = {};
    in.read(mark, OldFormatMarkLength);
    if (static_cast<size_t>(in.gcount()) == OldFormatMarkLength &&
        std::memcmp(mark, OldFormatMark, OldFormatMarkLength) == 0) {
        ZuXmlDocument* document = readOldFormat(in, textOf(moduleName));
        if (!document)
            return;
        std::cerr << "ZuModule warning: module descriptor '" << descriptorText
                  << "' has an old format.\nHere is the new preferred format:" << std::endl;
        document->write(std::cerr);
        new _ZuModuleDescriptor(textOf(moduleName), libPath, document);
        return;
    }

    in.clear();
    in.seekg(0);
    // A malformed descriptor read earlier must not spoil this one.
    ZuXmlError::Reset();
    ZuXmlDocument* document = new ZuXmlDocument;
    document->read(in);
    ZuXmlElement* root = document->getRootElement();
    if (!root || !root->getTag() || std::strcmp(root->getTag(), "module") != 0) {
        std::cerr << "ZuModuleLoader error: File '" << descriptorText
                  << " is not a valid Module Descriptor" << std::endl;
        delete document;
        return;
    }
    const char* version = root->getAttributeValue("version");
    double number = 0;
    char* end = nullptr;
    const bool accepted = version && ZuStringToDouble(version, &end, number) &&
                          static_cast<long long>(number * 100 + 0.5) == 570;
    if (!accepted) {
        // A missing version shows as "".
        std::cerr << "ZuModule: Invalid version (\"" << (version ? version : "")
                  << "\") in module descriptor '" << descriptorText << "'. Expecting \"" << 5
                  << "." << 7 << "\"" << std::endl;
        delete document;
        return;
    }
    new _ZuModuleDescriptor(textOf(moduleName), libPath, document);
}

// Scans one directory of the module path.
void scanDirectory(const ZuPathName& listed) {
    ZuPathName directory(listed);
    if (!directory.openDir())
        return;
    ZuPathName entry;
    while (directory.readDir(entry)) {
        if (std::strcmp(textOf(entry.getExtension()), DescriptorExtension) != 0)
            continue;
        ZuPathName descriptorPath(directory);
        descriptorPath.setBaseName(entry.getBaseName());
        if (!descriptorPath.isReadable())
            continue;
        const ZuString baseName = descriptorPath.getBaseNameOnly();
        if (_ZuModuleDescriptor::find(textOf(baseName)))
            continue;
        ZuPathName libPath(descriptorPath);
        ZuString libName(baseName);
        libName.catenate(ZuString(".")).catenate(ZuString(ShLibExt));
        libPath.setBaseName(libName);
        if (libPath.isReadable()) {
            scanDescriptor(descriptorPath, libPath);
            continue;
        }
        if (std::strncmp(textOf(baseName), "lib", 3) != 0) {
            libName.prepend(ZuString("lib"));
            libPath.setBaseName(libName);
            if (libPath.isReadable()) {
                scanDescriptor(descriptorPath, libPath);
                continue;
            }
        }
        if (_ZuModuleDescriptor::_Trace & TraceScan)
            std::cerr << "ZuModule: Cannot find library : "
                      << libPath.getString(ZuPathName::SystemPathType) << std::endl;
    }
    directory.closeDir();
}

} // namespace

int zu_module::Init() {
    if (initDone)
        return 1;
    initDone = true;
    _ZuModuleDescriptor::_Trace = traceMask(std::getenv("ZU_TRACEMODULES"));
    ZuModule::ReScan();
    return 0;
}

void ZuModule::ReScan() {
    // The very first call scans once, through the nested call that Init makes.
    if (!zu_module::Init())
        return;
    for (ZuPathListIterator it(ZuGlobalContext::GetInstance()->getModulePath()); !!it; it++)
        scanDirectory(it);
}
