#ifndef ZU_PATHNAME_H
#define ZU_PATHNAME_H

// ZuPathName: a portable file name. It holds a device (DOS drive letter or UNC
// prefix), a directory in internal "/" notation (normalised, ending with "/" when not
// empty, absolute exactly when it begins with "/", empty for the current directory),
// a base name and an extension; it prints itself in Unix or DOS notation.
// Ranges are (end, start) pairs, in that order: the characters from start up to but not
// including end; end -1 (or any end past the text) reaches the end, a negative start
// counts as 0. A range is empty when end is 0 or not greater than start.
// The last Unix print is cached; every change marks the cache stale. Not thread-safe,
// not even for printing.

#include <zu/export.h>
#include <zu/string.h>

#include <dirent.h>

#include <string_view>

class ZU_API ZuPathName {
public:
    // Notation of a setter or getter. SystemPathType behaves as UnixPathType here.
    enum ZuPathType { SystemPathType = 0, UnixPathType = 1, DosPathType = 2 };

    // The constant texts shared by the path code.
    static const char* const SlashCStr;           // "/"
    static const char* const CurrentDirCStr;      // "./"
    static const char* const ParentDirCStr;       // "../"
    static const char* const EmptyCStr;           // ""
    static const char* const QuestionMarkCStr;    // "?"
    static const char* const StarCStr;            // "*"
    static const char* const FullStopCStr;        // "."
    static const char* const ColonCStr;           // ":"
    static const char* const DoubleBackSlashCStr; // two backslashes
    static const char* const BackSlashCStr;       // one backslash

    // The empty path (prints as "./").
    ZuPathName();
    // setValue(value, -1, SystemPathType, 0); null gives the empty path.
    ZuPathName(const char* value);
    ZuPathName(const ZuString& value);
    // Copies device, directory, base name and extension; no cache, no directory stream.
    ZuPathName(const ZuPathName& other);
    // Copies device and file name; the directory goes through setUnixDirectory (so it is
    // normalised again). Closes this path's open directory stream. Safe on itself.
    ZuPathName& operator=(const ZuPathName& other);
    // Closes an open directory stream.
    ~ZuPathName();

    // ---- Setters (each marks the cache stale) ----

    // DosPathType parses DOS notation, any other type Unix notation.
    void setValue(const ZuString& value, int end = -1, ZuPathType type = SystemPathType,
                  int start = 0);
    // Clears the device, then setInternalVal.
    void setUnixValue(const ZuString& value, int end = -1, int start = 0);
    // Takes a drive letter ("c:") or a UNC prefix (server and share) off the front as the
    // device, turns "\" into "/" and parses the rest. An unfinished UNC prefix is no
    // device. A device forces the directory to at least "/" ("c:file" is in "/").
    void setDosValue(const ZuString& value, int end = -1, int start = 0);
    // Splits internal notation at its last "/" into directory and file name. An empty
    // range empties all three; "." exactly empties the file name and keeps the directory.
    void setInternalVal(const ZuString& value, int end = -1, int start = 0);
    // The device; a non-empty device makes an empty directory "/".
    void setDevice(const ZuString& value, int end = -1, int start = 0);
    // File name: the extension follows the last "." unless that dot is the first or the
    // last character (".profile" and "file." have no extension; "a.b.c" is a.b + c).
    // The text is taken as given: a "/" in it is not interpreted.
    void setBaseName(const ZuString& value, int end = -1, int start = 0);
    // Replace the directory (the DOS form first turns "\" into "/"); device and file name
    // are untouched. A range equal to the current directory changes nothing, an empty
    // range empties it, anything else is stored normalised.
    void setDirectory(const ZuString& value, int end = -1, ZuPathType type = SystemPathType,
                      int start = 0);
    void setUnixDirectory(const ZuString& value, int end = -1, int start = 0);
    void setDosDirectory(const ZuString& value, int end = -1, int start = 0);
    void setInternalDir(const ZuString& value, int end = -1, int start = 0);
    // Device and directory from one text, file name untouched: the Unix form clears the
    // device; the DOS form takes a device off the front as setDosValue does.
    void setDirName(const ZuString& value, int end = -1, ZuPathType type = SystemPathType,
                    int start = 0);
    void setUnixDirName(const ZuString& value, int end = -1, int start = 0);
    void setDosDirName(const ZuString& value, int end = -1, int start = 0);
    // Appends the range to getUnixDirectory(true) and normalises; a range beginning with
    // "/" replaces the directory; an empty range does nothing.
    void addDirectory(const ZuString& value, int end = -1, ZuPathType type = SystemPathType,
                      int start = 0);
    void addUnixDirectory(const ZuString& value, int end = -1, int start = 0);
    void addDosDirectory(const ZuString& value, int end = -1, int start = 0);

