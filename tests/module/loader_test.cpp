// The module loader end to end: real modules and descriptor files in temporary
// directories, each scenario in its own child process with its own ZUMODULEPATH and
// ZU_TRACEMODULES.
#include <zu/module.h>
#include <zu/pathname.h>
#include <zu/xml.h>

#include <gtest/gtest.h>

#include "child_run.h"

#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

// Copies the test module of that kind (plain, refuse, noentry) into dir as file.
void copyModule(const TempDir& dir, const char* kind, const std::string& file) {
    std::filesystem::copy_file(std::string(ZU_TEST_MODULE_DIR) + "/" + kind + ".so",
                               dir.file(file));
}

std::string descriptor(const std::string& version, const std::string& body = "") {
    return "<?xml version=\"1.0\"?>\n<module version=\"" + version + "\">\n" + body +
           "</module>\n";
}

std::string requires(const std::string& m) { return "  <requires module=\"" + m + "\"/>\n"; }

// A module and its descriptor (version 5.7, with the given required modules).
void addModule(const TempDir& dir, const std::string& name, const std::string& body = "",
               const char* kind = "plain") {
    copyModule(dir, kind, name + ".so");
    dir.write(name + ".imd", descriptor("5.7", body));
}

// Deletes the module of name, if loaded, so that the child ends without leaks.
void unload(const char* name) {
    if (ZuModuleDescriptor* d = ZuModule::Find(name))
        delete d->getModule();
}

std::string libPathOf(const char* name) {
    ZuModuleDescriptor* d = ZuModule::Find(name);
    return d ? d->getLibPath().getString(ZuPathName::UnixPathType).getValue() : "(none)";
}

bool has(const std::string& text, const std::string& s) { return text.find(s) != text.npos; }

// The pieces stand in output in this order (a piece may start where the previous one did).
void expectInOrder(const std::string& output, const std::vector<std::string>& pieces) {
    size_t at = 0;
    for (const std::string& piece : pieces) {
        if ((at = output.find(piece, at)) == std::string::npos) {
            ADD_FAILURE() << "missing, or out of order: " << piece << "\n" << output;
            return;
        }
    }
}

// Every piece stands somewhere in output.
void expectAll(const std::string& output, const std::vector<std::string>& pieces) {
    for (const std::string& piece : pieces)
        EXPECT_TRUE(has(output, piece)) << piece << "\n" << output;
}

// Runs body in a child with that ZUMODULEPATH and ZU_TRACEMODULES (null: unset), expects
// it to succeed and returns what it wrote.
std::string runIn(const std::string& path, const char* trace, const std::function<int()>& body) {
    const ChildResult r =
        runChild({{"ZUMODULEPATH", path.c_str()}, {"ZU_TRACEMODULES", trace}}, body);
    EXPECT_EQ(r.exitCode, 0) << r.output;
    return r.output;
}

ZuModule* keptModule = nullptr;

} // namespace

