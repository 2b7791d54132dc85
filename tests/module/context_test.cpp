// The global context and symbols. The context is built once per process from the
// environment and torn down at exit, so every case runs in a child process.
#include <zu/context.h>
#include <zu/hash.h>
#include <zu/locale.h>
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

std::string homePath() {
    return text(context()->getHomePath().getString(ZuPathName::UnixPathType));
}

// Prints who, and whether the symbol "kept" and the value under objectKey are still there.
void report(const char* who) {
    void* value = nullptr;
    std::printf("%s (symbol %s, value %s)\n", who, ZuSymbol::Get("kept", false) ? "kept" : "gone",
                context()->getValue(value, nullptr, objectKey) ? "kept" : "gone");
}

// Exit callbacks run first, while symbols and values are there; free callbacks come after
// the values went, before the symbols go.
void exit1() { std::puts("exit 1"); }
void exit2() { report("exit 2"); }
void free1() { report("free 1"); }
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

TEST(GlobalContext, ValueTableCodesLocaleAndSymbols) {
    const ChildResult r = runChild({}, [] {
        int object = 0, tag = 0, other = 0;
        void* value = &other;
        void *one = reinterpret_cast<void*>(1), *two = reinterpret_cast<void*>(2);
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

        // The first request installs the "C" locale's extension.
        ZuLocaleExtension* extension = c->getLocale();
        CHILD_CHECK(extension && c->getLocale() == extension);

        CHILD_CHECK(!ZuSymbol::Get("alpha", false) && !ZuSymbol::Get(nullptr, true));
        ZuSymbol* alpha = ZuSymbol::Get("alpha", true);
        CHILD_CHECK(alpha && std::string(alpha->getName()) == "alpha" && !alpha->getData());
        CHILD_CHECK(ZuSymbol::Get("alpha", true) == alpha && c->findSymbol("alpha") == alpha);
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

TEST(GlobalContext, TeardownRunsCallbacksInOrderOfRegistration) {
    const std::string exitPart = "exit 1\nexit 2 (symbol kept, value kept)\n";
    const std::string freePart = "free 1 (symbol kept, value gone)\nfree 2\n";
    const std::pair<const char*, bool> cases[] = {{nullptr, true}, {"OFF", false}, {"no", false},
                                                  {"False", false}, {"0", false},   {"1", true},
                                                  {"maybe", true}};
    for (const auto& [setting, freeCallbacks] : cases) {
        const ChildResult r = runChild({{"ZU_CALL_FREE_CALLBACKS", setting}}, registerCallbacks);
        EXPECT_EQ(r.exitCode, 0) << r.output;
        EXPECT_EQ(r.output, exitPart + (freeCallbacks ? freePart : ""))
            << (setting ? setting : "(unset)");
    }
}

TEST(GlobalContext, HomeAndModulePathsComeFromTheEnvironment) {
    struct Case {
        const char *home, *zuModulePath, *ldLibraryPath, *post, *homePath;
    } cases[] = {// ZUMODULEPATH set, even empty: LD_LIBRARY_PATH is ignored.
                 {"/tmp/zu home", "", "/lib/a", nullptr, "/tmp/zu home/.Vantrel/"},
                 {nullptr, nullptr, "/lib/a:/lib/b", "/lib/a/:/lib/b/", ".Vantrel/"},
                 {"/h", "/m/one:/m/two", "/lib/a", "/m/one/:/m/two/", "/h/.Vantrel/"},
                 {"/h", nullptr, nullptr, "", "/h/.Vantrel/"}};
    for (const Case& c : cases) {
        const ChildResult r = runChild({{"HOME", c.home}, {"ZUMODULEPATH", c.zuModulePath},
                                        {"LD_LIBRARY_PATH", c.ldLibraryPath}}, [&] {
            CHILD_CHECK(homePath() == c.homePath);
            context()->setLocale(context()->getLocale()); // rebuilt, not stacked
            CHILD_CHECK(homePath() == c.homePath);
            const ZuPathList& path = context()->getModulePath();
            CHILD_CHECK(text(path.getPrevListString()) + "|" + text(path.getListString()) == "./|");
            CHILD_CHECK(postIs(path, c.post));
            context()->addInModulePathList(ZuPathName("/added/"));
            context()->addInModulePathPrevList(ZuPathName("/first/"));
            context()->addInModulePathPostList(ZuPathName("/last/"));
            CHILD_CHECK(text(path.getListString()) == "/added/");
            CHILD_CHECK(text(path.getPrevListString()) == "./:/first/");
            // A locale switch rebuilds the path from the environment.
            ZuSetLocale("C");
            CHILD_CHECK(text(path.getListString()).empty() && postIs(path, c.post));
            return 0;
        });
        EXPECT_EQ(r.exitCode, 0) << "case " << &c - cases << "\n" << r.output;
    }
}
