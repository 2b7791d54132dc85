#ifndef ZU_MODULE_H
#define ZU_MODULE_H

// Optional modules loaded by name at run time. A module is a shared library ("so")
// exporting extern "C" ZuModule* ZuInitModule(void* arg); it may be described by a
// descriptor file "<name>.imd" (XML: <module version="5.7"> with <requires module=".."/>
// children, or the older "// Marquesolt" text format) found along the global context's
// module path. The loader keeps a process-wide registry of descriptors, loads required
// modules first, and reports failures through a null result, GetError() and a line on
// the standard error stream. ZU_TRACEMODULES ("true"/"yes", "scan", "load",
// "disableload") traces scanning and loading, or disables loading. Not thread-safe.

#include <zu/export.h>

class ZuModule;
class ZuPathName;
class ZuXmlDocument;

// What the loader knows of one module: its name, library, descriptor document and,
// once loaded, its module object.
class ZU_API ZuModuleDescriptor {
public:
    ZuModuleDescriptor() = default;
    ZuModuleDescriptor(const ZuModuleDescriptor&) = delete;
    ZuModuleDescriptor& operator=(const ZuModuleDescriptor&) = delete;

    // The module name (the descriptor file's base name), or null for an empty one.
    virtual const char* getName() const = 0;
    // The path of the shared library.
    virtual const ZuPathName& getLibPath() const = 0;
    // The parsed descriptor document, or null when the module was found without one.
    virtual ZuXmlDocument* getDescriptor() const = 0;
    // The loaded module, or null while not loaded.
    virtual ZuModule* getModule() const = 0;
    // A registered descriptor also leaves the registry; the module, if any, is not
    // deleted, and its library then stays mapped for the rest of the process.
    virtual ~ZuModuleDescriptor();
};

// Base of the objects that modules' entry points return.
class ZU_API ZuModule {
public:
    // Load failures; any other value (the type holds any int) is reported as "Unknown".
    enum Error : int { NoError = 0, ModuleNotFound = 1, EntryPointNotFound = 2, DependencyNotResolved = 3 };

    ZuModule();
    // Deletes the descriptor, which leaves the registry. The library is closed at the
    // latest when the global context is torn down, never from inside this destructor
    // (whose caller's code lives in that library).
    virtual ~ZuModule();
    ZuModule(const ZuModule&) = delete;
    ZuModule& operator=(const ZuModule&) = delete;

    // Finds, loads and initialises the module named name ("foo", "libfoo.so" and
    // "dir/foo" name module foo); null on failure (see GetError) or for a null name.
    // The first call scans the module path. Without a registered descriptor, tries the
    // module name, then name + ".so", then "lib" + name + ".so" along the module path
    // (the extension is always appended, deliberately: "foo.so" tries "foo.so.so").
    static ZuModule* Load(const char* name, void* arg);
    // The descriptor's module when loaded; otherwise loads its required modules (depth
    // first, with a null argument), opens its library and calls its entry point with
    // arg. A module required while it is being loaded fails with DependencyNotResolved.
    // Null for a null or unregistered descriptor.
    static ZuModule* Load(ZuModuleDescriptor* descriptor, void* arg);
    // The newest registered descriptor named exactly name, or null.
    static ZuModuleDescriptor* Find(const char* name);
    // The registered descriptors, newest first, in a block of ZuPointerPool::_Pool that
    // is valid until that pool's next use; count receives their number. Null and 0 when
    // the registry is empty.
    static ZuModuleDescriptor** GetDescriptors(unsigned int& count);
    // Scans the module path for descriptor files "<name>.imd" beside "<name>.so" or
    // "lib<name>.so"; registers the first one found for each name not yet registered.
    static void ReScan();
    // The last load error. An entry point refuses its load by setting a non-zero error.
    static Error GetError();
    static void SetError(Error error);
    // "NoError", "ModuleNotFound", "EntryPointNotFound", "DependencyNotResolved" or
    // "Unknown".
    static const char* GetErrorName(Error error);
    // Deletes every registered descriptor (the global context's teardown calls it).
    // Loaded modules are detached and their libraries stay mapped; the libraries of the
    // others, and of modules deleted earlier, are closed.
    static void _DeleteModuleDescriptors();

    // The descriptor this module was loaded from, or null.
    ZuModuleDescriptor* getDescriptor() const { return _descriptor; }

private:
    friend class ZuModuleLoader;

    ZuModuleDescriptor* _descriptor;
};

#endif