TEST(ModuleLoad, LoadsByNameThroughItsDescriptorOrLibraryFileWithTrace) {
    TempDir dir;
    addModule(dir, "plain");
    copyModule(dir, "plain", "libsolo.so");
    const std::string out = runIn(dir.path(), "Yes", [&] {
        unsigned count = 5;
        CHILD_CHECK(ZuModule::GetDescriptors(count) == nullptr && count == 0);
        int calls = 0;
        ZuModule* m = ZuModule::Load("plain", &calls);
        CHILD_CHECK(m && calls == 1 && ZuModule::GetError() == ZuModule::NoError);
        // The same module again, also by its library's file name.
        CHILD_CHECK(ZuModule::Load("plain", &calls) == m);
        CHILD_CHECK(ZuModule::Load("libplain.so", &calls) == m && calls == 1);
        ZuModuleDescriptor* d = ZuModule::Find("plain");
        CHILD_CHECK(d && m->getDescriptor() == d && d->getModule() == m);
        CHILD_CHECK(d->getDescriptor() && d->getDescriptor()->getRootElement());
        CHILD_CHECK(!ZuModule::Find("plai"));
        CHILD_CHECK(!ZuModule::Load(static_cast<const char*>(nullptr), &calls));
        ZuModuleDescriptor** all = ZuModule::GetDescriptors(count);
        CHILD_CHECK(count == 1 && all && all[0] == d);
        // Without a descriptor, by the library file found along the path.
        ZuModule* solo = ZuModule::Load("solo", nullptr);
        CHILD_CHECK(solo && ZuModule::Find("solo") && !ZuModule::Find("solo")->getDescriptor());
        CHILD_CHECK(libPathOf("solo") == dir.file("libsolo.so"));
        CHILD_CHECK(ZuModule::Load("libsolo.so", nullptr) == solo);
        CHILD_CHECK(!ZuModule::Load("nothing", nullptr));
        delete solo;
        delete m;
        return 0;
    });
    const std::string& p = dir.path();
    expectInOrder(out, {"ZuModuleLoader: Scanning " + p + "/plain.imd - lib=" + p + "/plain.so\n",
                        ") -> name=plain\n",
                        "ZuModuleLoader: Loading plain - lib=" + p + "/plain.so\n",
                        "_ZuModuleDesc::load lib=" + p + "/plain.so, entryPoint=ZuInitModule\n",
                        "init plain.so\n    => Success!\n", "delete module\n"});
    EXPECT_TRUE(has(out, "ZuModule::Load(0x")) << out;
}

TEST(ModuleLoad, RequiredLoadFirstDepthFirstFailuresStayRegisteredUnloaded) {
    TempDir dir;
    addModule(dir, "top", requires("mid") + requires("side"));
    addModule(dir, "mid", requires("plain"));
    addModule(dir, "side");
    addModule(dir, "plain");
    addModule(dir, "refuse", "", "refuse");
    addModule(dir, "noentry", "", "noentry");
    dir.write("broken.so", "not a library");
    dir.write("broken.imd", descriptor("5.7"));
    addModule(dir, "needsghost", requires("ghost"));
    addModule(dir, "badreq", "  <requires name=\"plain\"/>\n");
    addModule(dir, "a", requires("b"));
    addModule(dir, "b", requires("a"));
    addModule(dir, "self", requires("self"));
    const std::string out = runIn(dir.path(), "load", [] {
        int calls = 0;
        ZuModule* top = ZuModule::Load("top", &calls);
        CHILD_CHECK(top && calls == 1); // required modules get a null argument
        CHILD_CHECK(ZuModule::Find("plain")->getModule());
        for (const char* name : {"plain", "mid", "side", "top"})
            unload(name);
        // The entry point refuses with a value of its own: the module it returned goes, and
        // the next load tries again. Dependency cycles (a, self) fail instead of recursing.
        const std::pair<const char*, int> failures[] = {
            {"refuse", 7}, {"refuse", 7},
            {"noentry", ZuModule::EntryPointNotFound}, {"broken", ZuModule::ModuleNotFound},
            {"needsghost", ZuModule::DependencyNotResolved},
            {"a", ZuModule::DependencyNotResolved}, {"self", ZuModule::DependencyNotResolved}};
        for (const auto& [name, error] : failures)
            CHILD_CHECK(!ZuModule::Load(name, nullptr) && ZuModule::GetError() == error);
        CHILD_CHECK(ZuModule::Find("refuse") && !ZuModule::Find("refuse")->getModule());
        ZuModule::SetError(ZuModule::EntryPointNotFound);
        CHILD_CHECK(!ZuModule::Load("badreq", nullptr));
        CHILD_CHECK(ZuModule::GetError() == ZuModule::NoError); // left as it was
        CHILD_CHECK(std::string(ZuModule::GetErrorName(ZuModule::Error(9))) == "Unknown");
        return 0;
    });
    expectInOrder(out, {"    requires module: mid\n", "    requires module: plain\n",
                        "init plain.so\n", "init mid.so\n", "    requires module: side\n",
                        "init side.so\n", "init top.so\n"});
    EXPECT_FALSE(has(out, "Scanning")) << "scan tracing is off with \"load\"";
    expectAll(out, {"init refuse.so\ndelete module\n    => FAILURE. Error:Unknown\n",
                    "    => FAILURE. Error:EntryPointNotFound\n",
                    "    => FAILURE. Error:ModuleNotFound\n",
                    "ZuModule error: Module 'needsghost' requires unloadable module 'ghost'\n",
                    "ZuModule error: 'requires' tag needs a 'module' attribute.\n",
                    "ZuModule error: Module 'b' requires unloadable module 'a'\n",
                    "ZuModule error: Module 'a' requires unloadable module 'b'\n",
                    "ZuModule error: Module 'self' requires unloadable module 'self'\n"});
    EXPECT_NE(out.find("init refuse.so"), out.rfind("init refuse.so"));
    for (const char* never : {"init a.so", "init b.so", "init self.so"})
        EXPECT_FALSE(has(out, never)) << out;
}

