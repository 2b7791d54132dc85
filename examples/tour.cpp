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
    ZuString copy(hello); // copies share one representation until one of them changes
    std::cout << "copy shares: " << (copy.getInternal() == hello.getInternal() ? "yes" : "no");
    copy.substitute(ZuString("o"), ZuString("0")).toUpper();
    std::cout << ", after edit: " << copy << " / " << hello << "\n";
    const ZuString abc("abc");
    std::cout << "compare(\"abc\" 0..2, \"abc\") = " << abc.compare(abc, 0, 2)
              << " (a range that stops early compares greater)\n";
    std::cout << "quoted: ";
    ZuString("say \"hi\"").writeQuoted(std::cout) << "\n";
    return 0;
}
