// URL recognition and splitting: scheme table, IsAnURL and ZuUrlBuf::parseUrl.
#include <zu/url.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

struct Scheme {
    const char* name;
    int length;
    int port;
};

// Fixed and ordered; the first row that matches wins.
const Scheme Schemes[] = {{"http", 4, 80}, {"ftp", 3, 21}, {"file", 4, 0}};
const int HttpScheme = 0;
const int FtpScheme = 1;
const int FileScheme = 2;

// The row whose name starts text and is followed by ":", or -1.
int FindScheme(const char* text) {
    if (!text)
        return -1;
    for (int i = 0; i < 3; ++i)
        if (std::strncmp(text, Schemes[i].name, static_cast<size_t>(Schemes[i].length)) == 0 &&
            text[Schemes[i].length] == ':')
            return i;
    return -1;
}

// A NUL-terminated copy of [from, to), or null when memory runs out.
char* CopyRange(const char* from, const char* to) {
    const size_t length = static_cast<size_t>(to - from);
    char* copy = static_cast<char*>(std::malloc(length + 1));
    if (copy) {
        std::memcpy(copy, from, length);
        copy[length] = '\0';
    }
    return copy;
}

} // namespace

bool ZuIUrlStream::IsAnURL(const char* url) { return FindScheme(url) >= 0; }

void ZuUrlBuf::freeStrings() {
    std::free(_host);
    std::free(_path);
    std::free(_user);
    std::free(_password);
    _host = _path = _user = _password = nullptr;
}

int ZuUrlBuf::parseUrl(const char* url, bool /*flag*/) {
    // A second parse replaces what the first one opened.
    freeStrings();
    delete _protocol;
    _protocol = nullptr;
    if (!url || !*url)
        return 1;
    const int scheme = FindScheme(url);
    if (scheme < 0)
        return 1;
    const char* afterColon = url + Schemes[scheme].length + 1;
    const char* p = afterColon;
    if (scheme != FileScheme) {
        if (p[0] != '/' || p[1] != '/')
            return 1;
        p += 2;
    }
    if (std::strchr(url, '@')) {
        const char* end = p;
        while (*end && *end != ':' && *end != '@')
            ++end;
        if (!*end)
            return 1;
        if (!(_user = CopyRange(p, end)))
            return 1;
        if (*end == ':') {
            const char* password = end + 1;
            const char* at = std::strchr(password, '@');
            if (!at)
                return 1;
            // A second "@" further on belongs to the password: it may hold one "@".
            if (const char* second = std::strchr(at + 1, '@'))
                at = second;
            if (!(_password = CopyRange(password, at)))
                return 1;
            p = at + 1;
        } else {
            p = end + 1;
        }
    }
    if (scheme != FileScheme) {
        const char* host = p;
        while (*p && *p != ':' && *p != '/')
            ++p;
        if (!*p)
            return 1; // no path
        if (!(_host = CopyRange(host, p)))
            return 1;
        // The port written in the URL is skipped on purpose: the scheme's port is used.
        while (*p && *p != '/')
            ++p;
        if (!*p)
            return 1;
        _path = CopyRange(p, p + std::strlen(p));
    } else {
        _path = CopyRange(afterColon, afterColon + std::strlen(afterColon));
    }
    if (!_path)
        return 1;

    switch (scheme) {
    case HttpScheme:
        _protocol = new (std::nothrow) HttpProtocol(_host, _path, Schemes[scheme].port);
        break;
    case FtpScheme:
        _protocol = new (std::nothrow)
            FtpProtocol(_host, _user, _password, _path, Schemes[scheme].port);
        break;
    default:
        _protocol = new (std::nothrow) FileProtocol(_path);
        break;
    }
    if (!_protocol || _protocol->isBad()) {
        delete _protocol;
        _protocol = nullptr;
        return 1;
    }
    return 0;
}
