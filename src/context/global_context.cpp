// ZuGlobalContext: the instance, its construction and teardown, the locale extension
// and the two paths.
#include <zu/context.h>

#include <zu/hash.h>
#include <zu/list.h>
#include <zu/locale.h>
#include <zu/module.h>
#include <zu/pathlist.h>
#include <zu/pathname.h>

#include "context/context_internal.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <strings.h>

int32_t ZuGlobalContext::_Error = 0;

namespace {

// The instance lives in raw storage with its own state, rather than as a function-local
// static, so that a call made after the teardown (from later exit-time code) can tell
// and build a fresh one instead of handing out a destroyed object.
enum class State { Absent, Live, TornDown };

alignas(ZuGlobalContext) unsigned char storage[sizeof(ZuGlobalContext)];
State state = State::Absent;

ZuGlobalContext* inStorage() { return reinterpret_cast<ZuGlobalContext*>(storage); }

// The extension the context holds for the default locale. One per locale, kept in that
// locale's extension list, which holds a reference of its own: switching locales never
// destroys a locale that callers may still point to.
class ContextLocaleExtension : public ZuLocaleExtension {
public:
    static const uint16_t Type = 0x5A43; // "ZC"

    explicit ContextLocaleExtension(ZuLocale* locale) : ZuLocaleExtension(locale) {
        _type = Type;
    }
    const char* getName() const override { return "ZuGlobalContext"; }
};

// Called by ZuSetLocale with each new default locale.
void installDefaultLocale(ZuLocale* locale) {
    if (!locale || state == State::TornDown)
        return;
    ZuLocaleExtension* extension = locale->getExtension(ContextLocaleExtension::Type);
    if (!extension) {
        extension = new (std::nothrow) ContextLocaleExtension(locale);
        if (!extension)
            return;
        locale->addExtension(extension);
        extension->addReference(); // held by the locale's list
    }
    ZuGlobalContext::GetInstance()->setLocale(extension);
}

// Installed when the library is loaded, so that a ZuSetLocale made before the context
// exists is followed too.
const bool hookInstalled = (ZuLocale::SetDefaultLocaleHook(installDefaultLocale), true);

// Deletes what field points to, after clearing the field: code run by that deletion
// finds the context without it.
template <class T> void destroy(T*& field) {
    T* doomed = field;
    field = nullptr;
    delete doomed;
}

// Lowers the reference count and destroys the extension at 0.
void release(ZuLocaleExtension* extension) {
    if (extension && extension->removeReference() == 0)
        delete extension;
}

// Runs every callback of list in order; a callback may add or remove callbacks.
void runCallbacks(const Zu_List* list) {
    if (!list)
        return;
    Zu_SLIterator it(*list);
    while (it._cell) {
        void* value = it.nextElement();
        if (value)
            reinterpret_cast<void (*)()>(value)();
    }
}

// Destroys every inner value list and empties the outer list.
void destroyValues(Zu_AList* values) {
    if (!values)
        return;
    for (Zu_AList::Cell* cell = values->getFirst(); cell; cell = cell->_next)
        delete static_cast<Zu_AList*>(cell->_value);
    values->clear();
}

// ZU_CALL_FREE_CALLBACKS, read once per process: off only for "false", "no", "off", "0".
bool freeCallbacksWanted() {
    static int flag = -1;
    if (flag < 0) {
        const char* value = std::getenv("ZU_CALL_FREE_CALLBACKS");
        flag = !(value && (strcasecmp(value, "false") == 0 || strcasecmp(value, "no") == 0 ||
                           strcasecmp(value, "off") == 0 || std::strcmp(value, "0") == 0));
    }
    return flag != 0;
}

} // namespace

ZuGlobalContext* zu_context::LiveInstance() {
    return state == State::Live ? inStorage() : nullptr;
}

bool zu_context::IsTornDown() { return state == State::TornDown; }

ZuGlobalContext* ZuGlobalContext::GetInstance() {
    if (state != State::Live) {
        // Live before the constructor runs: code it calls that asks for the context gets
        // the one being built rather than a second one.
        state = State::Live;
        new (storage) ZuGlobalContext;
        std::atexit(Teardown);
    }
    return inStorage();
}

