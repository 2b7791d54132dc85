// The stream over files and other streams: URL recognition, the file-name fallback,
// chunk sizes, the history and seeking.
#include "url_servers.h"

namespace {

// A source that records the size of every read asked of it.
struct RecordingBuf : std::stringbuf {
    std::vector<std::streamsize> asks;
    using std::stringbuf::stringbuf;
    std::streamsize xsgetn(char* s, std::streamsize n) override {
        asks.push_back(n);
        return std::stringbuf::xsgetn(s, n);
    }
};

} // namespace

TEST(UrlRecognition, NeedsAKnownSchemeAndAColon) {
    const struct { const char* text; bool url; } cases[] = {
        {"http://h/p", true}, {"ftp:x", true}, {"file:/tmp", true}, {"http:", true},
        {"https://h/p", false}, {"HTTP://h/p", false}, {"fil:/x", false}, {"", false},
        {nullptr, false}};
    for (const auto& c : cases)
        EXPECT_EQ(ZuIUrlStream::IsAnURL(c.text), c.url) << (c.text ? c.text : "null");
}

TEST(UrlOpening, FallsBackToFileNamesAndFailsOnNothing) {
    TempDir dir;
    const std::string text = "first line\nsecond line\n", file = dir.write("plain.txt", text);
    dir.write("empty.txt", "");
    const struct { std::string url; bool good; } cases[] = {
        {"file:" + file, true}, {file, true}, {"file://" + file, true},
        {"file:" + dir.path + "/empty.txt", false}, // an empty resource fails the stream
        {"file:" + dir.path + "/missing.txt", false}, {dir.path, false},
        {"http://127.0.0.1", false}, {"http://127.0.0.1:8080", false}, // no path: no URL
        {"", false}};
    for (const auto& c : cases) {
        ZuIUrlStream in(c.url.c_str(), false);
        EXPECT_EQ(!in.fail(), c.good) << c.url;
        EXPECT_EQ(Slurp(in), c.good ? text : "") << c.url;
    }
}

TEST(UrlSource, ReadsOtherStreamsOwnedOrNot) {
    const std::string text = Repeat("stream data ", 300000);
    std::istringstream borrowed(text), good("x"), done;
    auto* in = new ZuIUrlStream(borrowed);
    EXPECT_TRUE(in->good() && borrowed.tellg() == 0); // nothing read yet
    EXPECT_EQ(Slurp(*in), text);
    delete in;
    EXPECT_TRUE(borrowed.eof()); // not owned: still there
    ZuIUrlStream owned(new std::istringstream(text)); // deleted with the stream
    owned.setHints(ZuIUrlStream::NoHistory);
    EXPECT_EQ(Slurp(owned), text);
    // The protocol's "bad" is inverted on purpose: true while the source is good.
    done.get();
    EXPECT_TRUE(StreamProtocol(&good).isBad());
    EXPECT_FALSE(StreamProtocol(&done).isBad() || StreamProtocol(nullptr).isBad());
    char buf[4];
    EXPECT_EQ(StreamProtocol(&done).read(buf, 4), -1);
}

TEST(UrlChunks, DoubleFromFourKilobytesToJustAboveTheLimit) {
    const struct { unsigned limit; std::vector<std::streamsize> asks; } cases[] = {
        {0x40000, {4096, 8192, 16384, 32768, 65536, 131072, 262144, 524288, 524288}},
        {16384, {4096, 8192, 16384, 32768, 32768}}, {0, {4096, 4096, 4096}}};
    for (const auto& c : cases) {
        RecordingBuf source(Repeat("0123456789", 3000000));
        std::istream src(&source);
        ZuIUrlStream in(src);
        in.setBufferLimit(c.limit);
        EXPECT_EQ(Slurp(in).size(), 3000000u);
        source.asks.resize(c.asks.size());
        EXPECT_EQ(source.asks, c.asks) << c.limit;
    }
}

TEST(UrlHistory, SeeksBackWithoutTouchingTheSource) {
    const std::string text = Repeat("abcdefghij", 1000000);
    std::istringstream source(text);
    ZuIUrlStream in(source);
    std::string part(5000, '\0');
    in.read(&part[0], 5000); // two chunks read: 12288 bytes of history
    const std::streampos sourceAt = source.tellg();
    EXPECT_EQ(in.tellg(), 5000);
    const struct { long off; std::ios::seekdir dir; long reported, at; } cases[] = {
        {10, std::ios::beg, 20, 10}, // deliberately the position plus the offset
        {0, std::ios::beg, 0, 0}, {-5, std::ios::beg, -1, 0}, {7, std::ios::cur, 14, 7},
        {-3, std::ios::cur, 1, 4}, {-100, std::ios::cur, -1, 4}, {0, std::ios::end, 12288, 12288},
        {-8, std::ios::end, 12280, 12288}, {1, std::ios::end, -1, 12288}};
    for (const auto& c : cases) {
        EXPECT_EQ(in.rdbuf()->pubseekoff(c.off, c.dir), std::streampos(c.reported)) << c.off;
        EXPECT_EQ(in.tellg(), c.at) << c.off;
    }
    EXPECT_EQ(source.tellg(), sourceAt); // all of that came from the history
    in.seekg(0);
    EXPECT_EQ(Slurp(in), text);
    // Past the end: filled to the end of the input and no further.
    EXPECT_EQ(in.rdbuf()->pubseekpos(2000000), std::streampos(3000000));
    EXPECT_EQ(in.tellg(), 1000000);
    // Without history there is nothing to seek in.
    std::istringstream again(text);
    ZuIUrlStream bare(again);
    bare.setHints(ZuIUrlStream::NoHistory);
    EXPECT_EQ(bare.get(), 'a');
    EXPECT_EQ(bare.rdbuf()->pubseekpos(0), std::streampos(-1));
}
