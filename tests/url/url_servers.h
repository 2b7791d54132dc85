// Peers for the URL tests, all on 127.0.0.1: server programs run as children, scripted
// servers run as threads, and fixture files are made in a temporary directory.
#ifndef ZU_TESTS_URL_SERVERS_H
#define ZU_TESTS_URL_SERVERS_H

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace urltest {

inline void Pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

inline std::string Slurp(std::istream& in) {
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline std::string Repeat(const std::string& unit, size_t bytes) {
    std::string s;
    while (s.size() < bytes)
        s += unit;
    s.resize(bytes);
    return s;
}

// A fresh directory, removed with its files at the end of the test.
struct TempDir {
    std::string path;
    TempDir() {
        char name[] = "/tmp/zu_url_XXXXXX";
        path = mkdtemp(name) ? name : "";
    }
    ~TempDir() { Sh("rm -rf '" + path + "'"); }
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path + "/" + name, std::ios::binary) << content;
        return path + "/" + name;
    }
    static int Sh(const std::string& command) { return std::system(command.c_str()); }
};

inline int Listen(int port) {
    int fd = socket(AF_INET, SOCK_STREAM, 0), one = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) < 0 || listen(fd, 4) < 0) {
        close(fd);
        return -1;
    }
    return fd;
}

inline bool CanConnect(int port) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool ok = connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
    close(fd);
    return ok;
}

// A server program run as a child until the object goes; ready once port accepts.
struct ChildServer {
    pid_t pid = -1;
    bool start(const std::vector<std::string>& argv, int port) {
        int probe = Listen(port);
        if (probe < 0)
            return false; // port taken or not allowed
        close(probe);
        pid = fork();
        if (pid == 0) {
            std::vector<char*> args;
            for (const std::string& a : argv)
                args.push_back(const_cast<char*>(a.c_str()));
            args.push_back(nullptr);
            freopen("/dev/null", "w", stdout);
            freopen("/dev/null", "w", stderr);
            execv(args[0], args.data());
            _exit(127);
        }
        for (int i = 0; i < 200; ++i, Pause(50)) {
            if (CanConnect(port))
                return true;
            if (waitpid(pid, nullptr, WNOHANG) == pid) {
                pid = -1;
                return false;
            }
        }
        return false;
    }
    ~ChildServer() {
        if (pid > 0) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
        }
    }
};

// A scripted server thread: accepts connections on port and hands each to the script
// until stop() or the object goes. The script gets the connection and its index.
struct ScriptServer {
    int fd = -1;
    std::thread thread;
    bool start(int port, std::function<void(int, int)> script) {
        if ((fd = Listen(port)) < 0)
            return false;
        thread = std::thread([this, script] {
            for (int i = 0;; ++i) {
                int c = accept(fd, nullptr, nullptr);
                if (c < 0)
                    return;
                int one = 1;
                setsockopt(c, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
                script(c, i);
                close(c);
            }
        });
        return true;
    }
    void stop() {
        if (fd >= 0) {
            shutdown(fd, SHUT_RDWR);
            close(fd);
            fd = -1;
        }
        if (thread.joinable())
            thread.join();
    }
    ~ScriptServer() { stop(); }
};

// Reads from c up to and including the first occurrence of end.
inline std::string ReadUntil(int c, const std::string& end) {
    std::string got;
    char ch;
    while (got.find(end) == std::string::npos && recv(c, &ch, 1, 0) == 1)
        got += ch;
    return got;
}

inline void SendText(int c, const std::string& s) { send(c, s.data(), s.size(), MSG_NOSIGNAL); }

} // namespace urltest

#endif
