// Robustness: random, mutated and truncated documents, in UTF-8 and UTF-16, must all end
// with a consistent outcome (and stay clean under the sanitizers).
#include "xml_corpus.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

namespace {

// One to four random edits: a byte, a markup token, a deletion, a copy of a piece, or a
// NUL (read as the end of the input).
std::string mutated(std::string s, std::mt19937& rng) {
    static const char* const Tokens[] = {
        "<", ">", "&", "&#", "&#x", ";", "]", "]]>", "?>", "<?", "<!--", "-->", "--",
        "<![CDATA[", "<!DOCTYPE a [", "'", "\"", "=", "/", "%", "[", " ", "\n", "</",
        "<?xml version='1.0'?>", "&lt;", "&quote;", "xml:space='preserve'", "\xC3",
        "\xE4\xB8", "\xFF", "\xEF\xBB\xBF"};
    for (unsigned edits = 1 + rng() % 4; edits > 0; --edits) {
        const size_t at = rng() % (s.size() + 1);
        switch (rng() % 5) {
        case 0: s.insert(at, 1, char(rng())); break;
        case 1: s.insert(at, Tokens[rng() % (sizeof Tokens / sizeof *Tokens)]); break;
        case 2: s.erase(at, rng() % 8); break;
        case 3: s.insert(at, s.substr(rng() % (s.size() + 1), rng() % 16)); break;
        default: s.insert(at, 1, '\0'); break;
        }
    }
    return s;
}

void check(const std::string& input) {
    ZuXmlDocument doc;
    const XmlOutcome o = parseInto(doc, input);
    ASSERT_TRUE(o.code >= 0 && o.code <= 26) << o.code << ": " << input;
    if (o.code == 0) {
        ASSERT_NE(doc.getRootElement(), nullptr) << input;
        ASSERT_FALSE(written(doc).empty());
        return;
    }
    ASSERT_EQ(o.severity, o.code == 4 ? 1 : 2) << input;
    ASSERT_EQ(doc.getRootElement(), nullptr) << input;
    ASSERT_TRUE(o.code == 2 || nodeCount(doc) == 0) << "a failed parse empties it:\n" << input;
}

} // namespace

TEST(XmlRobustness, TruncatedMutatedAndRandomInputsEndConsistently) {
    std::vector<std::string> seeds = corpus(99, 20), inputs;
    seeds.push_back("<!DOCTYPE d PUBLIC \"-//x//y\" 'd.dtd' [ <!ENTITY e 'v'> ]><d>&e;</d>");
    seeds.push_back(std::string(300, '<') + "a>" + std::string(40, '>'));
    for (const std::string& seed : seeds) // truncated at up to 60 places
        for (size_t n = 0; n < seed.size(); n += seed.size() / 60 + 1)
            inputs.push_back(seed.substr(0, n));
    std::mt19937 rng(1234);
    for (int i = 0; i < 2500; ++i) {
        const std::string input = mutated(seeds[rng() % seeds.size()], rng);
        // One in ten goes in UTF-16 with its mark (bytes from 0x80 as 0xFF80 and up).
        const std::u16string wide = u"\uFEFF" + std::u16string(input.begin(), input.end());
        inputs.push_back(i % 10 == 0 ? utf16(wide, i % 20 == 0) : input);
    }
    for (int i = 0; i < 500; ++i) { // markup noise
        std::string noise = rng() % 2 ? "<" : "";
        for (size_t length = 8 + rng() % 200; noise.size() < length;)
            noise += "<>/&;=' \"ab!?-[]#x\n"[rng() % 20];
        inputs.push_back(noise);
    }
    ASSERT_GT(inputs.size(), 3000u);
    for (const std::string& input : inputs) {
        check(input);
        if (HasFatalFailure())
            return;
    }
}