void ZuGlobalContext::Teardown() {
    if (state != State::Live)
        return;
    inStorage()->~ZuGlobalContext();
    state = State::TornDown;
}

ZuGlobalContext::ZuGlobalContext()
    : _locale(nullptr), _spare1(nullptr), _spare2(nullptr), _symbols(nullptr),
      _values(nullptr), _exitCallbacks(nullptr), _freeCallbacks(nullptr),
      _homePath(new ZuPathName), _modulePath(new ZuPathList) {
    (void)hookInstalled;
    _symbols = new ZuStringHashTable(31);
    _values = new Zu_AList;
    _exitCallbacks = new Zu_List;
    _freeCallbacks = new Zu_List;
    initializeHomePath();
    initializeModulePath();
}

ZuGlobalContext::~ZuGlobalContext() {
    const bool callFree = freeCallbacksWanted();
    runCallbacks(_exitCallbacks);
    // The outer list is emptied too, so that a free callback asking for a value meets
    // no destroyed inner list.
    destroyValues(_values);
    _spare2 = nullptr;
    if (callFree)
        runCallbacks(_freeCallbacks);
    destroy(_freeCallbacks);

    ZuModule::_DeleteModuleDescriptors();

    // Each symbol leaves its chain before its destructor runs, so that destructor finds
    // nothing to remove.
    if (ZuStringHashTable* table = _symbols) {
        for (uint32_t b = 0; b < table->_size; ++b) {
            ZuBucket& bucket = table->_buckets[b];
            while (ZuEntry* entry = bucket._entries) {
                bucket._entries = entry->_next;
                --bucket._length;
                --table->_count;
                ZuSymbol* symbol = static_cast<ZuSymbol*>(entry->_value);
                delete entry;
                delete symbol;
            }
        }
    }

    destroy(_exitCallbacks);
    destroyValues(_values); // pairs added by the callbacks
    destroy(_values);
    destroy(_symbols);

    ZuLocaleExtension* extension = _locale;
    _locale = nullptr;
    release(extension);

    destroy(_modulePath);
    destroy(_homePath);
}

ZuLocaleExtension* ZuGlobalContext::getLocale() const {
    if (!_locale)
        ZuSetLocale("C"); // installs an extension through setLocale
    return _locale;
}

void ZuGlobalContext::setLocale(ZuLocaleExtension* extension) {
    if (extension)
        extension->addReference();
    ZuLocaleExtension* previous = _locale;
    _locale = extension;
    release(previous);
    initializeHomePath();
    initializeModulePath();
}

void ZuGlobalContext::initializeHomePath() {
    if (!_homePath)
        return;
    // Without HOME the path starts again from empty, so a rebuild never stacks ".Vantrel/".
    const char* home = std::getenv("HOME");
    *_homePath = home ? ZuPathName(home) : ZuPathName();
    _homePath->forceDirectory();
    _homePath->addUnixDirectory(ZuString(".Vantrel/"));
}

void ZuGlobalContext::initializeModulePath() {
    if (!_modulePath)
        return;
    const ZuPathName current(".");
    _modulePath->setList(current);
    _modulePath->setPostList(current);
    _modulePath->setPrevList(current);
    _modulePath->removeFromList(current);
    _modulePath->removeFromPostList(current);
    const char* directories = std::getenv("ZUMODULEPATH");
    if (!directories)
        directories = std::getenv("LD_LIBRARY_PATH");
    if (directories)
        _modulePath->addInPostList(ZuString(directories));
}

void ZuGlobalContext::addInModulePathPrevList(const ZuPathName& path) {
    if (_modulePath)
        _modulePath->addInPrevList(path);
}

void ZuGlobalContext::addInModulePathList(const ZuPathName& path) {
    if (_modulePath)
        _modulePath->addInList(path);
}

void ZuGlobalContext::addInModulePathPostList(const ZuPathName& path) {
    if (_modulePath)
        _modulePath->addInPostList(path);
}

bool ZuGlobalContext::isCPULsb() const {
    static int lsb = -1;
    if (lsb < 0)
        lsb = 1;
    return lsb == 1;
}
