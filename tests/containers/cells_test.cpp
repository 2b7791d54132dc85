// Container cells come from the small-cell manager: with the manager on, a released
// cell is the next one handed out for its size. Runs in a fresh child process because
// ZU_MEMORYMANAGER is read once per process.
#include <zu/alloc.h>
#include <zu/hash.h>
#include <zu/list.h>

#include <gtest/gtest.h>

#include <cstdlib>

TEST(ContainerCells, ComeFromTheSmallCellManagerWithTheirSizes) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto body = [] {
        setenv("ZU_MEMORYMANAGER", "yes", 1);
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        void* one = &m;
        Zu_List* list = new Zu_List;
        list->a(one);
        void* cell = list->_first;
        list->r(one);
        bool ok = m->alloc(16) == cell;
        delete list;
        ok = ok && m->alloc(32) == list;
        Zu_AList al;
        void* pair = al.a(one, one);
        al.rm(one);
        ok = ok && m->alloc(24) == pair;
        ZuHashTable table(17);
        table.insert(one, one);
        void* entry = table._buckets[table.hash(one)]._entries;
        table.remove(one);
        return ok && m->alloc(24) == entry;
    };
    EXPECT_EXIT(std::exit(body() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}