    // ---- Printing and getters ----

    // The printed path. Deliberate: while the cache is valid it is returned whatever the
    // type, so a DOS request right after a Unix print returns the Unix string.
    ZuString getString(ZuPathType type) const;
    // getString(SystemPathType)'s characters; valid until the path is changed or printed.
    operator const char*() const;
    // Directory ("./" when empty and there is no file name), base name, "." extension.
    // The device is ignored. Fills the cache.
    ZuString getUnixValue() const;
    // Device (a letter followed by ":"), directory with "\", file name; the empty path
    // prints as ".\". Writes the cache but leaves it stale.
    ZuString getDosValue() const;
    // getDosValue with every component cut to 8.3: the part before a component's
    // extension dot to 8 characters, the extension to 3. Leaves the cache alone.
    ZuString get83DosValue() const;
    // The printed path; when longer than n, its first (n-3)/2 characters, "..." and its
    // last characters, n in all (never shorter than "...").
    ZuString getTruncatedValue(int n) const;
    // Base name, then "." and the extension when there is one.
    ZuString getBaseName() const;
    // The directory: "./" (withSlash) or "." when empty; without its final "/" when
    // withSlash is false (except "/"). The DOS forms use "\".
    ZuString getDirectory(bool withSlash, ZuPathType type) const;
    ZuString getUnixDirectory(bool withSlash) const;
    ZuString getDosDirectory(bool withSlash) const;
    // The directory; in DOS notation with the device in front ("C:\x").
    ZuString getDirName(bool withSlash, ZuPathType type) const;
    // Directory components first to last (last < 0: to the end), numbered from 0 after
    // the root, each followed by "/"; the run starts with "/" when it takes component 0
    // of an absolute directory. Empty when first is past last or the last component.
    ZuString getSubDirectory(int first, int last) const;
    // Number of "/" in the directory from its second character on ("/" 0, "a/b/" 2).
    int computeLevelNumber() const;
    // Names compare case-sensitively on this platform: always true.
    bool isSensitive() const;

    // ---- Comparisons and structural operations ----

    // Device, directory, base name and extension all equal (case-sensitive).
    bool operator==(const ZuPathName& other) const;
    bool operator!=(const ZuPathName& other) const { return !(*this == other); }
    // Directories only (no file name on either side; devices equal when both are set).
    // Deliberately a substring test: "/x/a/b/" counts as lying under "/a/".
    bool isSubDirectory(const ZuPathName& other) const;
    // This path against a pattern path: device, directory (one string: "*" spans levels)
    // and file name, with "*", "?" and one "(a|b)" group. Deliberate: "*" takes at least
    // one character, a "?" at the end of a name also matches nothing, and a "*" after a
    // literal prefix of k characters retries only from k+1 characters into the rest.
    // A group is tried through the extension, so "(a|b)" alone matches only itself.
    bool match(const ZuPathName& pattern) const;
    // An empty or relative directory gets "/" in front (empty becomes "/").
    void forceAbsolute();
    // An absolute directory loses its first "/".
    void forceRelative();
    // A file name becomes the last directory component; a directory is left alone.
    void forceDirectory();
    // An absolute other replaces this path; otherwise its directory is appended to this
    // one and its file name (even an empty one) replaces this one's.
    void merge(const ZuPathName& other);
    // Puts other's directory in front of a relative path; an absolute one is unchanged.
    void prepend(const ZuPathName& other);
    // Rewrites this path relative to the reference's directory, with ".." steps. Nothing
    // changes across devices, between absolute and relative, or without a common start.
    void computeRelativePath(const ZuPathName& reference);
    // Keep (Same) or drop (Differ) what both paths share at the front (Leading) or at the
    // back (Trailing). Deliberate: the first component of two relative directories counts
    // as shared whenever both have the same length.
    // Trailing compares whole components back from the final "/" of each directory, so
    // "/x/a/b/" and "z/a/b/" share "a/b/"; "a/b/" and "z/a/b/" share all of "a/b/".
    void computeSameLeading(const ZuPathName& other);
    void computeDifferLeading(const ZuPathName& other);
    void computeSameTrailing(const ZuPathName& other);
    void computeDifferTrailing(const ZuPathName& other);
    // Inserts "locale/NAME/" in front of the file name, NAME being the default locale's
    // messages name; nothing changes without a default locale.
    void localize();
    // The text parsed, localised and printed.
    static ZuString Localize(const ZuString& text);
    // Reduce the directory to its first component, its last, all but the first, all but
    // the last (numbered as getSubDirectory: component 0 keeps the root "/"). A directory
    // without components ("/" or empty) is left as it is.
    void computeFirstSubDirectory();
    void computeLastSubDirectory();
    void computeAllButFirstSubDirectory();
    void computeAllButLastSubDirectory();

