// Peers for the URL tests, all on 127.0.0.1: server programs run as children, scripted
// servers as threads; fixture files are made in a temporary directory.
#ifndef ZU_TESTS_URL_SERVERS_H
#define ZU_TESTS_URL_SERVERS_H

#include <zu/url.h>

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/wait.h>
#include <zlib.h>

#include <fstream>
#include <functional>
#include <thread>

inline void Pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }
inline int Sh(const std::string& command) { return std::system(command.c_str()); }

inline std::string Slurp(std::istream& in) {
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline std::string Repeat(const std::string& unit, size_t bytes) {
    std::string s;
    for (s.reserve(bytes + unit.size()); s.size() < bytes;)
        s += unit;
    return s.substr(0, bytes);
}

// Deflated text: raw with window bits -15, gzip with 31.
inline std::string Pack(const std::string& text, int windowBits) {
    z_stream z{};
    deflateInit2(&z, 9, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&z, text.size()) + 32, '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    z.avail_in = static_cast<uInt>(text.size());
    z.next_out = reinterpret_cast<Bytef*>(&out[0]);
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

// A fresh directory, removed with its files at the end of the test.
struct TempDir {
    std::string path;
    TempDir() {
        char name[] = "/tmp/zu_url_XXXXXX";
        path = mkdtemp(name) ? name : "/nonexistent";
    }
    ~TempDir() { Sh("rm -rf '" + path + "'"); }
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path + "/" + name, std::ios::binary) << content;
        return path + "/" + name;
    }
};

// A socket listening on (listen true) or connected to 127.0.0.1:port; -1 on failure.
inline int Endpoint(int port, bool listening) {
    int fd = socket(AF_INET, SOCK_STREAM, 0), one = 1;
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    const sockaddr* to = reinterpret_cast<sockaddr*>(&a);
    if (listening ? bind(fd, to, sizeof a) < 0 || listen(fd, 4) < 0 : connect(fd, to, sizeof a) < 0) {
        close(fd);
        return -1;
    }
    return fd;
}

// A server command run by the shell as a child for the object's lifetime; ready once
// port accepts connections. False when the port is taken or the server does not come up.
struct ChildServer {
    pid_t pid = -1;
    bool start(const std::string& command, int port) {
        const int probe = Endpoint(port, true);
        if (probe < 0 || close(probe) != 0 || (pid = fork()) < 0)
            return false;
        if (pid == 0)
            _exit(execl("/bin/sh", "sh", "-c", ("exec " + command + " >/dev/null 2>&1").c_str(),
                        nullptr));
        for (int i = 0, fd; i < 200 && waitpid(pid, nullptr, WNOHANG) == 0; ++i, Pause(50))
            if ((fd = Endpoint(port, false)) >= 0)
                return close(fd) == 0;
        return false;
    }
    ~ChildServer() {
        if (pid > 0 && kill(pid, SIGTERM) == 0)
            waitpid(pid, nullptr, 0);
    }
};

// A scripted server thread: hands each connection on port, with its index, to script.
struct ScriptServer {
    int fd = -1;
    std::thread thread;
    bool start(int port, std::function<void(int, int)> script) {
        if ((fd = Endpoint(port, true)) < 0)
            return false;
        thread = std::thread([this, script] {
            for (int i = 0, c, one = 1; (c = accept(fd, nullptr, nullptr)) >= 0; ++i, close(c)) {
                setsockopt(c, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one); // pieces stay apart
                script(c, i);
            }
        });
        return true;
    }
    void stop() {
        if (fd >= 0 && shutdown(fd, SHUT_RDWR) == 0 && close(fd) == 0)
            fd = -1;
        if (thread.joinable())
            thread.join();
    }
    ~ScriptServer() { stop(); }
};

// Reads from c up to and including the first occurrence of end.
inline std::string ReadUntil(int c, const std::string& end) {
    std::string got;
    for (char ch; got.find(end) == std::string::npos && recv(c, &ch, 1, 0) == 1;)
        got += ch;
    return got;
}

inline void SendText(int c, const std::string& s) { send(c, s.data(), s.size(), MSG_NOSIGNAL); }

#endif
