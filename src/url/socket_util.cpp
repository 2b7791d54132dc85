// Waiting, reading and writing on sockets; host resolution for the network protocols.
#include "url/socket_util.h"

#include <zu/url.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zu_url {

bool ResolveHost(const char* host, in_addr& address) {
    if (!host)
        return false;
    // A numeric address is used as it is. Its reverse lookup (gethostbyaddr) could only
    // give the same address back, may not exist at all, and as asked with a length of 8
    // never matches the hosts file: it always went to the name server, which can keep
    // every connection waiting for seconds.
    const in_addr_t numeric = inet_addr(host);
    if (numeric != INADDR_NONE) {
        address.s_addr = numeric;
        return true;
    }
    const hostent* entry = gethostbyname(host);
    if (!entry || entry->h_addrtype != AF_INET || entry->h_length != 4 || !entry->h_addr_list ||
        !entry->h_addr_list[0])
        return false;
    std::memcpy(&address, entry->h_addr_list[0], 4);
    return true;
}

int ConnectTo(const in_addr& address, int port) {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0)
        return -1;
    sockaddr_in peer;
    std::memset(&peer, 0, sizeof peer);
    peer.sin_family = AF_INET;
    peer.sin_port = htons(static_cast<uint16_t>(port));
    peer.sin_addr = address;
    // The connection is made without blocking so that an unreachable host is given up
    // after the usual two waiting periods, not after the kernel's minutes of retries.
    if (connect(fd, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) < 0) {
        pollfd p = {fd, POLLOUT, 0};
        int error = errno == EINPROGRESS ? 0 : errno;
        socklen_t length = sizeof error;
        int ready = 0;
        for (int attempt = 0; !error && ready == 0 && attempt < 2; ++attempt) {
            do
                ready = poll(&p, 1, WaitSeconds * 1000);
            while (ready < 0 && errno == EINTR);
        }
        if (error || ready != 1 || getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) < 0 ||
            error) {
            CloseFd(fd);
            return -1;
        }
    }
    const int flags = fcntl(fd, F_GETFL);
    if (flags < 0 || fcntl(fd, F_SETFL, flags & ~O_NONBLOCK) < 0)
        CloseFd(fd);
    return fd;
}

bool SendAll(int fd, const char* text, size_t len, bool more) {
    if (fd < 0 || !text)
        return false;
    ssize_t n;
    do
        n = send(fd, text, len, MSG_NOSIGNAL | (more ? MSG_MORE : 0));
    while (n < 0 && errno == EINTR);
    return n >= 0 && static_cast<size_t>(n) == len;
}

void SetOnly(int fd, fd_set& read, fd_set& except) {
    FD_ZERO(&read);
    FD_ZERO(&except);
    if (fd >= 0 && fd < FD_SETSIZE) {
        FD_SET(fd, &read);
        FD_SET(fd, &except);
    }
}

int WaitAndRead(int fd, const fd_set& read, const fd_set& except, const timeval& timeout,
                char* buffer, int size) {
    if (fd < 0 || !buffer || size < 1)
        return -1;
    for (int attempt = 0; attempt < 2; ++attempt) {
        fd_set readSet = read;
        fd_set exceptSet = except;
        timeval left = timeout;
        const int ready = Wait(fd, readSet, exceptSet, left);
        if (ready < 0)
            return -1;
        if (ready == 0)
            continue;
        ssize_t n;
        do
            n = ::read(fd, buffer, static_cast<size_t>(size));
        while (n < 0 && errno == EINTR);
        return static_cast<int>(n);
    }
    return -1;
}

void CloseFd(int& fd) {
    if (fd >= 0)
        close(fd);
    fd = -1;
}

} // namespace zu_url

int Wait(int fd, fd_set& read, fd_set& except, timeval& timeout) {
    if (fd < 0)
        return -1;
    if (fd >= FD_SETSIZE) {
        // A set cannot hold this descriptor: wait with poll instead of overrunning it.
        pollfd p = {fd, POLLIN | POLLPRI, 0};
        const long ms = timeout.tv_sec * 1000L + timeout.tv_usec / 1000L;
        int rc;
        do
            rc = poll(&p, 1, static_cast<int>(ms));
        while (rc < 0 && errno == EINTR);
        return rc;
    }
    int rc;
    do
        rc = select(fd + 1, &read, nullptr, &except, &timeout);
    while (rc < 0 && errno == EINTR);
    return rc;
}

void ReadAnswer(int fd) {
    char reply[512];
    // A server that never stops replying is not drained for ever: past 64 KiB the rest
    // is left unread (no reply is ever examined anyway).
    for (int drained = 0; drained < 65536; drained += static_cast<int>(sizeof reply)) {
        fd_set read;
        fd_set except;
        zu_url::SetOnly(fd, read, except);
        timeval timeout = {zu_url::WaitSeconds, 0};
        if (Wait(fd, read, except, timeout) <= 0)
            return;
        ssize_t n;
        do
            n = ::read(fd, reply, sizeof reply);
        while (n < 0 && errno == EINTR);
        if (n != static_cast<ssize_t>(sizeof reply))
            return;
    }
}
