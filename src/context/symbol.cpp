// ZuSymbol: interned names registered in the global context.
#include <zu/hash.h>

#include <zu/context.h>

#include "context/context_internal.h"

#include <cstring>
#include <new>

ZuSymbol* ZuSymbol::Get(const char* name, bool create) {
    if (!name)
        return nullptr;
    ZuGlobalContext* context = ZuGlobalContext::GetInstance();
    ZuSymbol* symbol = context->findSymbol(name);
    if (!symbol && create) {
        symbol = new (std::nothrow) ZuSymbol(name);
        if (symbol)
            context->addSymbol(symbol);
    }
    return symbol;
}

ZuSymbol::ZuSymbol(const char* name) : _name(nullptr), _data(nullptr) {
    if (name) {
        const size_t size = std::strlen(name) + 1;
        _name = new (std::nothrow) char[size];
        if (_name)
            std::memcpy(_name, name, size);
    }
}

ZuSymbol::~ZuSymbol() {
    // Never brings a context to life: after the teardown there is nothing to leave.
    if (ZuGlobalContext* context = zu_context::LiveInstance())
        context->removeSymbol(this);
    delete[] _name;
}
