// ZuPathItem, ZuPathList and ZuPathListIterator: three chains of directories searched
// in order, split from and joined into ":"-separated strings.
#include <zu/pathlist.h>

#include "path_text.h"

#include <iostream>
#include <string>

using zu_path::bytesOf;

// ---- items ----

ZuPathItem::ZuPathItem(const ZuPathName& path) : _pathName(path), _next(nullptr) {
    _pathName.forceDirectory();
}

ZuPathItem::ZuPathItem(const ZuPathName& path, ZuPathItem* next) : _pathName(path), _next(next) {
    _pathName.forceDirectory();
}

ZuPathItem::~ZuPathItem() {
    // One item at a time, so that a long chain does not recurse once per item.
    ZuPathItem* item = _next;
    while (item) {
        ZuPathItem* after = item->_next;
        item->_next = nullptr;
        delete item;
        item = after;
    }
}

namespace {

ZuPathItem* lastItem(ZuPathItem* head) {
    while (head && head->getNext()) head = head->getNext();
    return head;
}

// The items of a path string: every piece between ":" is one path, empty pieces too.
ZuPathItem* splitString(const ZuString& pathString) {
    const std::string_view text = bytesOf(pathString);
    ZuPathItem* head = nullptr;
    ZuPathItem* last = nullptr;
    size_t from = 0;
    for (;;) {
        size_t to = text.find(ZuPathName::ColonCStr[0], from);
        if (to == std::string_view::npos) to = text.size();
        const std::string piece(text.substr(from, to - from));
        ZuPathItem* item = new ZuPathItem(ZuPathName(piece.c_str()));
        if (last)
            last->setNext(item);
        else
            head = item;
        last = item;
        if (to == text.size()) return head;
        from = to + 1;
    }
}

ZuPathItem* copyChain(const ZuPathItem* from) {
    ZuPathItem* head = nullptr;
    ZuPathItem* last = nullptr;
    for (; from; from = from->getNext()) {
        ZuPathItem* item = new ZuPathItem(from->getPathName());
        if (last)
            last->setNext(item);
        else
            head = item;
        last = item;
    }
    return head;
}

void SetList(ZuPathItem*& head, ZuPathItem* chain) {
    delete head;
    head = chain;
}

void InsertInList(ZuPathItem*& head, ZuPathItem* chain) {
    if (!chain) return;
    lastItem(chain)->setNext(head);
    head = chain;
}

void AddInList(ZuPathItem*& head, ZuPathItem* chain) {
    if (ZuPathItem* last = lastItem(head))
        last->setNext(chain);
    else
        head = chain;
}

// Destroys the first item equal to path, or every one when all is set.
void RemoveFromList(ZuPathItem*& head, const ZuPathName& path, bool all = false) {
    ZuPathItem* previous = nullptr;
    ZuPathItem* item = head;
    while (item) {
        ZuPathItem* next = item->getNext();
        if (item->getPathName() == path) {
            if (previous)
                previous->setNext(next);
            else
                head = next;
            item->setNext(nullptr);
            delete item;
            if (!all) return;
        } else {
            previous = item;
        }
        item = next;
    }
}

// For each item of the first list in order, its later copies in that list and all
// copies in the lists after it go; then the same for the next lists.
void UniqueInLists(ZuPathItem** lists[3]) {
    for (int l = 0; l < 3; ++l) {
        for (ZuPathItem* item = *lists[l]; item; item = item->getNext()) {
            ZuPathItem* rest = item->getNext();
            RemoveFromList(rest, item->getPathName(), true);
            item->setNext(rest);
            for (int later = l + 1; later < 3; ++later)
                RemoveFromList(*lists[later], item->getPathName(), true);
        }
    }
}

void GetStringFromList(const ZuPathItem* item, std::string& text) {
    for (; item; item = item->getNext()) {
        if (!text.empty()) text += ZuPathName::ColonCStr;
        text += bytesOf(item->getPathName().getString(ZuPathName::SystemPathType));
    }
}

bool FindInList(const ZuPathItem* item, const ZuPathName& file, ZuPathName& result, bool trace) {
    for (; item; item = item->getNext()) {
        ZuPathName candidate(item->getPathName());
        candidate.merge(file);
        if (candidate.doesExist()) {
            if (trace)
                std::cout << "ZuvPathList::findInPath found: "
                          << candidate.getString(ZuPathName::SystemPathType) << ".\n";
            result = candidate;
            return true;
        }
        if (trace)
            std::cout << "ZuvPathList::findInPath file " << file.getString(ZuPathName::SystemPathType)
                      << " not in " << item->getPathName().getString(ZuPathName::SystemPathType)
                      << ".\n";
    }
    return false;
}

ZuString listString(const ZuPathItem* item) {
    std::string text;
    GetStringFromList(item, text);
    return zu_path::makeString(text);
}

} // namespace

