// The quoted text form, word reading and plain output.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(QuotedForm, EscapesAndReadsBack) {
    const ZuString said("say \"hi\" \\ now");
    std::ostringstream out;
    said.writeQuoted(out);
    EXPECT_EQ("\"say \\\"hi\\\" \\\\ now\"", out.str());

    std::istringstream in("junk, more junk " + out.str() + "tail");
    ZuString back("previous text");
    back.readQuoted(in);
    EXPECT_STREQ(said.getValue(), back.getValue());
    std::string rest;
    std::getline(in, rest);
    EXPECT_EQ("tail", rest); // the closing quote is consumed, nothing after it
    EXPECT_TRUE(in.flags() & std::ios_base::skipws);

    const struct {
        const char *input, *text;
    } cases[] = {
        {"\"\"", ""},
        {"no quote at all", ""},
        {"\"unfinished \\\"text", "unfinished \"text"},
        {"\"\\a\\n\\\\\"", "an\\"}, // an escape only makes the next character literal
        {"\n\t \"  spaced \" x", "  spaced "},
    };
    for (const auto& c : cases) {
        std::istringstream is(c.input);
        ZuString s("old");
        s.readQuoted(is);
        EXPECT_STREQ(c.text, s.getValue()) << c.input;
    }
    std::string longText(5000, 'q');
    longText[1234] = '"';
    std::ostringstream longOut;
    ZuString(longText.c_str()).writeQuoted(longOut);
    std::istringstream longIn(longOut.str());
    ZuString longBack;
    longBack.readQuoted(longIn);
    EXPECT_EQ(longText, longBack.getValue());
}

TEST(QuotedForm, MultibyteTextPassesAsBytes) {
    ZU_IN_UTF8_LOCALE();
    std::ostringstream out;
    ZuString("«ça\"va»").writeQuoted(out);
    EXPECT_EQ("\"«ça\\\"va»\"", out.str());
    std::istringstream in(out.str());
    ZuString back;
    back.readQuoted(in);
    EXPECT_EQ(7, back.getLength());
    EXPECT_EQ(1, back.getInternal()->getType());
}

TEST(WordReading, SkipsDelimitersAndStopsAfterOne) {
    const char words[] = " \t\r\n\0word1\tsecond\0third";
    std::istringstream in(std::string(words, sizeof words - 1));
    ZuString a, b, c, d("kept?");
    in >> a >> b;
    EXPECT_STREQ("word1", a.getValue());
    EXPECT_STREQ("second", b.getValue());
    EXPECT_TRUE(in.good());
    in >> c; // ended by the end of the stream: a word all the same
    EXPECT_STREQ("third", c.getValue());
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.fail());
    in >> d;
    EXPECT_TRUE(d.isEmpty());
    EXPECT_TRUE(in.fail());

    std::istringstream blanks("  \t\n \n");
    ZuString e("old");
    blanks >> std::noskipws >> e;
    EXPECT_TRUE(e.isEmpty());
    EXPECT_FALSE(blanks.flags() & std::ios_base::skipws); // the caller's flags are back

    std::string longWord(3000, 'w');
    std::istringstream longIn(longWord + " next");
    ZuString f;
    longIn >> f;
    EXPECT_EQ(longWord, f.getValue());
    std::ostringstream out;
    out << f.getSubString(0, 3) << '|' << ZuString();
    EXPECT_EQ("www|", out.str());
}
