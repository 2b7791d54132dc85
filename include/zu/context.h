#ifndef ZU_CONTEXT_H
#define ZU_CONTEXT_H

// ZuGlobalContext: the one process-wide object holding what the library's parts share:
// the symbol table, values attached to (object, tag) pairs, exit and free callbacks,
// the current locale extension, the per-user directory and the module search path.
// Created on first use by GetInstance() and torn down by an atexit handler. Nothing
// here is thread-safe.

#include <zu/export.h>

#include <cstdint>

class ZuLocaleExtension;
class ZuPathList;
class ZuPathName;
class ZuStringHashTable;
class ZuSymbol;
class Zu_AList;
class Zu_List;

class ZU_API ZuGlobalContext {
public:
    // The one context, built on the first call; its teardown is registered with atexit
    // then. A call made after the teardown builds a fresh context (with its own atexit
    // teardown), so the library stays usable from later exit-time code.
    static ZuGlobalContext* GetInstance();

    // Symbol table (31 buckets, keyed by the symbol's own name). ZuSymbol::Get is the
    // public way in. addSymbol replaces the entry of an equal name.
    void addSymbol(ZuSymbol* symbol);
    // The symbol registered under name, or null.
    ZuSymbol* findSymbol(const char* name) const;
    // Removes the entry of the symbol's name, only when it is this very symbol.
    void removeSymbol(ZuSymbol* symbol);

    // Attaches value to (object, tag); false with GetError() 1 when the pair already
    // has a value (which stays).
    bool addValue(void* value, void* tag, void* object);
    // value (null first) receives the value of (object, tag); false with GetError() 2
    // for an object without values, 3 for an unknown tag.
    bool getValue(void*& value, void* tag, void* object) const;
    // Replaces the value of an existing pair; false with GetError() 2 or 3 otherwise.
    bool replaceValue(void* value, void* tag, void* object);
    // Removes the pair only if it holds exactly value; false with GetError() 2 (object
    // unknown) or 4 (no such pair). An object whose last pair goes stays known.
    bool removeValue(void* value, void* tag, void* object);
    // The code of the last value-table operation: 0 success, 1 to 4 as above.
    static int GetError();

    // Callbacks run by the teardown: exit callbacks first, then free callbacks (unless
    // ZU_CALL_FREE_CALLBACKS is "false", "no", "off" or "0", in any case), each in order
    // of registration. Adding a function already registered (or null) does nothing;
    // removing an absent one does nothing.
    void addExitCallback(void (*callback)());
    void removeExitCallback(void (*callback)());
    void addFreeCallback(void (*callback)());
    void removeFreeCallback(void (*callback)());

    // The current locale extension. When none is set yet, first calls ZuSetLocale("C"),
    // which installs one (and so switches the process locale to "C").
    ZuLocaleExtension* getLocale() const;
    // Holds extension (reference count raised), releases the previous one (destroyed when
    // its count reaches 0), then rebuilds the home path and the module path, discarding
    // directories callers added to the module path. Every ZuSetLocale lands here with an
    // extension of the new default locale.
    void setLocale(ZuLocaleExtension* extension);

    // The per-user directory: HOME followed by ".Vantrel/", or ".Vantrel/" without HOME.
    void initializeHomePath();
    // The module path: "." alone in the previous list, an empty main list, and the
    // directories of ZUMODULEPATH (when set, even to "") or else of LD_LIBRARY_PATH in
    // the post list.
    void initializeModulePath();
    // Append one directory to the module path's previous, main or post list.
    void addInModulePathPrevList(const ZuPathName& path);
    void addInModulePathList(const ZuPathName& path);
    void addInModulePathPostList(const ZuPathName& path);
    // The per-user directory and the module path as they stand.
    const ZuPathName& getHomePath() const { return *_homePath; }
    const ZuPathList& getModulePath() const { return *_modulePath; }

    // True: the library is built for little-endian processors only (no probe is made).
    bool isCPULsb() const;

    ZuGlobalContext(const ZuGlobalContext&) = delete;
    ZuGlobalContext& operator=(const ZuGlobalContext&) = delete;

private:
    // Builds the tables, then the home path and the module path.
    ZuGlobalContext();
    // The teardown, in this order: exit callbacks, inner value lists, free callbacks,
    // module descriptors, remaining symbols, the tables, the locale extension, the paths.
    virtual ~ZuGlobalContext();
    // The atexit handler.
    static void Teardown();

    static int32_t _Error;

    ZuLocaleExtension* _locale;
    // Two further pointers kept for layout; no operation reads them. The second is reset
    // during the teardown.
    void* _spare1;
    void* _spare2;
    ZuStringHashTable* _symbols;   // name -> ZuSymbol*
    Zu_AList* _values;             // object -> Zu_AList* (tag -> value)
    Zu_List* _exitCallbacks;       // void (*)()
    Zu_List* _freeCallbacks;       // void (*)()
    ZuPathName* _homePath;
    ZuPathList* _modulePath;
};

#endif
