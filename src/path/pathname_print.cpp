// ZuPathName: printing in Unix and DOS notation, the cache, and the getters.
#include <zu/pathname.h>

#include "path_text.h"

#include <string>
#include <vector>

using zu_path::bytesOf;
using zu_path::makeString;
using zu_path::TextBuffer;

namespace {

void appendFileName(TextBuffer& out, const ZuString& baseName, const ZuString& extension) {
    out.append(bytesOf(baseName));
    if (!extension.isEmpty()) {
        out.append('.');
        out.append(bytesOf(extension));
    }
}

void appendDos(TextBuffer& out, std::string_view text) {
    for (char c : text)
        out.append(c == '/' ? '\\' : c);
}

// The DOS printer over explicit parts, shared with the 8.3 form.
ZuString dosText(const ZuString& device, const ZuString& directory, const ZuString& baseName,
                 const ZuString& extension) {
    TextBuffer out;
    const std::string_view dir = bytesOf(directory);
    if (!device.isEmpty()) {
        out.append(bytesOf(device));
        if (device.getLength() == 1) out.append(':');
        if (!dir.empty()) {
            if (dir[0] != '/' && dir[0] != '.') out.append('\\');
            appendDos(out, dir);
        } else {
            out.append('\\');
        }
    } else if (!dir.empty() || (baseName.isEmpty() && extension.isEmpty())) {
        appendDos(out, dir.empty() ? std::string_view(".\\") : dir);
    }
    appendFileName(out, baseName, extension);
    return out.toString();
}

// Cuts text to its first n characters (characters, not bytes).
ZuString cut(const ZuString& text, int n) {
    return text.getLength() > n ? text.getSubString(0, n) : text;
}

// The 8.3 form of one name: the part before its extension dot (a dot that is neither
// first nor last) to 8 characters, the extension to 3.
std::string shortName(std::string_view name) {
    if (name == "." || name == "..") return std::string(name);
    const size_t dot = name.rfind('.');
    if (dot != std::string_view::npos && dot > 0 && dot + 1 < name.size()) {
        std::string s(bytesOf(cut(makeString(name.substr(0, dot)), 8)));
        s += '.';
        s += bytesOf(cut(makeString(name.substr(dot + 1)), 3));
        return s;
    }
    return std::string(bytesOf(cut(makeString(name), 8)));
}

// Splits a directory into its components; root tells whether it began with "/".
std::vector<std::string_view> components(std::string_view dir, bool& root) {
    std::vector<std::string_view> parts;
    root = !dir.empty() && dir[0] == '/';
    size_t i = root ? 1 : 0;
    while (i < dir.size()) {
        size_t end = dir.find('/', i);
        if (end == std::string_view::npos) end = dir.size();
        if (end > i) parts.push_back(dir.substr(i, end - i));
        i = end + 1;
    }
    return parts;
}

} // namespace

ZuString ZuPathName::getString(ZuPathType type) const {
    if (!_dirty) return _cachedValue;
    return type == DosPathType ? getDosValue() : getUnixValue();
}

ZuPathName::operator const char*() const {
    getString(SystemPathType);
    return _cachedValue.getValue();
}

ZuString ZuPathName::getUnixValue() const {
    TextBuffer out;
    if (!_directory.isEmpty())
        out.append(bytesOf(_directory));
    else if (_baseName.isEmpty() && _extension.isEmpty())
        out.append(CurrentDirCStr);
    appendFileName(out, _baseName, _extension);
    _cachedValue = out.toString();
    _dirty = false;
    return _cachedValue;
}

ZuString ZuPathName::getDosValue() const {
    _cachedValue = dosText(_device, _directory, _baseName, _extension);
    _dirty = true; // the cache never holds a DOS string as valid
    return _cachedValue;
}

ZuString ZuPathName::get83DosValue() const {
    bool root = false;
    const std::vector<std::string_view> parts = components(bytesOf(_directory), root);
    std::string dir = root ? "/" : "";
    for (std::string_view part : parts) {
        dir += shortName(part);
        dir += '/';
    }
    return dosText(_device, makeString(dir), cut(_baseName, 8), cut(_extension, 3));
}

ZuString ZuPathName::getTruncatedValue(int n) const {
    const ZuString value = getString(SystemPathType);
    const int length = value.getLength();
    if (length <= n) return value;
    if (n <= 3) return ZuString("...");
    const int head = (n - 3) / 2;
    const int tail = n - 3 - head;
    ZuString result = value.getSubString(0, head);
    result.catenate(ZuString("..."));
    result.catenate(value, length - tail, length);
    return result;
}

ZuString ZuPathName::getBaseName() const {
    if (_extension.isEmpty()) return _baseName;
    TextBuffer out;
    appendFileName(out, _baseName, _extension);
    return out.toString();
}

ZuString ZuPathName::getDirectory(bool withSlash, ZuPathType type) const {
    return type == DosPathType ? getDosDirectory(withSlash) : getUnixDirectory(withSlash);
}

ZuString ZuPathName::getUnixDirectory(bool withSlash) const {
    if (_directory.isEmpty()) return ZuString(withSlash ? CurrentDirCStr : FullStopCStr);
    const std::string_view dir = bytesOf(_directory);
    if (withSlash || dir.size() <= 1) return _directory;
    return makeString(dir.substr(0, dir.size() - 1));
}

ZuString ZuPathName::getDosDirectory(bool withSlash) const {
    const ZuString unix = getUnixDirectory(withSlash);
    TextBuffer out;
    appendDos(out, bytesOf(unix));
    return out.toString();
}

ZuString ZuPathName::getDirName(bool withSlash, ZuPathType type) const {
    if (type != DosPathType) return getUnixDirectory(withSlash);
    TextBuffer out;
    out.append(bytesOf(_device));
    if (_device.getLength() == 1) out.append(':');
    out.append(bytesOf(getDosDirectory(withSlash)));
    return out.toString();
}

ZuString ZuPathName::getSubDirectory(int first, int last) const {
    bool root = false;
    const std::vector<std::string_view> parts = components(bytesOf(_directory), root);
    const int count = static_cast<int>(parts.size());
    if (first < 0) first = 0;
    if (last < 0 || last >= count) last = count - 1;
    if (first > last) return ZuString();
    TextBuffer out;
    if (root && first == 0) out.append('/');
    for (int i = first; i <= last; ++i) {
        out.append(parts[static_cast<size_t>(i)]);
        out.append('/');
    }
    return out.toString();
}

int ZuPathName::computeLevelNumber() const {
    const std::string_view dir = bytesOf(_directory);
    int n = 0;
    for (size_t i = 1; i < dir.size(); ++i)
        if (dir[i] == '/') ++n;
    return n;
}

bool ZuPathName::isSensitive() const { return true; }

bool ZuPathName::operator==(const ZuPathName& other) const {
    return zu_path::sameText(_device, other._device) &&
           zu_path::sameText(_directory, other._directory) &&
           zu_path::sameText(_baseName, other._baseName) &&
           zu_path::sameText(_extension, other._extension);
}
