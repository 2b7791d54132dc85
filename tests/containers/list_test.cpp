// Zu_List and Zu_AList: positional insertion, push/pop/swap, chain operations,
// mapUntil/apply, and safe iterators under removal and destruction.
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
    return out;
}

Zu_List* make(std::initializer_list<uintptr_t> vs) {
    Zu_List* l = new Zu_List;
    for (uintptr_t v : vs)
        l->a(P(v));
    return l;
}

// True when _last, _length and the chain agree.
bool consistent(const Zu_List& l) {
    if (!l._first)
        return !l._last && l._length == 0;
    return l._first->getLast() == l._last && l._first->getLength() == l._length;
}

void* stopAt(void* v, void* arg, void* sentinel) { return v == arg ? v : sentinel; }

} // namespace

TEST(ListInsert, IndexPlacesValueAndNegativeOrPastEndAppends) {
    struct Case { int index; std::vector<uintptr_t> expected; };
    const Case cases[] = {{0, {9, 1, 2, 3}}, {1, {1, 9, 2, 3}}, {2, {1, 2, 9, 3}},
                          {3, {1, 2, 3, 9}}, {50, {1, 2, 3, 9}}, {-1, {1, 2, 3, 9}}};
    for (const Case& c : cases) {
        Zu_List* l = make({1, 2, 3});
        l->i(P(9), c.index);
        EXPECT_EQ(values(*l), c.expected) << c.index;
        EXPECT_TRUE(consistent(*l)) << c.index;
        l->a(P(4)); // _last must follow an insertion at the end
        EXPECT_EQ(values(*l).back(), 4u) << c.index;
        delete l;
    }
    Zu_List empty;
    empty.i(P(5), 3);
    EXPECT_EQ(values(empty), (std::vector<uintptr_t>{5}));
    EXPECT_TRUE(consistent(empty));
}

TEST(ListRemove, KeepsLastAndLengthInStep) {
    Zu_List* l = make({1, 2, 3, 2});
    EXPECT_TRUE(l->r(P(2)));
    EXPECT_EQ(values(*l), (std::vector<uintptr_t>{1, 3, 2}));
    EXPECT_TRUE(l->r(P(2)));
    EXPECT_TRUE(consistent(*l));
    l->a(P(7));
    EXPECT_EQ(values(*l), (std::vector<uintptr_t>{1, 3, 7}));
    EXPECT_FALSE(l->r(P(42)));
    Zu_List::Cell* c = l->removeCell(P(1));
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->_next, nullptr);
    l->insert(c, 1);
    EXPECT_EQ(values(*l), (std::vector<uintptr_t>{3, 1, 7}));
    EXPECT_EQ(l->removeCell(P(42)), nullptr);
    EXPECT_TRUE(l->r(P(3)) && l->r(P(1)) && l->r(P(7)));
    EXPECT_TRUE(consistent(*l));
    EXPECT_FALSE(l->r(P(7)));
    l->append(new Zu_List::Cell(P(8)));
    EXPECT_EQ(values(*l), (std::vector<uintptr_t>{8}));
    delete l;
}

TEST(ListReorder, PushPopAndSwapMoveOnePlace) {
    struct Case { char op; uintptr_t a, b; std::vector<uintptr_t> expected; };
    const Case cases[] = {
        {'u', 2, 0, {2, 1, 3}}, {'u', 1, 0, {1, 2, 3}}, {'u', 3, 0, {1, 3, 2}},
        {'u', 9, 0, {1, 2, 3}}, {'o', 3, 0, {1, 2, 3}}, {'o', 1, 0, {2, 1, 3}},
        {'o', 9, 0, {1, 2, 3}}, {'s', 1, 3, {3, 2, 1}}, {'s', 1, 9, {1, 2, 3}},
    };
    for (const Case& c : cases) {
        Zu_List* l = make({1, 2, 3});
        if (c.op == 'u')
            l->push(P(c.a));
        else if (c.op == 'o')
            l->pop(P(c.a));
        else
            l->swap(P(c.a), P(c.b));
        EXPECT_EQ(values(*l), c.expected) << c.op << c.a;
        delete l;
    }
    Zu_List one;
    one.a(P(1));
    one.push(P(1));
    one.pop(P(1));
    EXPECT_EQ(values(one), (std::vector<uintptr_t>{1}));
}

