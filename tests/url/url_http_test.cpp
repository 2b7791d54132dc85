// HTTP through a real server (Python's http.server on port 80) and through scripted
// servers that answer with every header form and misbehave in every way.
#include "url_servers.h"

using Pieces = std::vector<std::string>;

// Reads the request of the i-th connection, then sends the pieces reply(i, request)
// gives, pausing pauseMs between them.
bool Serve(ScriptServer& server, std::function<Pieces(int, const std::string&)> reply,
           int pauseMs) {
    return server.start(80, [=](int c, int i) {
        for (const std::string& piece : reply(i, ReadUntil(c, "\n\n")))
            SendText(c, (Pause(pauseMs), piece));
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

TEST(HttpServer, ServesFilesGzipAndErrorPagesOnPort80) {
    TempDir dir;
    const std::string text = "first line\n" + Repeat("served over http\n", 1700000);
    dir.write("t.txt", text);
    dir.write("t.txt.gz", Gzip(text));
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
        const std::string header = HeaderOf(in), body = Slurp(in);
        ASSERT_EQ(!in.fail(), c.status != nullptr) << c.url;
        if (!c.status)
            continue;
        EXPECT_EQ(header.substr(0, 12) + header.substr(header.size() - 4),
                  c.status + std::string("\r\n\r\n"));
        EXPECT_TRUE(c.status[9] == '2' ? body == text : body.find("404") != std::string::npos);
    }
}

TEST(HttpHeader, RecognisesEveryFormWhereverTheReplyIsSplit) {
    const std::string text = Repeat("split body ", 400), ok = "HTTP/1.0 200 OK\r\n";
    const struct { std::string reply, header, body; } cases[] = {
        {ok + "A: b\r\n\r\nbody", ok + "A: b\r\n\r\n", "body"},
        {ok + "A: b\r\n\nbody", ok + "A: b\r\n\n", "body"},
        {ok + "\n\nbody", ok + "\n", "body"}, // the line feed after CR LF LF is not given back
        {"no header at all\r\n\r\nraw", "", "no header at all\r\n\r\nraw"},
        {"ab", "", "ab"},
        {ok + "\r\n" + Gzip(text), ok + "\r\n", text}}; // the gzip magic is split too
    std::vector<std::pair<size_t, size_t>> plan; // (case, split point or 0 for none)
    for (size_t i = 0; i < 6; ++i)
        for (size_t k = 0; k < cases[i].reply.size(); ++k)
            plan.emplace_back(i, k);
    std::vector<std::string> requests;
    ScriptServer server;
    NEED_PORT_80(Serve(server, [&](int n, const std::string& request) {
        requests.push_back(request);
        const std::string& r = cases[plan[static_cast<size_t>(n)].first].reply;
        const size_t k = plan[static_cast<size_t>(n)].second;
        return k ? Pieces{r.substr(0, k), r.substr(k)} : Pieces{r};
    }, 5));
    for (const auto& p : plan) {
        ZuIUrlStream in("http://127.0.0.1/a/b?c", false);
        EXPECT_EQ(HeaderOf(in), cases[p.first].header) << p.first << " split at " << p.second;
        EXPECT_EQ(Slurp(in), cases[p.first].body) << p.first << " split at " << p.second;
    }
    server.stop();
    EXPECT_EQ(requests.at(0), "GET /a/b?c HTTP/1.0\nUser-Agent: Mozilla/1.5\n"
                              "Host: 127.0.0.1\nAccept: */*\n\n");
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
    // An endless header; a server silent for two waiting periods; one late in the second.
    NEED_PORT_80(server.start(80, [](int c, int i) {
        ReadUntil(c, "\n\n");
        const std::string line = "HTTP/1.0 200 OK\r\nX-Filler: " + std::string(1000, 'a');
        while (i == 0 && send(c, line.data(), line.size(), MSG_NOSIGNAL) > 0) {
        }
        if (i == 1)
            ReadUntil(c, "never sent"); // until the client goes
        if (i == 2) {
            Pause(1500);
            SendText(c, "HTTP/1.0 200 OK\r\n\r\nlate");
        }
    }));
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/endless", false).fail()); // gives up
    char buffer[64];
    EXPECT_EQ(QuickHttp("/silent", 1000).read(buffer, sizeof buffer), -1);
    EXPECT_EQ(QuickHttp("/late", 1000).read(buffer, sizeof buffer), 4);
    EXPECT_EQ(std::string(buffer, 4), "late");
    server.stop();
    EXPECT_TRUE(ZuIUrlStream("http://127.0.0.1/nobody", false).fail()); // nobody listening
}
