// HTTP through a real server (Python's http.server on port 80) and through scripted
// servers that answer with every header form and misbehave in every way.
#include "url_servers.h"

namespace {

using Pieces = std::vector<std::string>;

// Reads the request of the i-th connection, then sends the pieces reply(i, request)
// gives, pausing pauseMs after each.
bool Serve(ScriptServer& server, std::function<Pieces(int, const std::string&)> reply,
           int pauseMs) {
    return server.start(80, [=](int c, int i) {
        for (const std::string& piece : reply(i, ReadUntil(c, "\n\n"))) {
            SendText(c, piece);
            Pause(pauseMs);
        }
    });
}

// An HttpProtocol whose waits last ms milliseconds instead of 10 seconds.
struct QuickHttp : HttpProtocol {
    QuickHttp(const char* path, int ms) : HttpProtocol("127.0.0.1", path, 80) {
        _timeout = {ms / 1000, (ms % 1000) * 1000};
    }
};

std::string HeaderOf(const ZuIUrlStream& in) { return in.getHeader() ? in.getHeader() : ""; }

#define NEED_PORT_80(ok) \
    if (!(ok)) GTEST_SKIP() << "cannot listen on 127.0.0.1 port 80 (taken, or not root)"

} // namespace

TEST(HttpServer, ServesFilesGzipAndErrorPagesOnPort80) {
    TempDir dir;
    const std::string text = "first line\n" + Repeat("served over http\n", 1700000);
    dir.write("t.txt", text);
    dir.write("t.txt.gz", Pack(text, 31));
    dir.write("empty.txt", "");
    ChildServer http;
    if (!http.start("/usr/bin/python3 -m http.server --bind 127.0.0.1 -d " + dir.path + " 80", 80))
        GTEST_SKIP() << "no http.server on 127.0.0.1 port 80: port taken, not root or no python3";
    const struct { const char* url; const char* status; } cases[] = {
        {"http://127.0.0.1/t.txt", "HTTP/1.0 200"},
        {"http://127.0.0.1:8080/t.txt", "HTTP/1.0 200"}, // the port is ignored
        {"http://localhost/t.txt.gz", "HTTP/1.0 200"},  // decompressed by its magic
        {"http://user:pw@127.0.0.1/t.txt", "HTTP/1.0 200"},
        {"http://127.0.0.1/none.txt", "HTTP/1.0 404"}, // the error page is the body
        {"http://127.0.0.1/empty.txt", nullptr}};
    for (const auto& c : cases) {
        ZuIUrlStream in(c.url, false);
        ASSERT_EQ(!in.fail(), c.status != nullptr) << c.url;
        const std::string header = HeaderOf(in), body = Slurp(in);
        EXPECT_EQ(header.rfind(c.status ? c.status : "", 0), 0u) << header;
        EXPECT_EQ(header.substr(header.size() - (c.status ? 4 : 0)), c.status ? "\r\n\r\n" : "");
        EXPECT_TRUE(!c.status ? body.empty()
                    : c.status[9] == '2' ? body == text : body.find("404") != std::string::npos)
            << c.url;
    }
}

TEST(HttpHeader, RecognisesBothEndingsAndRawReplies) {
    const struct { std::string reply, header, body; } cases[] = {
        {"HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody", "HTTP/1.0 200 OK\r\nA: b\r\n\r\n", "body"},
        {"HTTP/1.0 200 OK\r\nA: b\r\n\nbody", "HTTP/1.0 200 OK\r\nA: b\r\n\n", "body"},
        {"HTTP/1.0 200 OK\r\n\n\nbody", "HTTP/1.0 200 OK\r\n\n", "body"}, // LF not given back
        {"no header at all\r\n\r\nraw", "", "no header at all\r\n\r\nraw"},
        {"ab", "", "ab"}};
    std::vector<std::string> requests;
    ScriptServer server;
    NEED_PORT_80(Serve(server, [&](int i, const std::string& request) {
        requests.push_back(request);
        return Pieces{cases[i].reply};
    }, 0));
    for (const auto& c : cases) {
        ZuIUrlStream in("http://127.0.0.1/a/b?c", false);
        EXPECT_EQ(HeaderOf(in), c.header) << c.reply;
        EXPECT_EQ(Slurp(in), c.body) << c.reply;
    }
    server.stop();
    EXPECT_EQ(requests.at(0), "GET /a/b?c HTTP/1.0\nUser-Agent: Mozilla/1.5\n"
                              "Host: 127.0.0.1\nAccept: */*\n\n");
}

TEST(HttpHeader, SurvivesSplitsAtEveryByte) {
    const std::string text = Repeat("split body ", 400);
    const std::string header = "HTTP/1.0 200 OK\r\nContent-Type: x\r\n\r\n";
    const std::string reply = header + Pack(text, 31); // the gzip magic is split too
    ScriptServer server;
    NEED_PORT_80(Serve(server, [&](int i, const std::string&) {
        return Pieces{reply.substr(0, i + 1), reply.substr(i + 1)};
    }, 20));
    for (size_t k = 1; k < reply.size(); ++k) {
        ZuIUrlStream in("http://127.0.0.1/s", false);
        EXPECT_EQ(HeaderOf(in), header) << k;
        EXPECT_EQ(Slurp(in), text) << k;
    }
}

TEST(HttpHeader, HostileServersNeverBreakTheStream) {
    const std::string slow = "HTTP/1.0 200 OK\r\nX: y\r\n\r\nslow body";
    ScriptServer server;
    NEED_PORT_80(Serve(server, [&](int i, const std::string&) {
        Pieces cut{"HTTP/1.0 200 OK\r\nContent-Len"}, nothing, byByte;
        for (char ch : slow)
            byByte.push_back(std::string(1, ch));
        return i == 0 ? cut : i == 1 ? nothing : byByte;
    }, 2));
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/cut", false).fail());   // closed mid-header
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/empty", false).fail()); // closed at once
    ZuIUrlStream in("http://127.0.0.1/slow", false);
    EXPECT_EQ(Slurp(in), "slow body");
    server.stop();
    // An endless header: the stream gives up instead of reading for ever.
    NEED_PORT_80(server.start(80, [](int c, int) {
        ReadUntil(c, "\n\n");
        const std::string line = "HTTP/1.0 200 OK\r\nX-Filler: " + std::string(1000, 'a');
        while (send(c, line.data(), line.size(), MSG_NOSIGNAL) > 0) {
        }
    }));
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/endless", false).fail());
    server.stop();
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/nobody", false).fail()); // nobody listening
}

TEST(HttpTimeout, TwoSilentPeriodsInARowEndTheData) {
    ScriptServer server;
    NEED_PORT_80(server.start(80, [](int c, int i) {
        ReadUntil(c, "\n\n");
        if (i == 0)
            return (void)ReadUntil(c, "never sent"); // until the client goes
        Pause(1500);
        SendText(c, "HTTP/1.0 200 OK\r\n\r\nlate");
    }));
    char buffer[64]; // silent for two periods, then late within the second one
    EXPECT_EQ(QuickHttp("/silent", 1000).read(buffer, sizeof buffer), -1);
    EXPECT_EQ(QuickHttp("/late", 1000).read(buffer, sizeof buffer), 4);
    EXPECT_EQ(std::string(buffer, 4), "late");
}
