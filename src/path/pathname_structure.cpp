// ZuPathName: the purely textual structural operations (absolute and relative forms,
// merging, common leading and trailing parts, relative paths, localisation, and the
// sub-directory reductions).
#include <zu/locale.h>
#include <zu/pathname.h>

#include "path_text.h"

#include <string>

using zu_path::bytesOf;
using zu_path::makeString;
using zu_path::sameText;

namespace {

bool isAbsolute(const ZuString& directory) {
    const std::string_view dir = bytesOf(directory);
    return !dir.empty() && dir[0] == '/';
}

int componentCount(std::string_view dir) {
    int n = 0;
    size_t i = 0;
    while (i < dir.size()) {
        size_t end = dir.find('/', i);
        if (end == std::string_view::npos) end = dir.size();
        if (end > i) ++n;
        i = end + 1;
    }
    return n;
}

} // namespace

bool ZuPathName::isSubDirectory(const ZuPathName& other) const {
    if (hasFileName() || other.hasFileName()) return false;
    if (!_device.isEmpty() && !other._device.isEmpty() && !sameText(_device, other._device))
        return false;
    const ZuString inner = other.getUnixDirectory(true);
    return bytesOf(_directory).find(bytesOf(inner)) != std::string_view::npos;
}

void ZuPathName::forceAbsolute() {
    _dirty = true;
    if (isAbsolute(_directory)) return;
    std::string text(SlashCStr);
    text += bytesOf(getUnixDirectory(true));
    setDirectoryText(text);
}

void ZuPathName::forceRelative() {
    _dirty = true;
    if (isAbsolute(_directory)) _directory = makeString(bytesOf(_directory).substr(1));
}

void ZuPathName::forceDirectory() {
    _dirty = true;
    if (!hasFileName()) return;
    const ZuString name = getBaseName();
    addDirectoryText(bytesOf(name));
    clearFileName();
}

void ZuPathName::merge(const ZuPathName& other) {
    if (isAbsolute(other._directory)) {
        *this = other;
        return;
    }
    const ZuString directory = other.getUnixDirectory(true);
    const ZuString baseName = other._baseName;
    const ZuString extension = other._extension;
    addDirectoryText(bytesOf(directory));
    _baseName = baseName;
    _extension = extension;
    _dirty = true;
}

void ZuPathName::prepend(const ZuPathName& other) {
    ZuPathName result(other);
    result.merge(*this);
    if (!(result == *this)) *this = result;
    _dirty = true;
}

void ZuPathName::computeSameLeading(const ZuPathName& other) {
    _dirty = true;
    if (!sameText(_device, other._device)) {
        _device = ZuString();
        _directory = ZuString();
        clearFileName();
    } else if (!sameText(_directory, other._directory)) {
        clearFileName();
        const int last = zu_path::commonLeadingDirectories(bytesOf(_directory), bytesOf(other._directory));
        _directory = last < 0 ? ZuString()
                              : makeString(bytesOf(_directory).substr(0, static_cast<size_t>(last) + 1));
    } else if (!sameText(_baseName, other._baseName)) {
        clearFileName();
    } else if (!sameText(_extension, other._extension)) {
        _extension = ZuString();
    }
}

void ZuPathName::computeDifferLeading(const ZuPathName& other) {
    _dirty = true;
    if (!sameText(_device, other._device)) return;
    _device = ZuString();
    if (sameText(_directory, other._directory)) {
        _directory = ZuString();
        return;
    }
    const int last = zu_path::commonLeadingDirectories(bytesOf(_directory), bytesOf(other._directory));
    _directory = makeString(bytesOf(_directory).substr(static_cast<size_t>(last + 1)));
    if (_directory.isEmpty() && sameText(_baseName, other._baseName)) {
        if (sameText(_extension, other._extension)) _extension = ZuString();
        _baseName = ZuString();
    }
}

