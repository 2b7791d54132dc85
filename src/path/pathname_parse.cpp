// ZuPathName: construction, assignment, the setters and the parsing of internal, Unix
// and DOS notation.
#include <zu/pathname.h>

#include "path_text.h"

#include <string>

using zu_path::bytesOf;
using zu_path::makeString;

const char* const ZuPathName::SlashCStr = "/";
const char* const ZuPathName::CurrentDirCStr = "./";
const char* const ZuPathName::ParentDirCStr = "../";
const char* const ZuPathName::EmptyCStr = "";
const char* const ZuPathName::QuestionMarkCStr = "?";
const char* const ZuPathName::StarCStr = "*";
const char* const ZuPathName::FullStopCStr = ".";
const char* const ZuPathName::ColonCStr = ":";
const char* const ZuPathName::DoubleBackSlashCStr = "\\\\";
const char* const ZuPathName::BackSlashCStr = "\\";

namespace {

// Where the path proper starts after a DOS device prefix; device receives the prefix.
// A drive letter is one ASCII letter followed by ":"; a UNC prefix is two backslashes,
// a server, a backslash and a share, and counts only when the backslash after the share
// is there too.
size_t takeDosDevice(std::string_view text, std::string_view& device) {
    device = std::string_view();
    if (text.size() > 1 && text[1] == ':') {
        const char c = text[0];
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
            device = text.substr(0, 1);
            return 2;
        }
    }
    if (text.size() >= 2 && text[0] == '\\' && text[1] == '\\') {
        const size_t server = text.find('\\', 2);
        const size_t share = server == std::string_view::npos ? server : text.find('\\', server + 1);
        if (share != std::string_view::npos) {
            device = text.substr(0, share);
            return share;
        }
    }
    return 0;
}

std::string withSlashes(std::string_view text) {
    std::string s(text);
    for (char& c : s)
        if (c == '\\') c = '/';
    return s;
}

} // namespace

ZuPathName::ZuPathName() : _dirty(true), _dirStream(nullptr) {}

ZuPathName::ZuPathName(const char* value) : _dirty(true), _dirStream(nullptr) {
    // The whole text is the range, so its bytes can be parsed without a string copy.
    if (value) setInternalText(std::string_view(value));
}

ZuPathName::ZuPathName(const ZuString& value) : _dirty(true), _dirStream(nullptr) {
    setValue(value, -1, SystemPathType, 0);
}

ZuPathName::ZuPathName(const ZuPathName& other)
    : _device(other._device),
      _directory(other._directory),
      _baseName(other._baseName),
      _extension(other._extension),
      _dirty(true),
      _dirStream(nullptr) {}

ZuPathName& ZuPathName::operator=(const ZuPathName& other) {
    closeDir();
    if (this == &other) {
        _dirty = true;
        return *this;
    }
    _device = other._device;
    setUnixDirectory(other.getUnixDirectory(true));
    _baseName = other._baseName;
    _extension = other._extension;
    _dirty = true;
    return *this;
}

ZuPathName::~ZuPathName() { closeDir(); }

void ZuPathName::setValue(const ZuString& value, int end, ZuPathType type, int start) {
    if (type == DosPathType)
        setDosValue(value, end, start);
    else
        setUnixValue(value, end, start);
}

void ZuPathName::setUnixValue(const ZuString& value, int end, int start) {
    _device = ZuString();
    setInternalVal(value, end, start);
}

void ZuPathName::setDosValue(const ZuString& value, int end, int start) {
    setDosText(zu_path::Range(value, end, start).view());
}

void ZuPathName::setInternalVal(const ZuString& value, int end, int start) {
    setInternalText(zu_path::Range(value, end, start).view());
}

void ZuPathName::setDevice(const ZuString& value, int end, int start) {
    _device = makeString(zu_path::Range(value, end, start).view());
    forceDeviceDirectory();
    _dirty = true;
}

void ZuPathName::setBaseName(const ZuString& value, int end, int start) {
    setFileNameText(zu_path::Range(value, end, start).view());
}

void ZuPathName::setDirectory(const ZuString& value, int end, ZuPathType type, int start) {
    if (type == DosPathType)
        setDosDirectory(value, end, start);
    else
        setUnixDirectory(value, end, start);
}

void ZuPathName::setUnixDirectory(const ZuString& value, int end, int start) {
    setInternalDir(value, end, start);
}