TEST(ModuleScan, VersionAndRootAreCheckedOldFormatConverted) {
    TempDir dir;
    const std::pair<const char*, std::string> files[] = {
        {"v570", descriptor("5.70")}, {"v58", descriptor("5.8")}, {"v5", descriptor("5")},
        {"none", "<module>\n</module>\n"}, {"thing", "<thing version=\"5.7\"/>\n"},
        {"broken", "<module version=\"5.7\"><oops></module>"}, {"good", descriptor("5.7")},
        {"old", "// Marquesolt descriptor, ignored\nShape {\n  Circle Square\n}\nAnimal { Cat }\n"},
        {"empty", "// Marquesolt\n"}};
    for (const auto& [name, text] : files) {
        copyModule(dir, "plain", std::string(name) + ".so");
        dir.write(std::string(name) + ".imd", text);
    }
    const std::string out = runIn(dir.path(), nullptr, [] {
        ZuModule::ReScan();
        CHILD_CHECK(ZuModule::Find("v570") && ZuModule::Find("good"));
        for (const char* refused : {"v58", "v5", "none", "thing", "broken", "empty"})
            CHILD_CHECK(!ZuModule::Find(refused));
        unsigned count = 0;
        CHILD_CHECK(ZuModule::GetDescriptors(count) && count == 3);
        // The old format becomes a descriptor of version 5.0 with one class per name.
        ZuModuleDescriptor* d = ZuModule::Find("old");
        CHILD_CHECK(d && d->getDescriptor());
        ZuXmlElement* root = d->getDescriptor()->getRootElement();
        CHILD_CHECK(root && std::string(root->getAttributeValue("version")) == "5.0" &&
                    std::string(root->getAttributeValue("name")) == "old");
        ZuXmlElement* cat = nullptr;
        int classes = 0;
        for (ZuXmlElement* e = root->getElement("class"); e; e = root->getElement("class", cat = e))
            ++classes;
        CHILD_CHECK(classes == 3 && std::string(cat->getAttributeValue("name")) == "Cat" &&
                    std::string(cat->getAttributeValue("rootClass")) == "Animal");
        ZuModule* m = ZuModule::Load("old", nullptr); // a converted descriptor still loads
        CHILD_CHECK(m);
        delete m;
        return 0;
    });
    const std::string& p = dir.path();
    expectAll(out, {"ZuModule: Invalid version (\"5.8\") in module descriptor '" + p +
                        "/v58.imd'. Expecting \"5.7\"\n",
                    "ZuModule: Invalid version (\"5\") in module descriptor '" + p + "/v5.imd'",
                    "ZuModule: Invalid version (\"\") in module descriptor '" + p + "/none.imd'",
                    "ZuModuleLoader error: File '" + p +
                        "/thing.imd is not a valid Module Descriptor\n",
                    "ZuModule warning: module descriptor '" + p +
                        "/old.imd' has an old format.\nHere is the new preferred format:\n<",
                    "rootClass=\"Shape\""});
}

