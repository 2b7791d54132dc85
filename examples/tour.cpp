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
    section("Locale");
    for (const char* name :
         {"de_DE.ISO8859-1", "ja_JP.eucJP", "zh_HK.950", "french.utf8", "ko_KR.EUC-KR", "C"}) {
        char* standard = ZuLocale::GetStdLocaleName(name);
        std::cout << name << " -> " << (standard ? standard : "(no standard name)") << "\n";
        delete[] standard;
    }
    char number[32];
    ZuDoubleToString(number, 0.5, nullptr);
    std::cout << "0.5 whatever the numeric locale: " << number << "\n";
    return 0;
}
