// Zu_List and Zu_AList: positional insertion, reordering, chain operations, mapUntil,
// and safe iterators under removal and destruction.
#include <zu/list.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

void* P(uintptr_t i) { return reinterpret_cast<void*>(i); }

std::vector<uintptr_t> values(const Zu_List& l) {
    std::vector<uintptr_t> out;
    Zu_LIterator it(l);
    while (void* v = it.nextElement())
        out.push_back(reinterpret_cast<uintptr_t>(v));
    // _last and _length must agree with the chain.
    EXPECT_EQ(l._first ? l._first->getLast() : nullptr, l._last);
    EXPECT_EQ(out.size(), l._length);
    return out;
}

Zu_List* make(std::initializer_list<uintptr_t> vs) {
    Zu_List* l = new Zu_List;
    for (uintptr_t v : vs)
        l->a(P(v));
    return l;
}

void* stopAt(void* v, void* arg, void* sentinel) { return v == arg ? v : sentinel; }

} // namespace

TEST(ListInsert, IndexPlacesValueAndNegativeOrPastEndAppends) {
    const std::pair<int, std::vector<uintptr_t>> cases[] = {
        {0, {9, 1, 2, 3, 4}}, {1, {1, 9, 2, 3, 4}}, {3, {1, 2, 3, 9, 4}},
        {50, {1, 2, 3, 9, 4}}, {-1, {1, 2, 3, 9, 4}}};
    for (const auto& c : cases) {
        Zu_List* l = make({1, 2, 3});
        l->i(P(9), c.first);
        l->a(P(4)); // _last must follow an insertion at the end
        EXPECT_EQ(values(*l), c.second) << c.first;
        delete l;
    }
}

TEST(ListRemove, KeepsLastAndLengthInStep) {
    Zu_List* l = make({1, 2, 3, 2});
    EXPECT_TRUE(l->r(P(2)) && l->r(P(2)));
    EXPECT_FALSE(l->r(P(42)));
    l->a(P(7));
    Zu_List::Cell* c = l->removeCell(P(7));
    EXPECT_EQ(values(*l), (std::vector<uintptr_t>{1, 3}));
    l->insert(c, 0);
    EXPECT_EQ(values(*l), (std::vector<uintptr_t>{7, 1, 3}));
    EXPECT_TRUE(l->r(P(3)) && l->r(P(1)) && l->r(P(7)));
    EXPECT_EQ(values(*l), std::vector<uintptr_t>{});
    delete l;
}