TEST(ListCells, ChainOperationsReturnNullOrFalseWhenShort) {
    Zu_List* l = make({1, 2, 3});
    Zu_List::Cell* c = l->_first;
    EXPECT_EQ((*c)[2], P(3));
    EXPECT_EQ((*c)[3], nullptr);
    EXPECT_EQ((*c)[1000], nullptr);
    EXPECT_TRUE(c->setValue(1, P(5)));
    EXPECT_FALSE(c->setValue(3, P(5)));
    EXPECT_EQ(c->find(P(5)), c->_next);
    EXPECT_EQ(c->find(P(2)), nullptr);
    EXPECT_EQ(c->_next->getLength(), 2u);

    Zu_List::Cell* copy = c->copy();
    EXPECT_EQ(copy->getLength(), 3u);
    EXPECT_EQ((*copy)[1], P(5));
    EXPECT_NE(copy->_next, c->_next);
    Zu_List::Cell* head = copy->remove(P(1)); // removing the head returns its successor
    EXPECT_EQ((*head)[0], P(5));
    EXPECT_EQ(head->remove(P(42)), head);
    head = head->remove(P(3));
    EXPECT_EQ(head->getLength(), 1u);
    EXPECT_EQ(head->remove(P(5)), nullptr);

    Zu_List* dup = l->cp();
    l->r(P(1));
    EXPECT_EQ(values(*dup), (std::vector<uintptr_t>{1, 5, 3}));
    EXPECT_TRUE(consistent(*dup));
    delete dup;
    delete l;

    // A long chain is freed without recursion.
    Zu_List big;
    for (uintptr_t i = 1; i <= 200000; ++i)
        big.a(P(i));
    EXPECT_EQ(big._length, 200000u);
}

TEST(ListMapping, MapUntilStopsAtFirstNonSentinelAndApplyVisitsAll) {
    Zu_List empty;
    EXPECT_EQ(empty.mapUntil(stopAt, P(2), P(77)), P(77));
    Zu_List* l = make({1, 2, 3});
    EXPECT_EQ(l->mapUntil(stopAt, P(2), P(77)), P(2));
    EXPECT_EQ(l->mapUntil(stopAt, P(9), P(77)), P(77));
    EXPECT_EQ(l->_first->mapUntil(stopAt, P(3), nullptr), P(3));

    // apply reads the next cell first, so the callback may remove the current value.
    struct Ctx { Zu_List* list; uintptr_t sum; } ctx{l, 0};
    l->apply([](void* v, void* arg) {
        Ctx* c = static_cast<Ctx*>(arg);
        c->sum += reinterpret_cast<uintptr_t>(v);
        c->list->r(v);
    }, &ctx);
    EXPECT_EQ(ctx.sum, 6u);
    EXPECT_EQ(l->_length, 0u);
    delete l;
}

TEST(SafeListIterator, RemovalMovesItToTheSuccessor) {
    Zu_List* l = make({1, 2, 3, 4});
    Zu_SLIterator safe(*l);
    Zu_SLIterator other(*l);
    EXPECT_EQ(safe.nextElement(), P(1)); // now on 2
    l->r(P(2));
    EXPECT_EQ(safe.nextElement(), P(3));
    EXPECT_EQ(other.nextElement(), P(1));
    l->r(P(4)); // the last cell leaves under safe: it ends
    EXPECT_EQ(safe.nextElement(), nullptr);
    Zu_List::Cell* c = l->removeCell(P(3));
    delete c;
    EXPECT_EQ(other.nextElement(), nullptr);
    EXPECT_EQ(l->_iterators, &other);
    EXPECT_EQ(other._nextIterator, &safe);
    {
        Zu_SLIterator copy(safe);
        EXPECT_EQ(l->_iterators, &copy);
    }
    EXPECT_EQ(l->_iterators, &other);
    l->a(P(5));
    Zu_SLIterator fresh(*l);
    l->clear(); // emptied: every safe iterator ends
    EXPECT_EQ(fresh.nextElement(), nullptr);
    delete l;
}