TEST(ModuleScan, LibraryCandidatesAndTheFirstDirectoryWins) {
    TempDir first, second;
    copyModule(first, "plain", "libfoo.so");
    for (const char* imd : {"foo.imd", "orphan.imd", "libbar.imd"})
        first.write(imd, descriptor("5.7"));
    addModule(first, "dup");
    addModule(second, "dup");
    const std::string out = runIn(first.path() + ":" + second.path(), "SCAN", [&] {
        ZuModule::ReScan();
        CHILD_CHECK(libPathOf("foo") == first.file("libfoo.so"));
        CHILD_CHECK(libPathOf("dup") == first.file("dup.so"));
        CHILD_CHECK(!ZuModule::Find("orphan") && !ZuModule::Find("libbar"));
        ZuModule* foo = ZuModule::Load("foo", nullptr);
        CHILD_CHECK(foo && ZuModule::Load("libfoo.so", nullptr) == foo);
        delete foo;
        return 0;
    });
    expectAll(out, {"ZuModule: Cannot find library : " + first.file("liborphan.so") + "\n",
                    "ZuModule: Cannot find library : " + first.file("libbar.so") + "\n"});
    EXPECT_FALSE(has(out, "Scanning " + second.file("dup.imd"))) << out;
}

TEST(ModuleLoad, FromTheCurrentDirectoryByARelativePath) {
    TempDir dir;
    addModule(dir, "here");
    // The current directory heads the module path: the library path is relative and still
    // reaches the file, never the dynamic loader's own search.
    const ChildResult here = runChild(
        {{"ZUMODULEPATH", ""}, {"LD_LIBRARY_PATH", "/nonexistent"}}, [&] {
            CHILD_CHECK(chdir(dir.path().c_str()) == 0);
            ZuModule* m = ZuModule::Load("here", nullptr);
            CHILD_CHECK(m);
            CHILD_CHECK(libPathOf("here").rfind("/") == std::string::npos ||
                        libPathOf("here")[0] == '.');
            delete m;
            return 0;
        });
    EXPECT_EQ(here.exitCode, 0) << here.output;
}

TEST(ModuleLoad, DisableLoadRefusesEveryLoad) {
    TempDir dir;
    addModule(dir, "plain");
    const std::string out = runIn(dir.path(), "DisableLoad", [] {
        CHILD_CHECK(!ZuModule::Load("plain", nullptr));
        CHILD_CHECK(ZuModule::GetError() == ZuModule::ModuleNotFound);
        CHILD_CHECK(ZuModule::Find("plain")); // scanned all the same
        return 0;
    });
    EXPECT_TRUE(has(out, "ZuModuleLoader: Loading Disabled\n")) << out;
    EXPECT_FALSE(has(out, "init ")) << out;
}

TEST(ModuleLoad, ModulesDeletedBeforeOrAfterTeardownExitCleanly) {
    TempDir dir;
    addModule(dir, "plain");
    addModule(dir, "kept");
    const std::string out = runIn(dir.path(), nullptr, [] {
        // Registered before the context exists, so it runs after the context's teardown.
        std::atexit([] { delete keptModule; });
        for (int round = 0; round < 2; ++round) { // the second load finds the library again
            ZuModule* m = ZuModule::Load("plain", nullptr);
            CHILD_CHECK(m);
            delete m; // runs code of the module's library, which stays mapped meanwhile
            CHILD_CHECK(!ZuModule::Find("plain"));
        }
        // Left loaded: the teardown detaches it, and it is deleted after the teardown.
        keptModule = ZuModule::Load("kept", nullptr);
        CHILD_CHECK(keptModule);
        return 0;
    });
    EXPECT_EQ(out, "init plain.so\ndelete module\ninit plain.so\ndelete module\n"
                   "init kept.so\ndelete module\n");
}
