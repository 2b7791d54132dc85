// The global context and symbols. The context is built once per process from the
// environment and torn down at exit, so every case runs in a child process.
#include <zu/context.h>
#include <zu/hash.h>
#include <zu/locale.h>
#include <zu/module.h>
#include <zu/pathlist.h>
#include <zu/pathname.h>

#include <gtest/gtest.h>

#include "child_run.h"

#include <cstdio>
#include <string>

namespace {

ZuGlobalContext* context() { return ZuGlobalContext::GetInstance(); }

int objectStorage = 0;
void* const objectKey = &objectStorage;

std::string text(const ZuString& s) { return s.getValue() ? s.getValue() : ""; }

void exit1() { std::puts("exit 1"); }
void exit2() {
    // Exit callbacks run first: symbols and values are still there.
    void* value = nullptr;
    std::printf("exit 2 (symbol %s, value %s)\n", ZuSymbol::Get("kept", false) ? "kept" : "gone",
                context()->getValue(value, nullptr, objectKey) ? "kept" : "gone");
}
void free1() {
    void* value = nullptr;
    // Free callbacks come after the values went, before the symbols go.
    std::printf("free 1 (symbol %s, value %s)\n", ZuSymbol::Get("kept", false) ? "kept" : "gone",
                context()->getValue(value, nullptr, objectKey) ? "kept" : "gone");
}
void free2() { std::puts("free 2"); }

int registerCallbacks() {
    ZuSymbol::Get("kept", true);
    context()->addValue(reinterpret_cast<void*>(1), nullptr, objectKey);
    context()->addExitCallback(exit1);
    context()->addExitCallback(exit2);
    context()->addExitCallback(exit1); // already there
    context()->addFreeCallback(free1);
    context()->addFreeCallback(free2);
    context()->addFreeCallback(exit1);
    context()->removeFreeCallback(exit1);
    return 0;
}

// The post list as expected; null: only that nothing of LD_LIBRARY_PATH came in.
bool postIs(const ZuPathList& path, const char* expected) {
    const std::string post = text(path.getPostListString());
    return expected ? post == expected : post.find("/lib/a") == std::string::npos;
}

} // namespace

TEST(GlobalContext, ValueTableReportsItsCodes) {
    const ChildResult r = runChild({}, [] {
        int object = 0, tag = 0, other = 0;
        void* value = &other;
        void* one = reinterpret_cast<void*>(1);
        void* two = reinterpret_cast<void*>(2);
        ZuGlobalContext* c = context();
        CHILD_CHECK(!c->getValue(value, &tag, &object) && !value && c->GetError() == 2);
        CHILD_CHECK(!c->replaceValue(one, &tag, &object) && c->GetError() == 2);
        CHILD_CHECK(!c->removeValue(one, &tag, &object) && c->GetError() == 2);
        CHILD_CHECK(c->addValue(one, &tag, &object) && c->GetError() == 0);
        CHILD_CHECK(!c->addValue(two, &tag, &object) && c->GetError() == 1);
        CHILD_CHECK(c->getValue(value, &tag, &object) && value == one && c->GetError() == 0);
        CHILD_CHECK(!c->getValue(value, &other, &object) && !value && c->GetError() == 3);
        CHILD_CHECK(!c->replaceValue(two, &other, &object) && c->GetError() == 3);
        CHILD_CHECK(c->replaceValue(two, &tag, &object) && c->GetError() == 0);
        CHILD_CHECK(!c->removeValue(one, &tag, &object) && c->GetError() == 4);
        CHILD_CHECK(c->removeValue(two, &tag, &object) && c->GetError() == 0);
        // The object stays known once its last pair went.
        CHILD_CHECK(!c->getValue(value, &tag, &object) && c->GetError() == 3);
        CHILD_CHECK(c->isCPULsb() && c->isCPULsb());
        return 0;
    });
    EXPECT_EQ(r.exitCode, 0) << r.output;
}

TEST(GlobalContext, TeardownRunsCallbacksInOrderOfRegistration) {
    const char* expected = "exit 1\nexit 2 (symbol kept, value kept)\n"
                           "free 1 (symbol kept, value gone)\nfree 2\n";
    struct Case {
        const char* setting;
        bool freeCallbacks;
    } cases[] = {{nullptr, true}, {"OFF", false}, {"no", false}, {"False", false},
                 {"0", false},    {"1", true},    {"maybe", true}};
    for (const Case& c : cases) {
        const ChildResult r = runChild({{"ZU_CALL_FREE_CALLBACKS", c.setting}}, registerCallbacks);
        EXPECT_EQ(r.exitCode, 0) << r.output;
        const std::string exitPart = "exit 1\nexit 2 (symbol kept, value kept)\n";
        EXPECT_EQ(r.output, c.freeCallbacks ? std::string(expected) : exitPart)
            << (c.setting ? c.setting : "(unset)");
    }
}

