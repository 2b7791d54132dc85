// Peers for the URL tests on 127.0.0.1 (server programs as children, scripted servers as
// threads) and fixture files made in a temporary directory.
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

// A gzip member of text whose flags announce optional fields, each filled in (the comment
// is longer than a first chunk). The trailer is zeros: the library does not check it.
inline std::string Gzip(const std::string& text, int flags = 0) {
    uLongf size = compressBound(text.size());
    std::string z(size, '\0'), g = {'\x1f', '\x8b', 8, static_cast<char>(flags), 1, 2, 3, 4, 0, 3};
    compress2(reinterpret_cast<Bytef*>(&z[0]), &size, reinterpret_cast<const Bytef*>(text.data()),
              text.size(), 9);
    g += std::string(flags & 4 ? "\x05\x00" "extra" : "", flags & 4 ? 7 : 0);
    g += std::string(flags & 8 ? "name.txt" : "", flags & 8 ? 9 : 0);
    g += flags & 16 ? std::string(5000, 'c') + '\0' : "";
    return g + (flags & 2 ? "hc" : "") + z.substr(2, size - 6) + std::string(8, '\0');
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
    sockaddr_in a{AF_INET, htons(static_cast<uint16_t>(port)), {htonl(INADDR_LOOPBACK)}, {}};
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    const sockaddr* to = reinterpret_cast<sockaddr*>(&a);
    if (listening ? bind(fd, to, sizeof a) < 0 || listen(fd, 4) < 0
                  : connect(fd, to, sizeof a) < 0) {
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