TEST(SafeListIterator, DestroyedListLeavesItHarmless) {
    Zu_List* l = make({1, 2});
    Zu_SLIterator* outlives = new Zu_SLIterator(*l);
    Zu_SLIterator stays(*l);
    delete l;
    EXPECT_EQ(stays._list, nullptr);
    EXPECT_EQ(stays.nextElement(), nullptr);
    ++stays;
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
    Zu_ALIterator it(al);
    while (void* k = it.nextKey())
        keys.push_back(reinterpret_cast<uintptr_t>(k));
    EXPECT_EQ(keys, (std::vector<uintptr_t>{3, 1, 4, 2, 1, 5}));
    EXPECT_EQ(al._length, 6u);

    EXPECT_EQ(al.g(P(1)), P(10));
    EXPECT_EQ(al.g(P(9)), nullptr);
    void* v = P(99);
    EXPECT_FALSE(al.f(P(9), &v));
    EXPECT_EQ(v, P(99));
    EXPECT_TRUE(al.f(P(2), &v));
    EXPECT_EQ(v, P(20));
    EXPECT_TRUE(al.f(P(2), nullptr));
    EXPECT_FALSE(al.r(P(9), P(1)));
    EXPECT_EQ(al._length, 6u);
    EXPECT_TRUE(al.r(P(2), P(21)));
    EXPECT_EQ(al.g(P(2)), P(21));

    Zu_AList::Cell* previous = al._first->_next; // not null: gfc must overwrite it
    EXPECT_EQ(al.gfc(P(3), &previous), al._first);
    EXPECT_EQ(previous, nullptr);
    Zu_AList::Cell* c = al.gc(P(1), P(11), &previous);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(previous->_key, P(2));
    EXPECT_EQ(al.gc(P(1), P(12), &previous), nullptr);

    EXPECT_FALSE(al.rm(P(1), P(12)));
    EXPECT_TRUE(al.rm(P(1), P(11)));
    EXPECT_TRUE(al.rm(P(3)));
    EXPECT_FALSE(al.rm(P(3)));
    EXPECT_EQ(al._length, 4u);
    void* value = nullptr;
    Zu_ALIterator pairs(al);
    EXPECT_EQ(pairs.nextPair(value), P(1));
    EXPECT_EQ(value, P(10));
    EXPECT_EQ(pairs.nextElement(), P(40));

    uintptr_t sum = 0;
    al.apply([](void* k, void* v, void* arg) {
        *static_cast<uintptr_t*>(arg) += reinterpret_cast<uintptr_t>(k) * reinterpret_cast<uintptr_t>(v);
    }, &sum);
    EXPECT_EQ(sum, 1u * 10 + 4 * 40 + 2 * 21 + 5 * 50);
    auto find = [](void* k, void* v, void* arg, void* sentinel) { return k == arg ? v : sentinel; };
    EXPECT_EQ(al.mapUntil(find, P(4), P(77)), P(40));
    EXPECT_EQ(al.mapUntil(find, P(8), P(77)), P(77));
    EXPECT_EQ(Zu_AList().mapUntil(find, P(8), P(77)), P(77));
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
    EXPECT_EQ(value, P(30));
    al->rm(P(1)); // the cell under late leaves: late moves to 3
    EXPECT_EQ(late->nextKey(), P(3));
    delete al;
    EXPECT_EQ(safe.nextElement(), nullptr);
    EXPECT_EQ(late->nextKey(), nullptr);
    delete late;
}
