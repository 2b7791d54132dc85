// ZuPathName: questions to the file system, creation and removal, directory scans and
// the current directory. Results are plain booleans; errno is left as the system set it.
#include <zu/pathname.h>

#include "path_text.h"

#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

using zu_path::bytesOf;

namespace {

char Buffer[4096]; // the current directory, for queryCurrentDirectory

bool QueryStat(const ZuString& text, struct stat& info) {
    return ::stat(text.getValue(), &info) == 0;
}

// True when text names a symbolic link itself (lstat; the trailing "/" of a directory
// form would make the system follow the link, so it is never part of text).
bool isLink(const ZuString& text) {
    struct stat info;
    return ::lstat(text.getValue(), &info) == 0 && S_ISLNK(info.st_mode);
}

} // namespace

bool ZuPathName::doesExist() const {
    struct stat info;
    return QueryStat(getString(SystemPathType), info);
}

bool ZuPathName::doesExist(const ZuString& text) {
    struct stat info;
    return QueryStat(text, info);
}

bool ZuPathName::isReadable() const {
    const ZuString form = hasFileName() ? getString(SystemPathType) : getDirName(false, SystemPathType);
    return ::access(form.getValue(), R_OK) == 0;
}

bool ZuPathName::isWritable() const {
    if (!doesExist()) return ::access(getDirName(false, SystemPathType).getValue(), W_OK) == 0;
    const ZuString form = hasFileName() ? getString(SystemPathType) : getDirName(false, SystemPathType);
    return ::access(form.getValue(), W_OK) == 0;
}

bool ZuPathName::isExecutable() const {
    return ::access(getString(SystemPathType).getValue(), X_OK) == 0;
}

bool ZuPathName::isSystemDirectory() const {
    ZuPathName directory(*this);
    directory.forceDirectory();
    struct stat info;
    return QueryStat(directory.getString(SystemPathType), info) && S_ISDIR(info.st_mode);
}

bool ZuPathName::queryModificationTime(long& time) const {
    struct stat info;
    if (!QueryStat(getString(SystemPathType), info)) return false;
    time = static_cast<long>(info.st_mtime);
    return true;
}

bool ZuPathName::queryAccessTime(long& time) const {
    struct stat info;
    if (!QueryStat(getString(SystemPathType), info)) return false;
    time = static_cast<long>(info.st_atime);
    return true;
}

bool ZuPathName::queryChangedStatusTime(long& time) const {
    struct stat info;
    if (!QueryStat(getString(SystemPathType), info)) return false;
    time = static_cast<long>(info.st_ctime);
    return true;
}

bool ZuPathName::queryMode(short& mode) const {
    struct stat info;
    if (!QueryStat(getString(SystemPathType), info)) return false;
    mode = static_cast<short>(info.st_mode);
    return true;
}

bool ZuPathName::isNewer(const ZuPathName& other) const {
    long mine = 0, theirs = 0;
    return queryModificationTime(mine) && other.queryModificationTime(theirs) && theirs <= mine;
}

bool ZuPathName::changeMode(short mode) const {
    return doesExist() &&
           ::chmod(getString(SystemPathType).getValue(), static_cast<mode_t>(static_cast<unsigned short>(mode))) == 0;
}

bool ZuPathName::changeCurrentDirectory() const {
    return ::chdir(getDirName(false, SystemPathType).getValue()) == 0;
}

void ZuPathName::queryCurrentDirectory(ZuString* notUsed) {
    QueryCurrentDirectory(Buffer, sizeof Buffer, notUsed);
    setDirectoryText(Buffer);
}

void ZuPathName::QueryCurrentDirectory(char* buffer, int size, ZuString*) {
    if (!buffer || size <= 0) return;
    buffer[0] = '\0';
    if (size < 2 || !::getcwd(buffer, static_cast<size_t>(size - 1))) {
        buffer[0] = '\0';
        return;
    }
    const size_t length = std::strlen(buffer);
    if ((length == 0 || buffer[length - 1] != '/') && length < static_cast<size_t>(size - 1)) {
        buffer[length] = '/';
        buffer[length + 1] = '\0';
    }
}

