// Loading modules: by name along the module path, and from a descriptor.
#include "module/module_internal.h"

#include <zu/context.h>
#include <zu/pathlist.h>
#include <zu/xml.h>

#include <cstring>
#include <dlfcn.h>
#include <iostream>
#include <string>

namespace {

const char ShLibExt[] = "so";

const char* textOf(const ZuString& s) {
    const char* value = s.getValue();
    return value ? value : "";
}

// name + "." + the extension, with "lib" in front when withLib is set and name does not
// begin with it. Deliberately always appends: the test for a name already ending in the
// extension compares it with a piece one character too long, which never matches.
std::string Normalize(const std::string& name, int withLib) {
    std::string result = name;
    const std::string dotted = std::string(".") + ShLibExt;
    const bool hasExtension =
        result.size() > dotted.size() &&
        result.compare(result.size() - dotted.size() - 1, dotted.size() + 1, dotted) == 0;
    if (!hasExtension)
        result += dotted;
    if (withLib && result.compare(0, 3, "lib") != 0)
        result.insert(0, "lib");
    return result;
}

// Registers a descriptor for a library found by name and tries to load it.
ZuModule* loadFound(const ZuPathList& modulePath, const ZuPathName& candidate,
                    const char* moduleName, void* arg) {
    ZuPathName found;
    if (!modulePath.findInPath(candidate, found, false))
        return nullptr;
    _ZuModuleDescriptor* descriptor = new _ZuModuleDescriptor(moduleName, found, nullptr);
    return ZuModule::Load(descriptor, arg);
}

typedef ZuModule* (*EntryPoint)(void*);

} // namespace

ZuModule* ZuModule::Load(const char* name, void* arg) {
    zu_module::Init();
    if (!name)
        return nullptr;
    const ZuPathName path(name);
    std::string moduleName = textOf(path.getBaseNameOnly());
    if (std::strcmp(textOf(path.getExtension()), ShLibExt) == 0 &&
        moduleName.compare(0, 3, "lib") == 0)
        moduleName.erase(0, 3);
    if (_ZuModuleDescriptor::_Trace & TraceLoad)
        std::cerr << "ZuModule::Load(" << arg << ") -> name=" << moduleName << std::endl;
    if (ZuModuleDescriptor* descriptor = Find(moduleName.c_str()))
        return Load(descriptor, arg);
    // A name that leaves no module name ("lib.so", "dir/") names nothing to search for.
    if (moduleName.empty()) {
        zu_module::Error = ModuleNotFound;
        return nullptr;
    }

    // The candidates keep the directory part of the argument.
    const std::string fileName = textOf(path.getBaseName());
    const std::string candidates[3] = {moduleName, Normalize(fileName, 0), Normalize(fileName, 1)};
    const ZuPathList& modulePath = ZuGlobalContext::GetInstance()->getModulePath();
    ZuModule* module = nullptr;
    for (const std::string& file : candidates) {
        ZuPathName candidate(path);
        candidate.setBaseName(ZuString(file.c_str()));
        module = loadFound(modulePath, candidate, moduleName.c_str(), arg);
        if (module)
            break;
    }
    return module;
}

ZuModule* ZuModule::Load(ZuModuleDescriptor* descriptor, void* arg) {
    if (!descriptor || !zu_module::IsRegistered(descriptor))
        return nullptr;
    _ZuModuleDescriptor* own = static_cast<_ZuModuleDescriptor*>(descriptor);
    if (own->_module)
        return own->_module;
    ZuModule* module = own->load(arg);
    if (module)
        ZuModuleLoader::setDescriptor(module, own);
    return module;
}

bool _ZuModuleDescriptor::loadRequiredModules() {
    ZuXmlElement* root = _document ? _document->getRootElement() : nullptr;
    if (!root)
        return true;
    for (ZuXmlElement* requires = root->getElement("requires"); requires;
         requires = root->getElement("requires", requires)) {
        const char* required = requires->getAttributeValue("module");
        if (!required) {
            std::cerr << "ZuModule error: 'requires' tag needs "
                      << "a 'module' attribute." << std::endl;
            return false;
        }
        if (_Trace & TraceLoad)
            std::cerr << "    requires module: " << required << std::endl;
        if (!ZuModule::Load(required, nullptr)) {
            std::cerr << "ZuModule error: Module '" << (_name ? _name : "")
                      << "' requires unloadable module '" << required << "'" << std::endl;
            zu_module::Error = ZuModule::DependencyNotResolved;
            return false;
        }
    }
    return true;
}

ZuModule* _ZuModuleDescriptor::load(void* arg) {
    if (_Trace & TraceDisableLoad) {
        std::cerr << "ZuModuleLoader: Loading Disabled" << std::endl;
        zu_module::Error = ZuModule::ModuleNotFound;
        return nullptr;
    }
    zu_module::Error = ZuModule::NoError;
    if (_module)
        return _module;
    // Required again while loading: a dependency cycle, or a module requiring itself.
    // The module that required it reports the failure.
    if (_loading) {
        zu_module::Error = ZuModule::DependencyNotResolved;
        return nullptr;
    }
    const ZuString libText = _libPath.getString(ZuPathName::SystemPathType);
    const bool trace = (_Trace & TraceLoad) != 0;
    if (trace)
        std::cerr << "ZuModuleLoader: Loading " << (_name ? _name : "") << " - lib=" << libText
                  << std::endl;

    _loading = true;
    const bool required = loadRequiredModules();
    _loading = false;
    if (!required)
        return nullptr;

    const std::string entryPoint = std::string("ZuInit") + "Module";
    if (trace)
        std::cerr << "_ZuModuleDesc::load lib=" << libText << ", entryPoint=" << entryPoint
                  << std::endl;

    // The dynamic loader never searches its own path: a bare name is taken in ".".
    std::string file = textOf(libText);
    if (file.empty() || (file[0] != '.' && file[0] != '/'))
        file.insert(0, "./");
    ZuModule* module = nullptr;
    // A library left open by an earlier attempt (its entry point gave no module) is used
    // again rather than opened a second time.
    if (!_handle)
        _handle = dlopen(file.c_str(), RTLD_LAZY);
    if (!_handle) {
        zu_module::Error = ZuModule::ModuleNotFound;
    } else if (EntryPoint init = reinterpret_cast<EntryPoint>(dlsym(_handle, entryPoint.c_str()))) {
        _loading = true; // the entry point may load modules that require this one
        module = init(arg);
        _loading = false;
        if (zu_module::Error == ZuModule::NoError) {
            _module = module;
        } else {
            delete module; // its code is still mapped: the library is closed afterwards
            module = nullptr;
            dlclose(_handle);
            _handle = nullptr;
        }
    } else {
        zu_module::Error = ZuModule::EntryPointNotFound;
        dlclose(_handle);
        _handle = nullptr;
    }
    if (trace) {
        if (module)
            std::cerr << "    => Success!" << std::endl;
        else
            std::cerr << "    => FAILURE. Error:" << ZuModule::GetErrorName(zu_module::Error)
                      << std::endl;
    }
    return module;
}