void ZuPathName::computeSameTrailing(const ZuPathName& other) {
    _dirty = true;
    if (!sameText(_extension, other._extension)) {
        _device = ZuString();
        _directory = ZuString();
        clearFileName();
    } else if (!sameText(_baseName, other._baseName)) {
        _baseName = ZuString();
        _directory = ZuString();
        _device = ZuString();
    } else if (!sameText(_directory, other._directory)) {
        _device = ZuString();
        const int first = zu_path::commonTrailingDirectories(bytesOf(_directory), bytesOf(other._directory));
        _directory = makeString(bytesOf(_directory).substr(static_cast<size_t>(first + 1)));
    } else if (!sameText(_device, other._device)) {
        _device = ZuString();
    }
}

void ZuPathName::computeDifferTrailing(const ZuPathName& other) {
    _dirty = true;
    if (!sameText(_extension, other._extension)) return;
    _extension = ZuString();
    if (!sameText(_baseName, other._baseName)) return;
    _baseName = ZuString();
    if (!sameText(_directory, other._directory)) {
        const int first = zu_path::commonTrailingDirectories(bytesOf(_directory), bytesOf(other._directory));
        _directory = first < 0 ? ZuString()
                               : makeString(bytesOf(_directory).substr(0, static_cast<size_t>(first) + 1));
    } else {
        _directory = ZuString();
        if (sameText(_device, other._device)) _device = ZuString();
    }
}

void ZuPathName::computeRelativePath(const ZuPathName& reference) {
    _dirty = true;
    if (!sameText(_device, reference._device)) return;
    if (sameText(_directory, reference._directory)) {
        _directory = ZuString();
        return;
    }
    if (isAbsolute(_directory) != isAbsolute(reference._directory)) return;
    ZuPathName base(reference);
    base.clearFileName();
    ZuPathName common(base);
    common.computeSameLeading(*this);
    if (common._device.isEmpty() && common._directory.isEmpty() && !common.hasFileName()) return;
    ZuPathName result;
    for (int up = base.computeLevelNumber() - common.computeLevelNumber(); up > 0; --up)
        result.addDirectoryText("..");
    computeDifferLeading(base);
    result.merge(*this);
    *this = result;
}

void ZuPathName::localize() {
    ZuLocale* locale = ZuLocale::Get(false, nullptr);
    if (!locale) return;
    const ZuLocaleCatDescriptor* messages = locale->getCategory(ZuCategory_Messages);
    if (!messages) return;
    char* standard = messages->getStdLocaleName();
    const char* name = standard ? standard : messages->getSystemLocaleName();
    if (name && *name) {
        ZuPathName sub;
        sub.setDirectoryText("locale/");
        sub.addDirectoryText(name);
        sub._baseName = _baseName;
        sub._extension = _extension;
        merge(sub);
    }
    delete[] standard;
}

ZuString ZuPathName::Localize(const ZuString& text) {
    ZuPathName path(text);
    path.localize();
    return path.getString(SystemPathType);
}

// first and last as getSubDirectory takes them; a directory without components stays.
void ZuPathName::rewriteDirectory(int first, int last) {
    _dirty = true;
    const int count = componentCount(bytesOf(_directory));
    if (count == 0) return;
    if (last == -2) { // all but the last component
        if (count == 1) {
            _directory = isAbsolute(_directory) ? ZuString(SlashCStr) : ZuString();
            return;
        }
        last = count - 2;
    }
    if (first == -2) first = count - 1; // the last component alone
    _directory = getSubDirectory(first, last);
}

void ZuPathName::computeFirstSubDirectory() { rewriteDirectory(0, 0); }
void ZuPathName::computeLastSubDirectory() { rewriteDirectory(-2, -1); }
void ZuPathName::computeAllButFirstSubDirectory() { rewriteDirectory(1, -1); }
void ZuPathName::computeAllButLastSubDirectory() { rewriteDirectory(0, -2); }
