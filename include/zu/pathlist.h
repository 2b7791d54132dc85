#ifndef ZU_PATHLIST_H
#define ZU_PATHLIST_H

// ZuPathList: an ordered search path of directories in which files are looked up by
// relative name, first hit wins. Three sub-lists are searched in a fixed order: the
// prev list, the main list (typically set from a colon-separated variable), the post
// list. Every item is made a directory when it is added. The list owns its items.
// Path strings are split and joined at ":"; empty pieces are kept (the current
// directory). Not thread-safe.

#include <zu/export.h>
#include <zu/pathname.h>
#include <zu/string.h>

// One directory of a list and the link to the next item. The path is forced to be a
// directory (a file name becomes its last component). Destroying an item destroys the
// rest of its chain.
class ZU_API ZuPathItem {
public:
    explicit ZuPathItem(const ZuPathName& path);
    ZuPathItem(const ZuPathName& path, ZuPathItem* next);
    ~ZuPathItem();
    ZuPathItem(const ZuPathItem&) = delete;
    ZuPathItem& operator=(const ZuPathItem&) = delete;

    // The directory of this item.
    const ZuPathName& getPathName() const { return _pathName; }
    // The next item, or null at the end of the chain.
    ZuPathItem* getNext() const { return _next; }
    // Relinks this item; the previous chain is not destroyed.
    void setNext(ZuPathItem* next) { _next = next; }

private:
    ZuPathName _pathName;
    ZuPathItem* _next;
};

class ZU_API ZuPathList {
public:
    // An empty list.
    ZuPathList();
    // The main list split from a ":"-separated string.
    ZuPathList(const ZuString& pathString);
    // Copies of all items of other.
    ZuPathList(const ZuPathList& other);
    ZuPathList& operator=(const ZuPathList& other);
    // Destroys the three chains.
    ~ZuPathList();

    // set: the sub-list becomes one item, the items of a ":"-separated string, or copies
    // of the other list's same sub-list. A text is taken as a path string.
    void setPrevList(const ZuPathName& path);
    void setPrevList(const ZuString& pathString);
    void setPrevList(const char* pathString);
    void setPrevList(const ZuPathList& other);
    void setList(const ZuPathName& path);
    void setList(const ZuString& pathString);
    void setList(const char* pathString);
    void setList(const ZuPathList& other);
    void setPostList(const ZuPathName& path);
    void setPostList(const ZuString& pathString);
    void setPostList(const char* pathString);
    void setPostList(const ZuPathList& other);

    // insert: the new items, in their order, at the front of the sub-list.
    void insertInPrevList(const ZuPathName& path);
    void insertInPrevList(const ZuString& pathString);
    void insertInPrevList(const char* pathString);
    void insertInPrevList(const ZuPathList& other);
    void insertInList(const ZuPathName& path);
    void insertInList(const ZuString& pathString);
    void insertInList(const char* pathString);
    void insertInList(const ZuPathList& other);
    void insertInPostList(const ZuPathName& path);
    void insertInPostList(const ZuString& pathString);
    void insertInPostList(const char* pathString);
    void insertInPostList(const ZuPathList& other);

    // add: the new items, in their order, at the end of the sub-list.
    void addInPrevList(const ZuPathName& path);
    void addInPrevList(const ZuString& pathString);
    void addInPrevList(const char* pathString);
    void addInPrevList(const ZuPathList& other);
    void addInList(const ZuPathName& path);
    void addInList(const ZuString& pathString);
    void addInList(const char* pathString);
    void addInList(const ZuPathList& other);
    void addInPostList(const ZuPathName& path);
    void addInPostList(const ZuString& pathString);
    void addInPostList(const char* pathString);
    void addInPostList(const ZuPathList& other);

    // remove: the first item equal to the path (a text is parsed as one path name).
    // Deliberate: the argument is not made a directory, so "a" does not remove the item
    // made from "a" (which is "a/"), while "a/" does.
    void removeFromPrevList(const ZuPathName& path);
    void removeFromPrevList(const ZuString& path);
    void removeFromPrevList(const char* path);
    void removeFromList(const ZuPathName& path);
    void removeFromList(const ZuString& path);
    void removeFromList(const char* path);
    void removeFromPostList(const ZuPathName& path);
    void removeFromPostList(const ZuString& path);
    void removeFromPostList(const char* path);

    // Removes duplicates across the three sub-lists; the first in search order stays.
    void unique();
    // Searches prev, main and post lists for file merged onto each item (an absolute
    // file replaces the item). On a hit, result is set and true returned; otherwise
    // result is unchanged. With trace, each miss and the hit are written to stdout.
    bool findInPath(const ZuPathName& file, ZuPathName& result, bool trace) const;

    // The items printed (getString(SystemPathType), so each ends with "/") and joined
    // with ":": all three sub-lists in search order, or one of them.
    ZuString getString() const;
    ZuString getPrevListString() const;
    ZuString getListString() const;
    ZuString getPostListString() const;

    // Heads of the three chains (null when empty).
    const ZuPathItem* getPrevList() const { return _prevList; }
    const ZuPathItem* getList() const { return _list; }
    const ZuPathItem* getPostList() const { return _postList; }

private:
    ZuPathItem* _prevList;
    ZuPathItem* _list;
    ZuPathItem* _postList;
};

// Walks the prev, main and post lists of a path list in search order.
class ZU_API ZuPathListIterator {
public:
    // Positioned on the first item in search order.
    ZuPathListIterator(const ZuPathList& list);
    // Moves to the next item, passing on to the head of the next non-empty sub-list.
    void operator++(int);
    // True when the walk is over.
    bool operator!() const;
    // The current item; an empty path once the walk is over.
    operator const ZuPathName&() const;

private:
    void skipEmptyLists();

    const ZuPathList* _pathList;
    const ZuPathItem* _current;
    int _whichList; // 0 prev, 1 main, 2 post
};

#endif
