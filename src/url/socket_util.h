// Socket helpers shared by the HTTP and FTP protocols (internal, not exported).
#ifndef ZU_SRC_URL_SOCKET_UTIL_H
#define ZU_SRC_URL_SOCKET_UTIL_H

#include <netinet/in.h>
#include <sys/select.h>
#include <sys/time.h>

#include <cstddef>

namespace zu_url {

// Seconds each network wait lasts; every wait is tried twice.
const int WaitSeconds = 10;

// The address of host: a numeric IPv4 address as it is, or a name looked up with
// gethostbyname. False when there is none.
bool ResolveHost(const char* host, in_addr& address);

// A blocking TCP connection to address:port; -1 on failure.
int ConnectTo(const in_addr& address, int port);

// Sends len bytes in one call; false unless all of them went. Never raises SIGPIPE.
// more tells the kernel that another piece of the same message follows.
bool SendAll(int fd, const char* text, size_t len, bool more = false);

// Empties both sets and puts fd in them (when a set can hold it).
void SetOnly(int fd, fd_set& read, fd_set& except);

// Waits for fd with fresh copies of the sets and the time-out, trying twice; then reads
// up to size bytes. -1 after two time-outs or on an error, else read's result.
int WaitAndRead(int fd, const fd_set& read, const fd_set& except, const timeval& timeout,
                char* buffer, int size);

// Closes fd when it is not negative and sets it to -1.
void CloseFd(int& fd);

} // namespace zu_url

#endif