TEST(ListReorder, PushPopAndSwapMoveOnePlace) {
    struct Case { char op; uintptr_t a, b; std::vector<uintptr_t> expected; };
    const Case cases[] = {
        {'u', 2, 0, {2, 1, 3}}, {'u', 1, 0, {1, 2, 3}}, {'u', 3, 0, {1, 3, 2}},
        {'u', 9, 0, {1, 2, 3}}, {'o', 3, 0, {1, 2, 3}}, {'o', 1, 0, {2, 1, 3}},
        {'s', 1, 3, {3, 2, 1}}, {'s', 1, 9, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        Zu_List* l = make({1, 2, 3});
        c.op == 'u' ? l->push(P(c.a)) : c.op == 'o' ? l->pop(P(c.a)) : l->swap(P(c.a), P(c.b));
        EXPECT_EQ(values(*l), c.expected) << c.op << c.a;
        delete l;
    }
}

TEST(ListCells, ChainOperationsReturnNullOrFalseWhenShort) {
    Zu_List* l = make({1, 2, 3});
    Zu_List::Cell* c = l->_first;
    EXPECT_TRUE((*c)[2] == P(3) && (*c)[3] == nullptr);
    EXPECT_TRUE(c->setValue(1, P(5)) && !c->setValue(3, P(5)));
    EXPECT_TRUE(c->find(P(5)) == c->_next && c->find(P(2)) == nullptr);

    Zu_List::Cell* head = c->copy();
    EXPECT_EQ(head->getLength(), 3u);
    head = head->remove(P(1)); // removing the head returns its successor
    EXPECT_EQ(head->remove(P(42)), head);
    head = head->remove(P(3));
    EXPECT_TRUE(head->getLength() == 1 && head->remove(P(5)) == nullptr);

    Zu_List* dup = l->cp();
    delete l;
    EXPECT_EQ(values(*dup), (std::vector<uintptr_t>{1, 5, 3}));
    delete dup;
}

TEST(ListMapping, MapUntilStopsAtFirstNonSentinelAndApplyMayRemove) {
    EXPECT_EQ(Zu_List().mapUntil(stopAt, P(2), P(77)), P(77));
    Zu_List* l = make({1, 2, 3});
    EXPECT_EQ(l->mapUntil(stopAt, P(2), P(77)), P(2));
    EXPECT_EQ(l->mapUntil(stopAt, P(9), P(77)), P(77));
    struct Ctx { Zu_List* list; uintptr_t sum; } ctx{l, 0};
    l->apply([](void* v, void* arg) {
        Ctx* c = static_cast<Ctx*>(arg);
        c->sum += reinterpret_cast<uintptr_t>(v);
        c->list->r(v);
    }, &ctx);
    EXPECT_TRUE(ctx.sum == 6 && l->_length == 0);
    delete l;
}

TEST(SafeListIterator, RemovalMovesItToTheSuccessor) {
    Zu_List* l = make({1, 2, 3, 4});
    Zu_SLIterator safe(*l);
    Zu_SLIterator other(*l);
    EXPECT_EQ(safe.nextElement(), P(1));
    l->r(P(2));
    EXPECT_TRUE(safe.nextElement() == P(3) && other.nextElement() == P(1));
    l->r(P(4)); // the last cell leaves under safe: it ends
    EXPECT_EQ(safe.nextElement(), nullptr);
    delete l->removeCell(P(3));
    EXPECT_EQ(other.nextElement(), nullptr);
    EXPECT_TRUE(l->_iterators == &other && other._nextIterator == &safe); // newest first
    l->ai(&safe); // already registered: the chain stays as it is (no cycle)
    l->ai(&other);
    EXPECT_TRUE(l->_iterators == &other && other._nextIterator == &safe &&
                safe._nextIterator == nullptr);
    l->a(P(5));
    Zu_SLIterator fresh(*l);
    l->clear(); // emptied: it ends
    EXPECT_EQ(fresh.nextElement(), nullptr);
    delete l;
}

TEST(SafeListIterator, DestroyedListLeavesItHarmless) {
    Zu_List* l = make({1, 2});
    Zu_SLIterator* outlives = new Zu_SLIterator(*l);
    Zu_SLIterator stays(*l);
    delete l;
    EXPECT_TRUE(stays._list == nullptr && stays.nextElement() == nullptr);
    delete outlives; // after its list: must not touch it
    Zu_List other;
    other.a(P(1));
    stays = Zu_SLIterator(other);
    EXPECT_EQ(stays.nextElement(), P(1));
    EXPECT_EQ(other._iterators, &stays);
}

TEST(AssocList, LookupReplaceAndRemoveByKeyOrPair) {
    Zu_AList al;
    al.a(P(1), P(10));
    al.a(P(2), P(20));
    al.a(P(1), P(11)); // duplicate keys allowed
    al.i(P(3), P(30), 0);
    al.i(P(4), P(40), 2);
    al.i(P(5), P(50), -1);
    std::vector<uintptr_t> keys;
    for (Zu_ALIterator it(al); void* k = it.nextKey();)
        keys.push_back(reinterpret_cast<uintptr_t>(k));
    EXPECT_EQ(keys, (std::vector<uintptr_t>{3, 1, 4, 2, 1, 5}));

    void* v = P(99);
    EXPECT_TRUE(al.g(P(1)) == P(10) && al.g(P(9)) == nullptr);
    EXPECT_FALSE(al.f(P(9), &v));
    EXPECT_TRUE(al.f(P(2), &v) && v == P(20));
    EXPECT_TRUE(!al.r(P(9), P(1)) && al.r(P(2), P(21)));
    EXPECT_EQ(al._length, 6u);

    Zu_AList::Cell* previous = al._first->_next; // not null: gfc must overwrite it
    EXPECT_TRUE(al.gfc(P(3), &previous) == al._first && previous == nullptr);
    ASSERT_NE(al.gc(P(1), P(11), &previous), nullptr);
    EXPECT_EQ(previous->_key, P(2));
    EXPECT_TRUE(!al.rm(P(1), P(12)) && al.rm(P(1), P(11)) && al.rm(P(3)) && !al.rm(P(3)));
    EXPECT_EQ(al._length, 4u);
    Zu_ALIterator pairs(al);
    EXPECT_TRUE(pairs.nextPair(v) == P(1) && v == P(10) && pairs.nextElement() == P(40));
    auto find = [](void* k, void* v, void* arg, void* sentinel) { return k == arg ? v : sentinel; };
    EXPECT_EQ(al.mapUntil(find, P(2), P(77)), P(21));
    EXPECT_EQ(al.mapUntil(find, P(8), P(77)), P(77));
}

TEST(SafeAssocIterator, FollowsRemovalAndSurvivesItsList) {
    Zu_AList* al = new Zu_AList;
    for (uintptr_t k = 1; k <= 4; ++k)
        al->a(P(k), P(k * 10));
    Zu_SALIterator safe(*al);
    Zu_SALIterator* late = new Zu_SALIterator(*al);
    EXPECT_EQ(safe.nextKey(), P(1));
    al->rm(P(2));
    void* value = nullptr;
    EXPECT_EQ(safe.nextPair(value), P(3));
    al->rm(P(1)); // the cell under late leaves: late moves on
    EXPECT_EQ(late->nextKey(), P(3));
    delete al;
    EXPECT_EQ(safe.nextElement(), nullptr);
    delete late;
}