bool ZuPathName::openDir() {
    closeDir();
    _dirStream = ::opendir(getDirName(false, SystemPathType).getValue());
    return _dirStream != nullptr;
}

bool ZuPathName::readDir(ZuPathName& entry) {
    if (!_dirStream) return false;
    const struct dirent* item = ::readdir(_dirStream);
    if (!item) return false;
    ZuPathName candidate(*this);
    candidate.setFileNameText(item->d_name);
    ZuPathName result;
    if (candidate.isSystemDirectory())
        result.setDirectoryText(item->d_name); // "." normalises to nothing, ".." to "../"
    else
        result.setFileNameText(item->d_name);
    entry = result;
    return true;
}

void ZuPathName::rewindDir() {
    if (_dirStream) ::rewinddir(_dirStream);
}

void ZuPathName::closeDir() {
    if (_dirStream) ::closedir(_dirStream);
    _dirStream = nullptr;
}

namespace {

// The entries a scan skips: "." (the empty path), ".." and the root.
bool isSelfOrParent(const ZuPathName& entry) {
    if (!entry.getBaseNameOnly().isEmpty() || !entry.getExtension().isEmpty()) return false;
    const std::string_view dir = bytesOf(entry.getInternalDirectory());
    return dir.empty() || dir == "../" || dir == "/";
}

} // namespace

bool ZuPathName::isEmptyDirectory() {
    if (!openDir()) return false;
    bool empty = true;
    ZuPathName entry;
    while (readDir(entry)) {
        if (!isSelfOrParent(entry)) {
            empty = false;
            break;
        }
    }
    closeDir();
    return empty;
}

bool ZuPathName::create(short mode, bool recursive) {
    if (doesExist()) return true;
    if (hasFileName()) {
        ZuPathName directory(*this);
        directory.clearFileName();
        if (!directory.create(mode, recursive)) return false;
        const ZuString file = getString(SystemPathType);
        std::FILE* f = std::fopen(file.getValue(), "w");
        if (!f) return false;
        const bool closed = std::fclose(f) == 0;
        if (mode != -1) ::chmod(file.getValue(), static_cast<mode_t>(static_cast<unsigned short>(mode)));
        return closed;
    }
    if (!recursive) return false; // deliberate: a directory needs recursive true
    if (computeLevelNumber() > 1) {
        ZuPathName parent(*this);
        parent.computeAllButLastSubDirectory();
        if (!parent.create(mode, true)) return false;
    }
    const ZuString form = getDirName(false, SystemPathType);
    if (::mkdir(form.getValue(), 0777) != 0) return false;
    if (mode != -1) ::chmod(form.getValue(), static_cast<mode_t>(static_cast<unsigned short>(mode)));
    return true;
}

bool ZuPathName::remove(bool recursive) {
    // A link goes as a link: its target, inside the tree or not, is never entered.
    if (!doesExist()) return false;
    const ZuString form = hasFileName() ? getString(SystemPathType) : getDirName(false, SystemPathType);
    if (isLink(form)) return ::unlink(form.getValue()) == 0;
    if (hasFileName()) return std::remove(form.getValue()) == 0;
    struct stat info;
    if (!QueryStat(form, info) || !S_ISDIR(info.st_mode)) return false;
    if (isEmptyDirectory()) return ::rmdir(form.getValue()) == 0;
    if (!recursive) return false;
    const bool entries = removeEntries();
    return ::rmdir(form.getValue()) == 0 && entries;
}

bool ZuPathName::removeEntries() {
    if (!openDir()) return false;
    bool ok = true;
    ZuPathName entry;
    while (readDir(entry)) {
        if (isSelfOrParent(entry)) continue;
        ZuPathName child(*this);
        child.merge(entry);
        // A link inside the tree goes as a link, even a dangling one (which does not
        // exist for remove itself).
        const ZuString form = child.hasFileName() ? child.getString(SystemPathType)
                                                  : child.getDirName(false, SystemPathType);
        if (isLink(form) ? ::unlink(form.getValue()) != 0 : !child.remove(true)) ok = false;
    }
    closeDir();
    return ok;
}
