// The stream over files and other streams: URL recognition and the file-name fallback,
// chunk sizes, the history and seeking.
#include "url_servers.h"

TEST(UrlOpening, FallsBackToFileNamesAndFailsOnNothing) {
    TempDir dir;
    const std::string text = "first line\nsecond line\n", file = dir.write("plain.txt", text);
    dir.write("empty.txt", "");
    const struct { std::string url; bool isUrl, good; } cases[] = {
        {"file:" + file, true, true}, {file, false, true}, {"file://" + file, true, true},
        {"file:" + dir.path + "/empty.txt", true, false}, // an empty resource fails
        {"file:" + dir.path + "/missing.txt", true, false}, {dir.path, false, false},
        {"http://127.0.0.1", true, false}, {"http://127.0.0.1:8080", true, false}, // no path
        {"http:", true, false}, {"https://127.0.0.1/x", false, false}, {"FTP://h/x", false, false},
        {"fil:" + file, false, false}, {"", false, false}};
    for (const auto& c : cases) {
        ZuIUrlStream in(c.url.c_str(), false);
        EXPECT_EQ(ZuIUrlStream::IsAnURL(c.url.c_str()), c.isUrl) << c.url;
        EXPECT_EQ(!in.fail(), c.good) << c.url;
        EXPECT_EQ(Slurp(in), c.good ? text : "") << c.url;
    }
    EXPECT_FALSE(ZuIUrlStream::IsAnURL(nullptr));
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
    EXPECT_EQ(owned.rdbuf()->pubseekpos(0), std::streampos(-1)); // no history to seek in
    // Without history, a fill asked for directly that ends the input leaves nothing of
    // the released read block readable.
    std::istringstream small(std::string(5000, 'x'));
    ZuIUrlStream direct(small);
    direct.setHints(ZuIUrlStream::NoHistory);
    direct.get();
    auto* buffer = static_cast<ZuUrlBuf*>(direct.rdbuf());
    EXPECT_EQ(buffer->fillbuf(), 904);
    EXPECT_EQ(buffer->fillbuf(), -1);
    EXPECT_EQ(direct.get(), EOF);
    // The protocol's "bad" is inverted on purpose: true while the source is good.
    done.get();
    EXPECT_TRUE(StreamProtocol(&good).isBad() && !StreamProtocol(&done).isBad());
    EXPECT_FALSE(StreamProtocol(nullptr).isBad());
}

TEST(UrlChunks, DoubleFromFourKilobytesToJustAboveTheLimit) {
    struct RecordingBuf : std::stringbuf { // records the size of every read asked of it
        std::vector<std::streamsize> asks;
        using std::stringbuf::stringbuf;
        std::streamsize xsgetn(char* s, std::streamsize n) override {
            asks.push_back(n);
            return std::stringbuf::xsgetn(s, n);
        }
    };
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
}