TEST(GlobalContext, HomeAndModulePathsComeFromTheEnvironment) {
    const ChildResult home = runChild({{"HOME", "/tmp/zu home"}}, [] {
        CHILD_CHECK(text(context()->getHomePath().getString(ZuPathName::UnixPathType)) ==
                    "/tmp/zu home/.Vantrel/");
        return 0;
    });
    EXPECT_EQ(home.exitCode, 0) << home.output;
    const ChildResult noHome = runChild({{"HOME", nullptr}}, [] {
        CHILD_CHECK(text(context()->getHomePath().getString(ZuPathName::UnixPathType)) ==
                    ".Vantrel/");
        context()->setLocale(context()->getLocale()); // rebuilt, not stacked
        CHILD_CHECK(text(context()->getHomePath().getString(ZuPathName::UnixPathType)) ==
                    ".Vantrel/");
        return 0;
    });
    EXPECT_EQ(noHome.exitCode, 0) << noHome.output;

    struct Case {
        const char* zuModulePath;
        const char* ldLibraryPath;
        const char* post;
    } cases[] = {{"", "/lib/a", nullptr}, // set but empty: LD_LIBRARY_PATH is ignored
                 {nullptr, "/lib/a:/lib/b", "/lib/a/:/lib/b/"},
                 {"/m/one:/m/two", "/lib/a", "/m/one/:/m/two/"},
                 {nullptr, nullptr, ""}};
    for (const Case& c : cases) {
        const ChildResult r = runChild(
            {{"ZUMODULEPATH", c.zuModulePath}, {"LD_LIBRARY_PATH", c.ldLibraryPath}}, [&] {
                const ZuPathList& path = context()->getModulePath();
                CHILD_CHECK(text(path.getPrevListString()) == "./");
                CHILD_CHECK(text(path.getListString()).empty());
                CHILD_CHECK(postIs(path, c.post));
                context()->addInModulePathList(ZuPathName("/added/"));
                context()->addInModulePathPrevList(ZuPathName("/first/"));
                context()->addInModulePathPostList(ZuPathName("/last/"));
                CHILD_CHECK(text(path.getListString()) == "/added/");
                CHILD_CHECK(text(path.getPrevListString()) == "./:/first/");
                // A locale switch rebuilds the path from the environment.
                ZuSetLocale("C");
                CHILD_CHECK(text(path.getListString()).empty());
                CHILD_CHECK(postIs(path, c.post));
                return 0;
            });
        EXPECT_EQ(r.exitCode, 0) << (c.zuModulePath ? c.zuModulePath : "(unset)") << "\n"
                                 << r.output;
    }
}

TEST(GlobalContext, LocaleAndSymbols) {
    const ChildResult r = runChild({}, [] {
        // The first request installs the "C" locale's extension.
        ZuLocaleExtension* extension = context()->getLocale();
        CHILD_CHECK(extension && context()->getLocale() == extension);

        CHILD_CHECK(!ZuSymbol::Get("alpha", false) && !ZuSymbol::Get(nullptr, true));
        ZuSymbol* alpha = ZuSymbol::Get("alpha", true);
        CHILD_CHECK(alpha && std::string(alpha->getName()) == "alpha" && !alpha->getData());
        CHILD_CHECK(ZuSymbol::Get("alpha", true) == alpha &&
                    context()->findSymbol("alpha") == alpha);
        std::string copied = "beta";
        ZuSymbol* beta = ZuSymbol::Get(copied.c_str(), true);
        copied = "gamma"; // the symbol keeps its own copy of the name
        CHILD_CHECK(ZuSymbol::Get("beta", false) == beta);
        delete alpha; // leaves the table
        CHILD_CHECK(!ZuSymbol::Get("alpha", false) && ZuSymbol::Get("beta", false) == beta);
        // An unregistered symbol of a registered name leaves the registered one alone.
        delete new ZuSymbol("beta");
        CHILD_CHECK(ZuSymbol::Get("beta", false) == beta);
        return 0; // beta is deleted by the teardown
    });
    EXPECT_EQ(r.exitCode, 0) << r.output;
}
