// ZuGlobalContext: the value table, the callback lists and the symbol table.
// Every operation tolerates the tables being gone, which they are once the teardown
// has destroyed them (exit-time code may still call in).
#include <zu/context.h>

#include <zu/hash.h>
#include <zu/list.h>

namespace {

// The inner list of object, or null.
Zu_AList* innerList(const Zu_AList* values, void* object) {
    void* inner = nullptr;
    if (!values || !values->f(object, &inner))
        return nullptr;
    return static_cast<Zu_AList*>(inner);
}

void* asValue(void (*callback)()) { return reinterpret_cast<void*>(callback); }

bool holds(const Zu_List& list, void* value) {
    return list.getFirst() && list.getFirst()->find(value);
}

void addOnce(Zu_List* list, void (*callback)()) {
    if (list && callback && !holds(*list, asValue(callback)))
        list->a(asValue(callback));
}

void removeFrom(Zu_List* list, void (*callback)()) {
    if (list && callback)
        list->r(asValue(callback));
}

} // namespace

bool ZuGlobalContext::addValue(void* value, void* tag, void* object) {
    _Error = 0;
    if (!_values)
        return false;
    Zu_AList* inner = innerList(_values, object);
    if (!inner) {
        inner = new Zu_AList;
        if (!inner)
            return false;
        _values->a(object, inner);
    }
    if (inner->f(tag, nullptr)) {
        _Error = 1;
        return false;
    }
    inner->a(tag, value);
    return true;
}

bool ZuGlobalContext::getValue(void*& value, void* tag, void* object) const {
    _Error = 0;
    value = nullptr;
    const Zu_AList* inner = innerList(_values, object);
    if (!inner) {
        _Error = 2;
        return false;
    }
    if (inner->f(tag, &value))
        return true;
    _Error = 3;
    return false;
}

bool ZuGlobalContext::replaceValue(void* value, void* tag, void* object) {
    _Error = 0;
    Zu_AList* inner = innerList(_values, object);
    if (!inner) {
        _Error = 2;
        return false;
    }
    if (!inner->r(tag, value)) {
        _Error = 3;
        return false;
    }
    return true;
}

bool ZuGlobalContext::removeValue(void* value, void* tag, void* object) {
    _Error = 0;
    Zu_AList* inner = innerList(_values, object);
    if (!inner) {
        _Error = 2;
        return false;
    }
    if (!inner->rm(tag, value)) {
        _Error = 4;
        return false;
    }
    return true;
}

int ZuGlobalContext::GetError() { return _Error; }

void ZuGlobalContext::addExitCallback(void (*callback)()) { addOnce(_exitCallbacks, callback); }

void ZuGlobalContext::removeExitCallback(void (*callback)()) {
    removeFrom(_exitCallbacks, callback);
}

void ZuGlobalContext::addFreeCallback(void (*callback)()) { addOnce(_freeCallbacks, callback); }

void ZuGlobalContext::removeFreeCallback(void (*callback)()) {
    removeFrom(_freeCallbacks, callback);
}

void ZuGlobalContext::addSymbol(ZuSymbol* symbol) {
    if (!_symbols || !symbol || !symbol->_name)
        return;
    // The key is the symbol's own name: an entry of an equal name goes first, so that no
    // key points into another symbol's name.
    if (findSymbol(symbol->_name))
        _symbols->remove(symbol->_name);
    _symbols->insert(symbol->_name, symbol);
}

ZuSymbol* ZuGlobalContext::findSymbol(const char* name) const {
    if (!_symbols || !name)
        return nullptr;
    return static_cast<ZuSymbol*>(_symbols->find(const_cast<char*>(name), nullptr, nullptr));
}

void ZuGlobalContext::removeSymbol(ZuSymbol* symbol) {
    // Only the registered symbol leaves: deleting an unregistered namesake must not
    // unregister the one that Get hands out.
    if (symbol && symbol->_name && findSymbol(symbol->_name) == symbol)
        _symbols->remove(symbol->_name);
}
