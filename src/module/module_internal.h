// Shared by the loader's sources: the concrete descriptor, the registry and the trace
// mask.
#ifndef ZU_MODULE_INTERNAL_H
#define ZU_MODULE_INTERNAL_H

#include <zu/module.h>
#include <zu/pathname.h>

class ZuXmlDocument;

// Trace mask bits (ZU_TRACEMODULES).
enum : unsigned { TraceScan = 1, TraceLoad = 2, TraceDisableLoad = 4 };

// The loader's descriptor, registered at creation (at the head of the registry).
class _ZuModuleDescriptor final : public ZuModuleDescriptor {
public:
    // Copies name (null or empty gives null); adopts document (may be null).
    _ZuModuleDescriptor(const char* name, const ZuPathName& libPath, ZuXmlDocument* document);
    // Leaves the registry, frees name and document. Closes the library unless a module
    // is still loaded from it (that module is detached and the library stays mapped).
    ~_ZuModuleDescriptor() override;

    const char* getName() const override { return _name; }
    const ZuPathName& getLibPath() const override { return _libPath; }
    ZuXmlDocument* getDescriptor() const override { return _document; }
    ZuModule* getModule() const override { return _module; }

    // Loads the required modules, the library and the entry point; see ZuModule::Load.
    ZuModule* load(void* arg);

    // The newest registered descriptor named name, or null.
    static _ZuModuleDescriptor* find(const char* name);

    static unsigned _Trace;

    char* _name;
    ZuPathName _libPath;
    ZuXmlDocument* _document;
    ZuModule* _module;
    void* _handle;                // dynamic loader handle, null until opened
    _ZuModuleDescriptor* _next;   // registry link
    bool _loading;                // between the start and the end of load()

private:
    bool loadRequiredModules();
};

// Reaches ZuModule's private descriptor field.
class ZuModuleLoader {
public:
    static void setDescriptor(ZuModule* module, ZuModuleDescriptor* descriptor) {
        module->_descriptor = descriptor;
    }
    static ZuModuleDescriptor* getDescriptor(const ZuModule* module) { return module->_descriptor; }
};

namespace zu_module {

// Head of the registry (newest first).
extern _ZuModuleDescriptor* Descriptors;
// The last load error.
extern ZuModule::Error Error;

// True when descriptor is registered.
bool IsRegistered(const ZuModuleDescriptor* descriptor);
// Keeps handle open until the next _DeleteModuleDescriptors.
void CloseLater(void* handle);
// Runs the once-only initialisation; 0 the first time (after scanning), then 1.
int Init();

} // namespace zu_module

#endif
