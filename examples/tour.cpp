// A short tour of Zu: each section shows one subsystem and prints what it did.
#include <zu/zu.h>

#include <iostream>

namespace {

void section(const char* title) { std::cout << "\n== " << title << "\n"; }

} // namespace

int main() {
    std::cout << "Zu tour\n";
    section("Strings");
    ZuString hello("hello, world");
    std::cout << "text: " << hello << " (" << hello.getLength() << " characters)\n";
    return 0;
}
