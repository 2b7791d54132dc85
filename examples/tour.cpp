// A short tour of Zu: each section shows one subsystem and prints what it did.
#include <zu/zu.h>

#include <cstdio>
#include <iostream>

namespace {

void section(const char* title) { std::cout << "\n== " << title << "\n"; }

} // namespace

int main() {
    std::cout << "Zu tour\n";
    section("Strings");
    ZuString hello("hello, world");
    std::cout << "text: " << hello << " (" << hello.getLength() << " characters)\n";
    section("Memory");
    void* block = nullptr;
    void* scratch = ZuCharPool::_Pool.take(block, 100, true);
    ZuCharPool::_Pool.release(block);
    void* again = ZuCharPool::_Pool.alloc(80, false);
    std::cout << "pool block reused after release: " << (again == scratch ? "yes" : "no") << "\n";
    const unsigned short euro[] = {0x20AC, 0x41, 0xD83D, 0xDE00, 0x21};
    unsigned length = 0;
    const unsigned char* utf8 = ZuI18n::Utf16ToUtf8(length, 5, euro);
    std::cout << "UTF-16 20AC 0041 D83D DE00 0021 as UTF-8:";
    for (unsigned i = 0; i < length; ++i) {
        char hex[4];
        std::snprintf(hex, sizeof hex, " %02X", utf8[i]);
        std::cout << hex;
    }
    std::cout << "\n";
    ZuCharPool::_Pool.printInformation(std::cout, "chars", 0);
    return 0;
}
