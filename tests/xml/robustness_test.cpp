// Robustness: random, mutated and truncated documents, in UTF-8 and UTF-16, must all end
// with a consistent outcome (and stay clean under the sanitizers).
#include "xml_corpus.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

namespace {

class Fuzzer {
public:
    explicit Fuzzer(unsigned seed) : _rng(seed) {}

    unsigned pick(size_t n) { return unsigned(std::uniform_int_distribution<size_t>(0, n - 1)(_rng)); }

    std::string mutate(std::string s) {
        static const char* const Tokens[] = {
            "<", ">", "&", "&#", "&#x", ";", "]", "]]>", "?>", "<?", "<!--", "-->", "--",
            "<![CDATA[", "<!DOCTYPE a [", "'", "\"", "=", "/", "%", "[", " ", "\n", "</",
            "<?xml version='1.0'?>", "&lt;", "&quote;", "xml:space='preserve'", "\xC3",
            "\xE4\xB8", "\xFF", "\xEF\xBB\xBF"};
        for (unsigned edits = 1 + pick(4); edits > 0; --edits) {
            const size_t at = s.empty() ? 0 : pick(s.size() + 1);
            switch (pick(5)) {
            case 0:
                if (!s.empty())
                    s[at % s.size()] = char(pick(256));
                break;
            case 1: s.insert(at, Tokens[pick(sizeof Tokens / sizeof *Tokens)]); break;
            case 2: s.erase(at, pick(8)); break;
            case 3: s.insert(at, s.substr(pick(s.size() + 1), pick(16))); break;
            default: s.insert(at, 1, '\0'); break;
            }
        }
        return s;
    }

    std::string noise(size_t length) {
        std::string s = pick(2) ? "<" : "";
        while (s.size() < length)
            s += "<>/&;=' \"ab!?-[]#x\n"[pick(20)];
        return s;
    }

private:
    std::mt19937 _rng;
};

std::string widened(const std::string& s, bool big) {
    std::string out = big ? "\xFE\xFF" : "\xFF\xFE";
    for (char c : s) {
        out += big ? '\0' : c;
        out += big ? c : '\0';
    }
    return out;
}

void check(const std::string& input) {
    ZuXmlDocument doc;
    const XmlOutcome o = parseInto(doc, input);
    ASSERT_GE(o.code, 0) << input;
    ASSERT_LE(o.code, 26) << input;
    if (o.code == 0) {
        ASSERT_NE(doc.getRootElement(), nullptr) << input;
        std::ostringstream out;
        doc.write(out);
        ASSERT_FALSE(out.str().empty());
        return;
    }
    ASSERT_EQ(o.severity, o.code == 4 ? 1 : 2) << input;
    ASSERT_EQ(doc.getRootElement(), nullptr) << input;
    if (o.code != 2) {
        ASSERT_EQ(nodeCount(doc), 0u) << "a failed parse empties the document:\n" << input;
    }
}

} // namespace

TEST(XmlRobustness, TruncatedMutatedAndRandomInputsEndConsistently) {
    std::vector<std::string> seeds = handWrittenDocuments();
    XmlCorpusGenerator generator(99);
    for (int i = 0; i < 20; ++i)
        seeds.push_back(generator.document());
    seeds.push_back("<!DOCTYPE d PUBLIC \"-//x//y\" 'd.dtd' [ <!ENTITY e 'v'> ]><d>&e;</d>");
    seeds.push_back(std::string(300, '<') + "a>" + std::string(40, '>'));

    Fuzzer fuzzer(1234);
    size_t inputs = 0;
    for (const std::string& seed : seeds) {
        // Truncations, at up to 60 places spread over the document.
        const size_t step = seed.size() / 60 + 1;
        for (size_t n = 0; n < seed.size(); n += step, ++inputs) {
            check(seed.substr(0, n));
            if (HasFatalFailure())
                return;
        }
    }
    for (int i = 0; i < 2500; ++i, ++inputs) {
        const std::string input = fuzzer.mutate(seeds[fuzzer.pick(seeds.size())]);
        check(i % 10 == 0 ? widened(input, i % 20 == 0) : input);
        if (HasFatalFailure())
            return;
    }
    for (int i = 0; i < 500; ++i, ++inputs) {
        check(fuzzer.noise(8 + fuzzer.pick(200)));
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(inputs, 3000u);
}