// ---- the list ----

ZuPathList::ZuPathList() : _prevList(nullptr), _list(nullptr), _postList(nullptr) {}

ZuPathList::ZuPathList(const ZuString& pathString) : ZuPathList() { setList(pathString); }

ZuPathList::ZuPathList(const ZuPathList& other)
    : _prevList(copyChain(other._prevList)),
      _list(copyChain(other._list)),
      _postList(copyChain(other._postList)) {}

ZuPathList& ZuPathList::operator=(const ZuPathList& other) {
    if (this != &other) {
        SetList(_prevList, copyChain(other._prevList));
        SetList(_list, copyChain(other._list));
        SetList(_postList, copyChain(other._postList));
    }
    return *this;
}

ZuPathList::~ZuPathList() {
    delete _prevList;
    delete _list;
    delete _postList;
}

// The forms of each sub-list.

void ZuPathList::setPrevList(const ZuPathName& path) { SetList(_prevList, new ZuPathItem(path)); }
void ZuPathList::setPrevList(const ZuString& pathString) { SetList(_prevList, splitString(pathString)); }
void ZuPathList::setPrevList(const char* pathString) { setPrevList(ZuString(pathString)); }
void ZuPathList::setPrevList(const ZuPathList& other) { SetList(_prevList, copyChain(other._prevList)); }
void ZuPathList::insertInPrevList(const ZuPathName& path) { InsertInList(_prevList, new ZuPathItem(path)); }
void ZuPathList::insertInPrevList(const ZuString& pathString) { InsertInList(_prevList, splitString(pathString)); }
void ZuPathList::insertInPrevList(const char* pathString) { insertInPrevList(ZuString(pathString)); }
void ZuPathList::insertInPrevList(const ZuPathList& other) { InsertInList(_prevList, copyChain(other._prevList)); }
void ZuPathList::addInPrevList(const ZuPathName& path) { AddInList(_prevList, new ZuPathItem(path)); }
void ZuPathList::addInPrevList(const ZuString& pathString) { AddInList(_prevList, splitString(pathString)); }
void ZuPathList::addInPrevList(const char* pathString) { addInPrevList(ZuString(pathString)); }
void ZuPathList::addInPrevList(const ZuPathList& other) { AddInList(_prevList, copyChain(other._prevList)); }
void ZuPathList::removeFromPrevList(const ZuPathName& path) { RemoveFromList(_prevList, path); }
void ZuPathList::removeFromPrevList(const ZuString& path) { RemoveFromList(_prevList, ZuPathName(path)); }
void ZuPathList::removeFromPrevList(const char* path) { RemoveFromList(_prevList, ZuPathName(path)); }

void ZuPathList::setList(const ZuPathName& path) { SetList(_list, new ZuPathItem(path)); }
void ZuPathList::setList(const ZuString& pathString) { SetList(_list, splitString(pathString)); }
void ZuPathList::setList(const char* pathString) { setList(ZuString(pathString)); }
void ZuPathList::setList(const ZuPathList& other) { SetList(_list, copyChain(other._list)); }
void ZuPathList::insertInList(const ZuPathName& path) { InsertInList(_list, new ZuPathItem(path)); }
void ZuPathList::insertInList(const ZuString& pathString) { InsertInList(_list, splitString(pathString)); }
void ZuPathList::insertInList(const char* pathString) { insertInList(ZuString(pathString)); }
void ZuPathList::insertInList(const ZuPathList& other) { InsertInList(_list, copyChain(other._list)); }
void ZuPathList::addInList(const ZuPathName& path) { AddInList(_list, new ZuPathItem(path)); }
void ZuPathList::addInList(const ZuString& pathString) { AddInList(_list, splitString(pathString)); }
void ZuPathList::addInList(const char* pathString) { addInList(ZuString(pathString)); }
void ZuPathList::addInList(const ZuPathList& other) { AddInList(_list, copyChain(other._list)); }
void ZuPathList::removeFromList(const ZuPathName& path) { RemoveFromList(_list, path); }
void ZuPathList::removeFromList(const ZuString& path) { RemoveFromList(_list, ZuPathName(path)); }
void ZuPathList::removeFromList(const char* path) { RemoveFromList(_list, ZuPathName(path)); }