void ZuPathName::setDosDirectory(const ZuString& value, int end, int start) {
    setDirectoryText(withSlashes(zu_path::Range(value, end, start).view()));
}

void ZuPathName::setInternalDir(const ZuString& value, int end, int start) {
    setDirectoryText(zu_path::Range(value, end, start).view());
}

void ZuPathName::setDirName(const ZuString& value, int end, ZuPathType type, int start) {
    if (type == DosPathType)
        setDosDirName(value, end, start);
    else
        setUnixDirName(value, end, start);
}

void ZuPathName::setUnixDirName(const ZuString& value, int end, int start) {
    _device = ZuString();
    setInternalDir(value, end, start);
}

void ZuPathName::setDosDirName(const ZuString& value, int end, int start) {
    setDosDirNameText(zu_path::Range(value, end, start).view());
}

void ZuPathName::addDirectory(const ZuString& value, int end, ZuPathType type, int start) {
    if (type == DosPathType)
        addDosDirectory(value, end, start);
    else
        addUnixDirectory(value, end, start);
}

void ZuPathName::addUnixDirectory(const ZuString& value, int end, int start) {
    addDirectoryText(zu_path::Range(value, end, start).view());
}

void ZuPathName::addDosDirectory(const ZuString& value, int end, int start) {
    addDirectoryText(withSlashes(zu_path::Range(value, end, start).view()));
}

// ---- the byte-level forms ----

void ZuPathName::setDirectoryText(std::string_view text) {
    _dirty = true;
    if (text.empty()) {
        _directory = ZuString();
        return;
    }
    if (text == bytesOf(_directory)) return;
    char small[256];
    std::string large;
    char* buffer = small;
    if (text.size() + 2 > sizeof small) {
        large.resize(text.size() + 2);
        buffer = &large[0];
    }
    const size_t length = zu_path::normalizeDirectory(text, buffer);
    buffer[length] = '\0';
    _directory = length ? ZuString(buffer) : ZuString();
}

void ZuPathName::setFileNameText(std::string_view text) {
    _dirty = true;
    // A dot that is the first or the last character never starts an extension.
    const size_t dot = text.rfind('.');
    if (dot != std::string_view::npos && dot > 0 && dot + 1 < text.size()) {
        _baseName = makeString(text.substr(0, dot));
        _extension = makeString(text.substr(dot + 1));
    } else {
        _baseName = makeString(text);
        _extension = ZuString();
    }
}

void ZuPathName::clearFileName() {
    _baseName = ZuString();
    _extension = ZuString();
    _dirty = true;
}

void ZuPathName::setInternalText(std::string_view text) {
    _dirty = true;
    if (text.empty()) {
        _directory = ZuString();
        clearFileName();
        return;
    }
    if (text == ".") {
        clearFileName();
        return;
    }
    const size_t slash = text.rfind('/');
    if (slash == std::string_view::npos) {
        setFileNameText(text);
        _directory = ZuString();
        return;
    }
    if (slash + 1 == text.size()) {
        clearFileName();
        setDirectoryText(text);
        return;
    }
    setFileNameText(text.substr(slash + 1));
    setDirectoryText(slash == 0 ? text.substr(0, 1) : text.substr(0, slash));
}

void ZuPathName::forceDeviceDirectory() {
    if (!_device.isEmpty() && _directory.isEmpty()) _directory = ZuString(SlashCStr);
}

void ZuPathName::setDosText(std::string_view text) {
    _dirty = true;
    if (text.empty()) {
        _device = ZuString();
        _directory = ZuString();
        clearFileName();
        return;
    }
    std::string_view device;
    const size_t from = takeDosDevice(text, device);
    _device = makeString(device);
    const std::string working = withSlashes(text);
    setInternalText(std::string_view(working).substr(from));
    forceDeviceDirectory();
}

void ZuPathName::setDosDirNameText(std::string_view text) {
    _dirty = true;
    std::string_view device;
    const size_t from = takeDosDevice(text, device);
    _device = makeString(device);
    setDirectoryText(withSlashes(text.substr(from)));
    forceDeviceDirectory();
}

void ZuPathName::addDirectoryText(std::string_view text) {
    _dirty = true;
    if (text.empty()) return;
    if (text[0] == '/') {
        setDirectoryText(text);
        return;
    }
    std::string joined(_directory.isEmpty() ? std::string_view(CurrentDirCStr) : bytesOf(_directory));
    joined.append(text.data(), text.size());
    setDirectoryText(joined);
}
