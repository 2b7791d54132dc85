// Well-formed documents for the differential and robustness tests: a few written by
// hand and a generator. They use only the entities lt, gt and amp, character references
// below 128, no DOCTYPE, no namespace prefixes, no literal carriage return, only blanks
// as literal white space in attribute values, and characters of the Basic Multilingual
// Plane.
#ifndef ZU_TESTS_XML_CORPUS_H
#define ZU_TESTS_XML_CORPUS_H

#include <algorithm>
#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <vector>

inline const std::vector<std::string>& handWrittenDocuments() {
    static const std::vector<std::string> docs = {
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<!-- prolog --><?pi data?>\n<root a=\"1\" b='two &amp; three'>\n"
        "  <item id=\"x&lt;y\">text &gt; more<!-- c -->tail</item>\n"
        "  <empty/><cdata><![CDATA[<not> & markup]]>after</cdata>\n</root>\n<!-- end -->",
        "<r>&#65;&#x42;&#x63;&lt;&gt;&amp;&#32;&#9;&#10;x[0]]</r>",
        "<caf\xC3\xA9 \xCE\xB1\xCE\xB2=\"\xE2\x82\xAC 5\" \xE4\xB8\xAD\xE6\x96\x87='\"q\"'>"
        "na\xC3\xAFve<\xCE\xB4\xC2\xB7-1.x_/></caf\xC3\xA9>",
        "<a><b><c><d><e>deep</e></d></c></b>\n\t<b>again</b></a>",
        "<?xml version='1.0'?><doc attr=\"it's\" other='say \"hi\"'>"
        "<?proc instruction with data?>mixed<x/>content<y>&#34;&#39;</y></doc>",
        "<t>  <![CDATA[]]>  <!---->  </t>",
    };
    return docs;
}

// A random document: XML declaration and Misc around a root element tree of depth <= 5.
class XmlCorpusGenerator {
public:
    explicit XmlCorpusGenerator(unsigned seed) : _rng(seed) {}

    std::string document() {
        std::string s = pick(2) == 0 ? ""
                        : pick(2)    ? "<?xml version=\"1.0\"?>"
                                     : "<?xml version='1.0' encoding='UTF-8'?>\n";
        misc(s);
        element(s, 0);
        misc(s);
        // Zu reads UTF-8 only from a first byte "<", and a document of at least 8 bytes.
        s.erase(0, s.find('<'));
        return s.size() < 8 ? s + std::string(8 - s.size(), ' ') : s;
    }

private:
    unsigned pick(unsigned n) { return std::uniform_int_distribution<unsigned>(0, n - 1)(_rng); }
    template <size_t N> const char* any(const char* const (&pieces)[N]) { return pieces[pick(N)]; }

    void misc(std::string& s) {
        for (unsigned i = pick(3); i > 0; --i)
            s += pick(3) == 0 ? "\n  "
                 : pick(2)    ? "<!--" + plain(8) + "-->"
                              : "<?pi " + plain(8) + "?>";
    }

    std::string name() {
        static const char* const First[] = {"a", "b", "item", "Node", "_u", "\xC3\xA9t\xC3\xA9",
                                            "\xCE\xB1", "\xE4\xB8\xAD"};
        static const char* const Rest[] = {"", "1", "-x", ".y", "_z", "\xC2\xB7", "\xC3\xA8", "2b"};
        return std::string(any(First)) + any(Rest) + any(Rest);
    }

    // Text without markup characters, references or a "-" (safe inside comments).
    std::string plain(unsigned max) {
        static const char* const Pieces[] = {"a", "Z", "0", " ", ".", "\xC3\xA9", "\xE2\x82\xAC",
                                             "\xE4\xB8\xAD", "'", "\"", "=", "?", "/", ")"};
        std::string s;
        for (unsigned i = pick(max); i > 0; --i)
            s += any(Pieces);
        return s;
    }

    std::string reference() {
        static const char* const Named[] = {"&lt;", "&gt;", "&amp;"};
        const unsigned code = pick(3) == 0 ? 9 + pick(2) : 32 + pick(95);
        char ref[16];
        std::snprintf(ref, sizeof ref, pick(2) ? "&#%u;" : pick(2) ? "&#x%x;" : "&#x%X;", code);
        return pick(2) ? any(Named) : ref;
    }

    void element(std::string& s, unsigned depth) {
        const std::string tag = name();
        s += "<" + tag;
        std::set<std::string> used;
        for (unsigned i = pick(4); i > 0; --i) {
            const std::string attribute = name();
            const char quote = pick(2) ? '"' : '\'';
            std::string value;
            for (unsigned k = pick(5); k > 0; --k)
                value += pick(3) ? plain(4) : reference();
            std::replace(value.begin(), value.end(), quote, '_');
            if (used.insert(attribute).second)
                s += (pick(3) ? " " : "\n ") + attribute + (pick(4) ? "=" : " = ") + quote + value +
                     quote;
        }
        if (pick(4) == 0) {
            s += pick(2) ? "/>" : " />";
            return;
        }
        s += ">";
        for (unsigned i = pick(6); i > 0; --i) {
            switch (pick(depth < 5 ? 8 : 6)) {
            case 0: s += plain(10); break;
            case 1: s += reference(); break;
            case 2: s += "<!--" + plain(6) + "-->"; break;
            case 3: s += "<![CDATA[" + plain(6) + "<&>]" + "]]>"; break;
            case 4: s += "<?pi" + (pick(2) ? " " + plain(6) : std::string()) + "?>"; break;
            case 5: s += pick(2) ? "\n" + std::string(depth * 2, ' ') : "]\t>"; break;
            default: element(s, depth + 1); break;
            }
        }
        s += "</" + tag + (pick(4) ? ">" : " >");
    }

    std::mt19937 _rng;
};

// The hand-written documents followed by count generated from seed.
inline std::vector<std::string> corpus(unsigned seed, int count) {
    std::vector<std::string> docs = handWrittenDocuments();
    XmlCorpusGenerator generator(seed);
    while (count-- > 0)
        docs.push_back(generator.document());
    return docs;
}

#endif