    // ---- File system (the file form is getString(SystemPathType), the directory form
    // getDirName(false, SystemPathType); a path has a file name when its base name or
    // extension is set). Failures are false results; errno is left as the system set it.

    // stat of the file form (or of text) succeeds.
    bool doesExist() const;
    static bool doesExist(const ZuString& text);
    // access(R_OK) on the file form, or on the directory form without a file name.
    bool isReadable() const;
    // A missing path: can it be created (W_OK on the directory form); else W_OK on the
    // file form, or the directory form without a file name.
    bool isWritable() const;
    // access(X_OK) on the file form.
    bool isExecutable() const;
    // The path made a directory exists and is a directory (links are followed).
    bool isSystemDirectory() const;
    // stat of the file form; on success stores the time in whole seconds or the mode.
    bool queryModificationTime(long& time) const;
    bool queryAccessTime(long& time) const;
    bool queryChangedStatusTime(long& time) const;
    bool queryMode(short& mode) const;
    // Both modification times read and other's is not later: a path is newer than itself.
    bool isNewer(const ZuPathName& other) const;
    // The path exists and chmod of the file form succeeds.
    bool changeMode(short mode) const;
    // chdir to the directory form.
    bool changeCurrentDirectory() const;
    // Sets the directory to the process's current directory (absolute, ending "/"); the
    // file name is kept. Uses a process-wide buffer. notUsed is not consulted.
    void queryCurrentDirectory(ZuString* notUsed);
    // getcwd into buffer (size - 1 bytes), then "/" appended when missing and there is
    // room. A failure leaves buffer empty. notUsed is not consulted.
    static void QueryCurrentDirectory(char* buffer, int size, ZuString* notUsed);
    // Closes an open stream, then opens the directory form (the file name is ignored).
    bool openDir();
    // The next entry: a file as a bare file name, a directory as a relative directory
    // "name/". Deliberate: "." comes back as the empty path and ".." as "../".
    // False at the end or without an open stream.
    bool readDir(ZuPathName& entry);
    void rewindDir();
    void closeDir();
    // True when the directory holds nothing but "." and ".."; false when it cannot be
    // opened. Closes the stream afterwards.
    bool isEmptyDirectory();
    // Creates the file (empty) or the directory; mode -1 keeps the system's mode.
    // True when it already exists. A file first gets its directory created.
    // Deliberate: a directory is only created with recursive true, even when its parent
    // exists; missing parents are created first.
    bool create(short mode, bool recursive);
    // Removes the file, or the directory (an empty one, or with recursive true the whole
    // tree). A symbolic link is removed as a link and never followed, whether it names
    // the path itself or an entry met during the scan (a dangling one there too).
    bool remove(bool recursive);

    // ---- Plain fields ----

    // The device as stored (letter without ":", or UNC prefix); empty in Unix notation.
    const ZuString& getDevice() const { return _device; }
    // The directory field as stored: internal notation, empty for the current directory.
    const ZuString& getInternalDirectory() const { return _directory; }
    // The base name alone, without the extension.
    const ZuString& getBaseNameOnly() const { return _baseName; }
    // The extension without its dot.
    const ZuString& getExtension() const { return _extension; }

private:
    void setDirectoryText(std::string_view text);
    void setFileNameText(std::string_view text);
    void setInternalText(std::string_view text);
    void setDosText(std::string_view text);
    void setDosDirNameText(std::string_view text);
    void addDirectoryText(std::string_view text);
    void clearFileName();
    void forceDeviceDirectory();
    bool hasFileName() const { return !_baseName.isEmpty() || !_extension.isEmpty(); }
    void rewriteDirectory(int first, int last);
    bool removeEntries();

    ZuString _device;
    ZuString _directory;
    ZuString _baseName;
    ZuString _extension;
    mutable ZuString _cachedValue;
    mutable bool _dirty;
    DIR* _dirStream;
};

#endif
