// The registry of module descriptors, module objects and the last error.
#include "module/module_internal.h"

#include <zu/pool.h>
#include <zu/xml.h>

#include <cstring>
#include <dlfcn.h>
#include <new>

_ZuModuleDescriptor* zu_module::Descriptors = nullptr;
ZuModule::Error zu_module::Error = ZuModule::NoError;
unsigned _ZuModuleDescriptor::_Trace = 0;

namespace {

// Libraries of modules deleted by their owners: closing one from inside the module's
// destructor would unmap the code that called it, so they wait for the teardown.
struct PendingClose {
    void* handle;
    PendingClose* next;
};
PendingClose* pendingCloses = nullptr;

// Modules still alive when their descriptors went (at teardown, mostly): their owners may
// delete them later, so they are only remembered here, which keeps them reachable for
// leak checkers instead of reported as lost.
struct Orphan {
    ZuModule* module;
    Orphan* next;
};
Orphan* orphans = nullptr;

char* copyName(const char* name) {
    if (!name || !*name)
        return nullptr;
    const size_t size = std::strlen(name) + 1;
    char* copy = new (std::nothrow) char[size];
    if (copy)
        std::memcpy(copy, name, size);
    return copy;
}

void unlink(_ZuModuleDescriptor* descriptor) {
    for (_ZuModuleDescriptor** link = &zu_module::Descriptors; *link; link = &(*link)->_next) {
        if (*link == descriptor) {
            *link = descriptor->_next;
            break;
        }
    }
    descriptor->_next = nullptr;
}

} // namespace

bool zu_module::IsRegistered(const ZuModuleDescriptor* descriptor) {
    for (const _ZuModuleDescriptor* d = Descriptors; d; d = d->_next)
        if (d == descriptor)
            return true;
    return false;
}

void zu_module::CloseLater(void* handle) {
    if (!handle)
        return;
    PendingClose* pending = new (std::nothrow) PendingClose{handle, pendingCloses};
    if (pending)
        pendingCloses = pending;
    // Without memory for the record the library simply stays mapped.
}

ZuModuleDescriptor::~ZuModuleDescriptor() = default;

_ZuModuleDescriptor::_ZuModuleDescriptor(const char* name, const ZuPathName& libPath,
                                         ZuXmlDocument* document)
    : _name(copyName(name)), _libPath(libPath), _document(document), _module(nullptr),
      _handle(nullptr), _next(zu_module::Descriptors), _loading(false) {
    zu_module::Descriptors = this;
}

_ZuModuleDescriptor::~_ZuModuleDescriptor() {
    unlink(this);
    delete[] _name;
    delete _document;
    if (_module) {
        // The module outlives its descriptor: it must not reach back here, and its code
        // (in the library) may still run, so the library stays mapped.
        if (ZuModuleLoader::getDescriptor(_module) == this)
            ZuModuleLoader::setDescriptor(_module, nullptr);
        if (Orphan* orphan = new (std::nothrow) Orphan{_module, orphans})
            orphans = orphan;
    } else if (_handle) {
        dlclose(_handle);
    }
}

_ZuModuleDescriptor* _ZuModuleDescriptor::find(const char* name) {
    if (!name)
        return nullptr;
    for (_ZuModuleDescriptor* d = zu_module::Descriptors; d; d = d->_next)
        if (d->_name && std::strcmp(d->_name, name) == 0)
            return d;
    return nullptr;
}

ZuModule::ZuModule() : _descriptor(nullptr) {}

ZuModule::~ZuModule() {
    ZuModuleDescriptor* descriptor = _descriptor;
    _descriptor = nullptr;
    // Only a registered descriptor is ours to delete; the teardown detaches modules from
    // the descriptors it deletes, so a module deleted later finds null here.
    if (!descriptor || !zu_module::IsRegistered(descriptor))
        return;
    _ZuModuleDescriptor* own = static_cast<_ZuModuleDescriptor*>(descriptor);
    if (own->_module == this) {
        own->_module = nullptr;
        zu_module::CloseLater(own->_handle);
        own->_handle = nullptr;
    }
    delete own;
}

ZuModuleDescriptor* ZuModule::Find(const char* name) { return _ZuModuleDescriptor::find(name); }

ZuModuleDescriptor** ZuModule::GetDescriptors(unsigned int& count) {
    count = 0;
    for (const _ZuModuleDescriptor* d = zu_module::Descriptors; d; d = d->_next)
        ++count;
    if (count == 0)
        return nullptr;
    void* block = nullptr;
    void** slots = static_cast<void**>(
        ZuPointerPool::_Pool.take(block, count * static_cast<unsigned>(sizeof(void*)), true));
    if (!slots) {
        ZuPointerPool::_Pool.release(block);
        count = 0;
        return nullptr;
    }
    unsigned i = 0;
    for (_ZuModuleDescriptor* d = zu_module::Descriptors; d; d = d->_next)
        slots[i++] = static_cast<ZuModuleDescriptor*>(d);
    ZuPointerPool::_Pool.release(block); // handed back: valid until the pool's next use
    return reinterpret_cast<ZuModuleDescriptor**>(slots);
}

ZuModule::Error ZuModule::GetError() { return zu_module::Error; }

void ZuModule::SetError(Error error) { zu_module::Error = error; }

const char* ZuModule::GetErrorName(Error error) {
    switch (error) {
    case NoError: return "NoError";
    case ModuleNotFound: return "ModuleNotFound";
    case EntryPointNotFound: return "EntryPointNotFound";
    case DependencyNotResolved: return "DependencyNotResolved";
    }
    return "Unknown";
}

void ZuModule::_DeleteModuleDescriptors() {
    while (_ZuModuleDescriptor* descriptor = zu_module::Descriptors)
        delete descriptor; // unlinks itself
    while (PendingClose* pending = pendingCloses) {
        pendingCloses = pending->next;
        dlclose(pending->handle);
        delete pending;
    }
}
