// Locale extensions keep their locale alive; the extension list finds them by type.
#include "locale_support.h"

namespace {

class Tagged : public ZuLocaleExtension { // a caller-defined extension
public:
    Tagged(ZuLocale* locale, uint16_t type) : ZuLocaleExtension(locale) { _type = type; }
    const char* getName() const override { return "tagged"; }
};

TEST(LocaleExtension, LastExtensionDeletesItsLocale) {
    zu_test::LocaleState state;
    ZuLocale* locale = new ZuLocale("C");
    Tagged* a = new Tagged(locale, 7);
    Tagged* b = new Tagged(locale, 9);
    EXPECT_EQ(locale->getRefCount(), 2);
    EXPECT_EQ(a->getFlag() + a->getRefCount() + a->addReference() + a->removeReference(), 1);
    EXPECT_STREQ(static_cast<ZuLocaleExtension*>(b)->getName(), "tagged");
    EXPECT_EQ(locale->addExtension(a) + locale->addExtension(b), 3);
    EXPECT_EQ(locale->getExtension(9), b);
    delete a; // leaves the list on its way out
    EXPECT_TRUE(locale->getExtension(7) == nullptr && ZuLocale::GetLocaleNumber() == 1);
    delete b;
    EXPECT_EQ(ZuLocale::GetLocaleNumber(), 0);
}

TEST(LocaleExtension, ListDoublesFindsTheFirstOfATypeAndShiftsOnRemove) {
    zu_test::LocaleState state;
    ZuLocale* locale = new ZuLocale("C");
    Tagged* e[5] = {new Tagged(locale, 1), new Tagged(locale, 2), new Tagged(locale, 2),
                    new Tagged(locale, 3), nullptr}; // null is appended too
    ZuExtensionList list;
    const int capacity[] = {1, 2, 4, 4, 8};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(list.add(e[i]), i + 1);
        EXPECT_EQ(list.getCapacity(), capacity[i]);
    }
    EXPECT_EQ(list.find(2), e[1]);
    list.remove(e[1]);
    list.remove(e[1]); // gone: nothing happens
    EXPECT_EQ(list.find(2), e[2]);
    EXPECT_TRUE(list.get(3) == e[4] && list.getCount() == 4 && !list.find(5));
    for (Tagged* x : e)
        delete x;
}

} // namespace