void ZuPathList::setPostList(const ZuPathName& path) { SetList(_postList, new ZuPathItem(path)); }
void ZuPathList::setPostList(const ZuString& pathString) { SetList(_postList, splitString(pathString)); }
void ZuPathList::setPostList(const char* pathString) { setPostList(ZuString(pathString)); }
void ZuPathList::setPostList(const ZuPathList& other) { SetList(_postList, copyChain(other._postList)); }
void ZuPathList::insertInPostList(const ZuPathName& path) { InsertInList(_postList, new ZuPathItem(path)); }
void ZuPathList::insertInPostList(const ZuString& pathString) { InsertInList(_postList, splitString(pathString)); }
void ZuPathList::insertInPostList(const char* pathString) { insertInPostList(ZuString(pathString)); }
void ZuPathList::insertInPostList(const ZuPathList& other) { InsertInList(_postList, copyChain(other._postList)); }
void ZuPathList::addInPostList(const ZuPathName& path) { AddInList(_postList, new ZuPathItem(path)); }
void ZuPathList::addInPostList(const ZuString& pathString) { AddInList(_postList, splitString(pathString)); }
void ZuPathList::addInPostList(const char* pathString) { addInPostList(ZuString(pathString)); }
void ZuPathList::addInPostList(const ZuPathList& other) { AddInList(_postList, copyChain(other._postList)); }
void ZuPathList::removeFromPostList(const ZuPathName& path) { RemoveFromList(_postList, path); }
void ZuPathList::removeFromPostList(const ZuString& path) { RemoveFromList(_postList, ZuPathName(path)); }
void ZuPathList::removeFromPostList(const char* path) { RemoveFromList(_postList, ZuPathName(path)); }

void ZuPathList::unique() {
    ZuPathItem** lists[3] = {&_prevList, &_list, &_postList};
    UniqueInLists(lists);
}

bool ZuPathList::findInPath(const ZuPathName& file, ZuPathName& result, bool trace) const {
    return FindInList(_prevList, file, result, trace) || FindInList(_list, file, result, trace) ||
           FindInList(_postList, file, result, trace);
}

ZuString ZuPathList::getString() const {
    std::string text;
    GetStringFromList(_prevList, text);
    GetStringFromList(_list, text);
    GetStringFromList(_postList, text);
    return zu_path::makeString(text);
}

ZuString ZuPathList::getPrevListString() const { return listString(_prevList); }
ZuString ZuPathList::getListString() const { return listString(_list); }
ZuString ZuPathList::getPostListString() const { return listString(_postList); }

// ---- the iterator ----

ZuPathListIterator::ZuPathListIterator(const ZuPathList& list)
    : _pathList(&list), _current(list.getPrevList()), _whichList(0) {
    skipEmptyLists();
}

void ZuPathListIterator::skipEmptyLists() {
    while (!_current && _whichList < 2) {
        ++_whichList;
        _current = _whichList == 1 ? _pathList->getList() : _pathList->getPostList();
    }
}

void ZuPathListIterator::operator++(int) {
    if (!_current) return;
    _current = _current->getNext();
    skipEmptyLists();
}

bool ZuPathListIterator::operator!() const { return _current == nullptr; }

ZuPathListIterator::operator const ZuPathName&() const {
    static const ZuPathName* const none = new ZuPathName(); // never destroyed: safe at exit
    return _current ? _current->getPathName() : *none;
}
