// A short tour of Zu: each section shows one subsystem and prints what it did.
#include <zu/zu.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

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
    section("Containers");
    {
        const char* planets[] = {"Mercury", "Venus", "Earth", "Mars"};
        Zu_List list;
        for (const char* p : planets)
            list.a(const_cast<char*>(p));
        list.push(const_cast<char*>(planets[2])); // Earth one place towards the front
        std::cout << "list:";
        Zu_LIterator it(list);
        while (void* v = it.nextElement())
            std::cout << " " << static_cast<const char*>(v);
        std::cout << " (" << list.getLength() << " values)\n";

        Zu_AList moons;
        moons.a(const_cast<char*>(planets[2]), const_cast<char*>("Moon"));
        moons.a(const_cast<char*>(planets[3]), const_cast<char*>("Phobos"));
        moons.r(const_cast<char*>(planets[3]), const_cast<char*>("Deimos"));
        std::cout << "association list: Mars -> "
                  << static_cast<const char*>(moons.g(const_cast<char*>(planets[3]))) << "\n";

        ZuStringHashTable table(17);
        for (unsigned i = 0; i < 4; ++i)
            table.insert(const_cast<char*>(planets[i]), reinterpret_cast<void*>(uintptr_t(i + 1)));
        std::string key = "Earth"; // another pointer, same text
        std::cout << "string table: Earth is planet "
                  << reinterpret_cast<uintptr_t>(table.find(&key[0], nullptr, nullptr)) << "; sorted keys:";
        unsigned count = 0;
        const char** names = table.convertToStrings(count, true, true);
        for (unsigned i = 0; i < count; ++i)
            std::cout << " " << names[i];
        std::cout << "\n";
        delete[] names;
    }
    section("Locale");
    const char* spellings[] = {"de_DE.ISO8859-1", "ja_JP.eucJP", "zh_HK.950",
                               "french.utf8",     "ko_KR.EUC-KR", "C"};
    for (const char* name : spellings) {
        char* standard = ZuLocale::GetStdLocaleName(name);
        std::cout << name << " -> " << (standard ? standard : "(no standard name)") << "\n";
        delete[] standard;
    }
    char number[32];
    ZuDoubleToString(number, 0.5, nullptr);
    std::cout << "0.5 whatever the numeric locale: " << number << "\n";
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
    section("XML");
    {
        const char* text = "<?xml version='1.0'?>\n"
                           "<catalog owner='Ada'><book id='b1'>Engines</book></catalog>";
        ZuXmlError::Reset();
        std::istringstream in(text);
        ZuXmlDocument doc;
        doc.read(in);
        ZuXmlElement* root = doc.getRootElement();
        std::cout << "root: " << root->getTag() << ", owner=" << root->getAttributeValue("owner")
                  << ", first book: " << root->getElement("book")->getText() << "\n";

        std::istringstream broken("<catalog>\n  <book></bok>\n</catalog>");
        ZuXmlDocument bad;
        bad.read(broken);
        ZuXmlError::Severity severity;
        int code = 0, line = 0;
        const char* name = ZuXmlError::Get(severity, code, line);
        std::cout << "error: " << name << " (code " << code << ") at line " << line << "\n";
        ZuXmlError::Reset();

        ZuXmlElement* added = new ZuXmlElement("book");
        added->addAttribute(new ZuXmlAttribute("id", "b2"));
        root->addChild(added);
        std::cout << "written back:\n";
        doc.write(std::cout);
    }
    section("URL streams");
    // A gzip file made on the spot, read back decompressed through a file: URL.
    if (std::system("printf 'Zu inflates this line on the fly\\nsecond line\\n' | gzip -c "
                    "> /tmp/zu_tour.txt.gz") != 0)
        std::cout << "(gzip is needed for this section)\n";
    ZuIUrlStream gz("file:/tmp/zu_tour.txt.gz", false);
    std::string line;
    std::getline(gz, line);
    std::cout << "first line of file:/tmp/zu_tour.txt.gz: " << line << "\n";
    section("Calendar and time");
    {
        ZuDateErrorCode code = kDateNoError;
        ZuGregorianCalendar cal(1582, 9, 4, code);  // 4 October 1582, the last Julian day
        auto print = [&](const char* what) {
            std::cout << what << cal.get(ZuCalendar::kYear, code) << "-"
                      << cal.get(ZuCalendar::kMonth, code) + 1 << "-"
                      << cal.get(ZuCalendar::kDate, code) << " (day of the year "
                      << cal.get(ZuCalendar::kDayOfYear, code) << ")\n";
        };
        print("before the cutover:   ");
        cal.add(ZuCalendar::kDate, 1, code);
        print("one day later:        ");
        cal.set(2004, 0, 31);
        cal.add(ZuCalendar::kMonth, 1, code);
        print("31 January + 1 month: ");
        cal.set(ZuCalendar::kHourOfDay, 15);
        cal.set(ZuCalendar::kMinute, 20);
        double instant = cal.getTimeInMillis(code);
        const char* names[] = {"millisecond", "second", "minute", "hour", "day",
                               "week", "month", "quarter", "year"};
        ZuPredefinedUnits units;
        std::cout << "2004-02-29 15:20 UTC at each time unit:";
        for (const char* name : names) {
            char* text = units.getNextUnit()->toString(instant);
            std::cout << "\n  " << name << ": " << text;
            delete[] text;
        }
        std::cout << "\n";
    }
    section("Path names");
    {
        ZuPathName dos;
        dos.setDosValue("C:\\Users\\ada\\notes.txt");
        std::cout << "DOS path: " << dos.getDosValue() << " -> Unix: " << dos.getUnixValue() << "\n";
        ZuPathName messy("src/./zu//path/../string/./string.cpp");
        std::cout << "normalised: " << static_cast<const char*>(messy) << "\n";
        // The directory is matched as one string: "*.cpp" (no directory) only matches
        // names without one, and a star after a literal prefix retries only from k+1 on.
        for (const char* pattern : {"src/zu/*/*.cpp", "src/zu/string/str?ng.*", "src/*/*.(h|cpp)", "*.cpp"}) {
            const bool hit = messy.match(ZuPathName(pattern));
            std::cout << "  matches " << pattern << ": " << (hit ? "yes" : "no") << "\n";
        }
        ZuPathList search("/nonexistent:/usr/share:/etc");
        ZuPathName found;
        if (search.findInPath(ZuPathName("passwd"), found, false))
            std::cout << "passwd found along " << search.getString() << ": " << found << "\n";
    }
    section("Modules");
    {
        // Found along ZUMODULEPATH (scripts/demo.sh points it at the sample module).
        ZuSymbol* symbol = ZuSymbol::Get("tour", true);
        std::cout << "symbol '" << symbol->getName() << "' interned once: "
                  << (ZuSymbol::Get("tour", false) == symbol ? "yes" : "no") << "\n";
        char answer[64] = "";
        ZuModule* module = ZuModule::Load("greeter", answer);
        if (module) {
            std::cout << "loaded module '" << module->getDescriptor()->getName() << "' from "
                      << module->getDescriptor()->getLibPath().getString(ZuPathName::UnixPathType)
                      << "\nits entry point said: " << answer << "\n";
            delete module;
        } else {
            std::cout << "greeter not found along ZUMODULEPATH ("
                      << ZuModule::GetErrorName(ZuModule::GetError()) << ")\n";
        }
    }
    return 0;
}
