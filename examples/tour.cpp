// A short tour of Zu: each section shows one subsystem and prints what it did.
#include <zu/zu.h>

#include <iostream>
#include <string>

namespace {

void section(const char* title) { std::cout << "\n== " << title << "\n"; }

} // namespace

int main() {
    std::cout << "Zu tour\n";
    section("Strings");
    ZuString hello("hello, world");
    std::cout << "text: " << hello << " (" << hello.getLength() << " characters)\n";
    section("Decimal numbers");
    const auto show = [](const char* label, const ZuNumeric& n) {
        char text[64];
        n.get(text, sizeof text);
        std::cout << label << text << "\n";
    };
    show("0.1 + 0.2 = ", ZuNumeric("0.1") + ZuNumeric("0.2"));
    show("123456789 * -987654321 = ", ZuNumeric(123456789L) * ZuNumeric("-987654321"));
    for (const char* in : {"  -  12.500", "1e3", "0.0005", "5e-3", "123456789012345678901234567890.5"})
        show((std::string("\"") + in + "\" reads as ").c_str(), ZuNumeric(in));
    return 0;
}
