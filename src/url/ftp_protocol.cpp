// FtpProtocol: an FTP retrieval in active mode, with the reply codes left unexamined.
#include <zu/url.h>

#include "url/socket_util.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

// Sends prefix + argument + CR LF as one write.
bool SendCommand(int fd, const char* prefix, const char* argument) {
    const size_t prefixLength = std::strlen(prefix);
    const size_t argumentLength = std::strlen(argument);
    char* line = static_cast<char*>(std::malloc(prefixLength + argumentLength + 3));
    if (!line)
        return false;
    std::memcpy(line, prefix, prefixLength);
    std::memcpy(line + prefixLength, argument, argumentLength);
    std::memcpy(line + prefixLength + argumentLength, "\r\n", 3);
    const bool sent = zu_url::SendAll(fd, line, prefixLength + argumentLength + 2);
    std::free(line);
    return sent;
}

double Now() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

// Accepts the server's data connection on listener. The wait is bounded like the others
// (two 10-second periods) and ends at once when the server closes the control
// connection, since no data connection can follow then. Late replies are drained.
int AcceptData(int listener, int control) {
    const double deadline = Now() + 2.0 * zu_url::WaitSeconds;
    for (;;) {
        const double left = deadline - Now();
        if (left <= 0)
            return -1;
        pollfd fds[2] = {{listener, POLLIN, 0}, {control, POLLIN, 0}};
        const int ready = poll(fds, 2, static_cast<int>(left * 1000.0) + 1);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return -1;
        if (fds[0].revents & POLLIN) {
            int fd;
            do
                fd = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
            while (fd < 0 && errno == EINTR);
            return fd;
        }
        if (fds[1].revents & (POLLIN | POLLHUP | POLLERR)) {
            char reply[512];
            ssize_t n;
            do
                n = ::read(control, reply, sizeof reply);
            while (n < 0 && errno == EINTR);
            if (n <= 0)
                return -1;
        }
    }
}

} // namespace

FtpProtocol::FtpProtocol(const char* host, const char* user, const char* password,
                         const char* path, int port)
    : _controlSocket(-1), _dataSocket(-1), _timeout{zu_url::WaitSeconds, 0} {
    zu_url::SetOnly(-1, _readSet, _exceptSet);
    in_addr address;
    if (!host || !path || !zu_url::ResolveHost(host, address))
        return;
    _controlSocket = zu_url::ConnectTo(address, port);
    if (_controlSocket < 0)
        return;
    sockaddr_in local;
    socklen_t localLength = sizeof local;
    if (getsockname(_controlSocket, reinterpret_cast<sockaddr*>(&local), &localLength) < 0 ||
        local.sin_family != AF_INET) {
        zu_url::CloseFd(_controlSocket);
        return;
    }
    ReadAnswer(_controlSocket); // greeting

    // Without a user no login is sent; a user without a password is followed at once
    // by TYPE I, without waiting for the USER reply.
    if (user) {
        if (!SendCommand(_controlSocket, "USER ", user))
            return;
        if (password) {
            ReadAnswer(_controlSocket);
            if (!SendCommand(_controlSocket, "PASS ", password))
                return;
            ReadAnswer(_controlSocket);
        }
    }
    if (!SendCommand(_controlSocket, "TYPE I", ""))
        return;
    ReadAnswer(_controlSocket);

    // Active mode: listen on the control connection's local address, any port.
    int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0)
        return;
    sockaddr_in listening = local;
    listening.sin_port = 0;
    socklen_t listeningLength = sizeof listening;
    if (bind(listener, reinterpret_cast<const sockaddr*>(&listening), sizeof listening) < 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&listening), &listeningLength) < 0 ||
        listen(listener, 1) < 0) {
        zu_url::CloseFd(listener);
        return;
    }
    const unsigned char* a = reinterpret_cast<const unsigned char*>(&local.sin_addr);
    const unsigned dataPort = ntohs(listening.sin_port);
    char portLine[64];
    std::snprintf(portLine, sizeof portLine, "PORT %d,%d,%d,%d,%d,%d\r\n", a[0], a[1], a[2], a[3],
                  (dataPort >> 8) & 0xFF, dataPort & 0xFF);
    if (!zu_url::SendAll(_controlSocket, portLine, std::strlen(portLine))) {
        zu_url::CloseFd(listener);
        return;
    }
    ReadAnswer(_controlSocket);
    // The path without its first character, the leading "/".
    if (!SendCommand(_controlSocket, "RETR ", *path ? path + 1 : path)) {
        zu_url::CloseFd(listener);
        return;
    }
    ReadAnswer(_controlSocket);
    _dataSocket = AcceptData(listener, _controlSocket);
    zu_url::CloseFd(listener);
    zu_url::SetOnly(_dataSocket, _readSet, _exceptSet);
    _timeout.tv_sec = zu_url::WaitSeconds;
    _timeout.tv_usec = 0;
}

FtpProtocol::~FtpProtocol() {
    zu_url::CloseFd(_dataSocket);
    zu_url::CloseFd(_controlSocket);
}

bool FtpProtocol::isBad() const { return _controlSocket < 0 || _dataSocket < 0; }

int FtpProtocol::read(char* buffer, int size) {
    if (!buffer || size < 1)
        return 0;
    return zu_url::WaitAndRead(_dataSocket, _readSet, _exceptSet, _timeout, buffer, size);
}
