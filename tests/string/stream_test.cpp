// The quoted text form, word reading and plain output.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

TEST(QuotedForm, EscapesAndReadsBack) {
    const ZuString said("say \"hi\" \\ now");
    std::ostringstream out;
    said.writeQuoted(out);
    EXPECT_EQ("\"say \\\"hi\\\" \\\\ now\"", out.str());
    std::istringstream in("junk, more junk " + out.str() + "tail");
    ZuString back("previous text");
    back.readQuoted(in);
    EXPECT_STREQ(said.getValue(), back.getValue());
    EXPECT_EQ('t', in.get()); // the closing quote is consumed, nothing after it
    const struct {
        const char *input, *text;
    } cases[] = {
        {"no quote at all", ""},
        {"\"unfinished \\\"text", "unfinished \"text"},
        {"\"\\a\\n\\\\\"", "an\\"}, // an escape only makes the next character literal
        {"\n\t \"  spaced \" x", "  spaced "},
    };
    for (const auto& c : cases) {
        std::istringstream is(c.input);
        ZuString s("old");
        EXPECT_STREQ(c.text, (s.readQuoted(is), s.getValue())) << c.input;
    }
}

TEST(QuotedForm, MultibyteTextPassesAsBytes) {
    ZU_IN_UTF8_LOCALE();
    std::stringstream io;
    ZuString("«ça\"va»").writeQuoted(io);
    EXPECT_EQ("\"«ça\\\"va»\"", io.str());
    ZuString back;
    back.readQuoted(io);
    EXPECT_EQ(7, back.getLength());
}

TEST(WordReading, SkipsDelimitersAndStopsAfterOne) {
    const char words[] = " \t\r\n\0word1\tsecond\0third";
    std::istringstream in(std::string(words, sizeof words - 1));
    ZuString a, b, c, d("kept?");
    in >> a >> b;
    EXPECT_STREQ("word1", a.getValue());
    EXPECT_STREQ("second", b.getValue());
    in >> c; // ended by the end of the stream: a word all the same
    EXPECT_STREQ("third", c.getValue());
    EXPECT_TRUE(in.eof() && !in.fail());
    std::istringstream blanks("  \t\n \n");
    blanks >> std::noskipws >> d;
    EXPECT_TRUE(d.isEmpty() && blanks.fail());
    EXPECT_FALSE(blanks.flags() & std::ios_base::skipws); // the caller's flags are back
    const std::string longWord(3000, 'w'); // several reading chunks
    std::istringstream longIn(longWord + " next");
    longIn >> d;
    EXPECT_EQ(longWord, d.getValue());
    std::ostringstream out;
    out << d.getSubString(0, 3) << '|' << ZuString();
    EXPECT_EQ("www|", out.str());
}
