// HTTP through a real server (Python's http.server on port 80) and through scripted
// servers that answer with every header form and misbehave in every way.
#include <zu/url.h>

#include "url_servers.h"

#include <gtest/gtest.h>
#include <zlib.h>

using namespace urltest;

namespace {

// Serves replies[i] to the i-th connection, piece by piece with a pause between pieces,
// after reading the request; the requests are kept.
struct Replies {
    std::vector<std::vector<std::string>> replies;
    int pauseMs = 20;
    std::vector<std::string> requests;
    ScriptServer server;
    bool start() {
        return server.start(80, [this](int c, int i) {
            requests.push_back(ReadUntil(c, "\n\n"));
            for (const std::string& piece : replies[static_cast<size_t>(i) % replies.size()]) {
                SendText(c, piece);
                Pause(pauseMs);
            }
        });
    }
};

std::string Gzip(const std::string& text) {
    uLongf size = compressBound(text.size()) + 32;
    std::string out(size, '\0');
    z_stream z{};
    deflateInit2(&z, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    z.avail_in = static_cast<uInt>(text.size());
    z.next_out = reinterpret_cast<Bytef*>(&out[0]);
    z.avail_out = static_cast<uInt>(size);
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

// An HttpProtocol whose waits last ms milliseconds instead of 10 seconds.
struct QuickHttp : HttpProtocol {
    QuickHttp(const char* path, int ms) : HttpProtocol("127.0.0.1", path, 80) {
        _timeout = {ms / 1000, (ms % 1000) * 1000};
    }
};

#define NEED_PORT_80(ok) \
    if (!(ok)) GTEST_SKIP() << "cannot listen on 127.0.0.1 port 80 (taken, or not root)"

} // namespace

TEST(HttpServer, ServesFilesGzipAndErrorPagesOnPort80) {
    TempDir dir;
    const std::string text = "first line\n" + Repeat("served over http\n", 100000);
    dir.write("t.txt", text);
    dir.write("t.txt.gz", Gzip(text));
    dir.write("empty.txt", "");
    ChildServer http;
    if (access("/usr/bin/python3", X_OK) != 0)
        GTEST_SKIP() << "/usr/bin/python3 is needed to run http.server";
    NEED_PORT_80(http.start({"/usr/bin/python3", "-m", "http.server", "--bind", "127.0.0.1",
                             "--directory", dir.path, "80"}, 80));
    const struct { const char* url; const char* status; bool body; } cases[] = {
        {"http://127.0.0.1/t.txt", "HTTP/1.0 200", true},
        {"http://127.0.0.1:8080/t.txt", "HTTP/1.0 200", true}, // the port is ignored
        {"http://localhost/t.txt.gz", "HTTP/1.0 200", true},  // decompressed by magic
        {"http://user:pw@127.0.0.1/t.txt", "HTTP/1.0 200", true},
        {"http://127.0.0.1/none.txt", "HTTP/1.0 404", false}, // error page as body
        {"http://127.0.0.1/empty.txt", nullptr, false}};
    for (const auto& c : cases) {
        ZuIUrlStream in(c.url, false);
        ASSERT_EQ(!in.fail(), c.status != nullptr) << c.url;
        if (!c.status)
            continue;
        const std::string header = in.getHeader() ? in.getHeader() : "";
        EXPECT_EQ(header.rfind(c.status, 0), 0u) << header;
        EXPECT_EQ(header.substr(header.size() - 4), "\r\n\r\n") << c.url;
        const std::string body = Slurp(in);
        EXPECT_EQ(body == text, c.body) << c.url;
        EXPECT_TRUE(c.body || body.find("404") != std::string::npos) << body;
    }
}

TEST(HttpHeader, RecognisesBothEndingsAndRawReplies) {
    const struct { std::string reply, header, body; } cases[] = {
        {"HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody", "HTTP/1.0 200 OK\r\nA: b\r\n\r\n", "body"},
        {"HTTP/1.0 200 OK\r\nA: b\r\n\nbody", "HTTP/1.0 200 OK\r\nA: b\r\n\n", "body"},
        {"HTTP/1.0 200 OK\r\n\n\nbody", "HTTP/1.0 200 OK\r\n\n", "body"}, // LF not given back
        {"no header at all\r\n\r\nraw", "", "no header at all\r\n\r\nraw"},
        {"ab", "", "ab"}};
    Replies server;
    for (const auto& c : cases)
        server.replies.push_back({c.reply});
    NEED_PORT_80(server.start());
    for (const auto& c : cases) {
        ZuIUrlStream in("http://127.0.0.1/a/b?c", false);
        EXPECT_EQ(in.getHeader() ? in.getHeader() : "", c.header) << c.reply;
        EXPECT_EQ(Slurp(in), c.body) << c.reply;
    }
    server.server.stop();
    EXPECT_EQ(server.requests.at(0), "GET /a/b?c HTTP/1.0\nUser-Agent: Mozilla/1.5\n"
                                     "Host: 127.0.0.1\nAccept: */*\n\n");
}

TEST(HttpHeader, SurvivesSplitsAtEveryByte) {
    const std::string text = Repeat("split body ", 400);
    const std::string header = "HTTP/1.0 200 OK\r\nContent-Type: x\r\n\r\n";
    const std::string reply = header + Gzip(text);
    Replies server;
    for (size_t k = 1; k < reply.size(); ++k)
        server.replies.push_back({reply.substr(0, k), reply.substr(k)});
    NEED_PORT_80(server.start());
    for (size_t k = 1; k < reply.size(); ++k) {
        ZuIUrlStream in("http://127.0.0.1/s", false);
        EXPECT_EQ(in.getHeader() ? in.getHeader() : "", header) << k;
        EXPECT_EQ(Slurp(in), text) << k;
    }
}

TEST(HttpHeader, HostileServersNeverBreakTheStream) {
    const std::string slow = "HTTP/1.0 200 OK\r\nX: y\r\n\r\nslow body";
    Replies server;
    server.pauseMs = 2;
    server.replies = {{"HTTP/1.0 200 OK\r\nContent-Len"}, {}, {}};
    for (char ch : slow)
        server.replies[2].push_back(std::string(1, ch));
    NEED_PORT_80(server.start());
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/cut", false).fail());   // closed mid-header
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/empty", false).fail()); // closed at once
    ZuIUrlStream in("http://127.0.0.1/slow", false);
    EXPECT_EQ(Slurp(in), "slow body");
    server.server.stop();

    // An endless header: the stream gives up instead of reading for ever.
    ScriptServer endless;
    NEED_PORT_80(endless.start(80, [](int c, int) {
        ReadUntil(c, "\n\n");
        SendText(c, "HTTP/1.0 200 OK\r\n");
        const std::string line = "X-Filler: " + std::string(1000, 'a') + "\r\n";
        while (send(c, line.data(), line.size(), MSG_NOSIGNAL) > 0) {
        }
    }));
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/endless", false).fail());
    endless.stop();
    // Nobody listening at all.
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/nobody", false).fail());
}

TEST(HttpTimeout, TwoSilentPeriodsInARowEndTheData) {
    ScriptServer server;
    NEED_PORT_80(server.start(80, [](int c, int i) {
        ReadUntil(c, "\n\n");
        if (i == 0) {
            char ch;
            recv(c, &ch, 1, 0); // silent until the client goes
        } else {
            Pause(1500); // within the second waiting period
            SendText(c, "HTTP/1.0 200 OK\r\n\r\nlate");
        }
    }));
    char buffer[64];
    {
        QuickHttp silent("/silent", 1000);
        EXPECT_EQ(silent.read(buffer, sizeof buffer), -1);
    }
    QuickHttp late("/late", 1000);
    EXPECT_EQ(late.read(buffer, sizeof buffer), 4);
    EXPECT_EQ(std::string(buffer, 4), "late");
}
