// A short tour of Zu: each section shows one subsystem and prints what it did.
#include <zu/zu.h>

#include <cstdlib>
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
    section("URL streams");
    // A gzip file made on the spot, read back decompressed through a file: URL.
    if (std::system("printf 'Zu inflates this line on the fly\\nsecond line\\n' | gzip -c "
                    "> /tmp/zu_tour.txt.gz") != 0)
        std::cout << "(gzip is needed for this section)\n";
    ZuIUrlStream gz("file:/tmp/zu_tour.txt.gz", false);
    std::string line;
    std::getline(gz, line);
    std::cout << "first line of file:/tmp/zu_tour.txt.gz: " << line << "\n";
    return 0;
}
