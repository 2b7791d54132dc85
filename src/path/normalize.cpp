// Directory normalisation and the common-component scans behind the structural
// operations of ZuPathName.
#include "path_text.h"

#include <cstring>
#include <vector>

namespace zu_path {

namespace {

// Component start offsets in the text being built; short directories stay on the stack.
class OffsetStack {
public:
    void push(size_t offset) {
        if (_size < kInline)
            _inline[_size] = offset;
        else
            _more.push_back(offset);
        ++_size;
    }
    size_t pop() {
        --_size;
        if (_size < kInline) return _inline[_size];
        const size_t offset = _more.back();
        _more.pop_back();
        return offset;
    }
    size_t size() const { return _size; }

private:
    static const size_t kInline = 32;
    size_t _inline[kInline];
    std::vector<size_t> _more;
    size_t _size = 0;
};

} // namespace

// The rules, applied in this order to the text with a "/" appended when missing:
// every "/./" becomes "/", every "//" becomes "/", one leading "./" is removed; then,
// past the leading "../" components, each "/../" removes the component before it,
// except that a ".." right after the leading ones joins them, and a ".." directly under
// the root stops the work and is kept with everything after it.
// Done in one pass over the components: empty and "." components are what the first
// three rules delete, and the stack of kept components plays the "/../" search, which
// always finds the first remaining occurrence. The leading ".." components are only
// protected when the text started with them: ".." components that come to the front
// later are removed by a further ".." like any other component.
size_t normalizeDirectory(std::string_view dir, char* buffer) {
    // The output keeps a subset of the components in order, each followed by one "/",
    // so it never exceeds dir.size() + 1 bytes.
    struct Out {
        char* data;
        size_t n = 0;
        void push_back(char c) { data[n++] = c; }
        void append(const char* p, size_t k) {
            std::memcpy(data + n, p, k);
            n += k;
        }
        size_t size() const { return n; }
        void resize(size_t k) { n = k; }
    } out{buffer};
    OffsetStack stack;
    const bool absolute = !dir.empty() && dir[0] == '/';
    if (absolute) {
        out.push_back('/');
        stack.push(0); // the root, an empty component that is never removed
    }
    size_t protectedCount = 0; // leading ".." components that stay
    bool atStart = !absolute;
    bool stopped = false;
    size_t i = 0;
    while (i <= dir.size()) {
        size_t end = dir.find('/', i);
        if (end == std::string_view::npos) end = dir.size();
        const std::string_view c = dir.substr(i, end - i);
        i = end + 1;
        if (c.empty() || c == ".") continue;
        const bool dotDot = c == "..";
        if (!stopped && dotDot) {
            if (atStart) {
                ++protectedCount;
            } else if (stack.size() == 0) {
                // No "/" in front: not a "/../" occurrence, so it is kept.
            } else if (absolute && stack.size() == 1) {
                stopped = true; // ".." directly under the root
            } else if (protectedCount > 0 && stack.size() == protectedCount) {
                ++protectedCount;
            } else {
                out.resize(stack.pop());
                continue;
            }
        } else {
            atStart = false;
        }
        stack.push(out.size());
        out.append(c.data(), c.size());
        out.push_back('/');
    }
    return out.size();
}

int commonLeadingDirectories(std::string_view a, std::string_view b) {
    const size_t npos = std::string_view::npos;
    size_t i = a.find('/');
    size_t j = b.find('/');
    long last = -1;
    while (i != npos && j != npos && i == j &&
           (last == -1 || i == 0 ||
            a.substr(static_cast<size_t>(last) + 1, i - static_cast<size_t>(last) - 1) ==
                b.substr(static_cast<size_t>(last) + 1, i - static_cast<size_t>(last) - 1))) {
        last = static_cast<long>(i);
        i = a.find('/', static_cast<size_t>(last) + 1);
        j = b.find('/', static_cast<size_t>(last) + 1);
    }
    return static_cast<int>(last);
}

// Walks both texts back from their final "/" one whole component at a time.
int commonTrailingDirectories(std::string_view a, std::string_view b) {
    if (a.empty()) return -1;
    if (b.empty()) return static_cast<int>(a.size()) - 1;
    long ia = static_cast<long>(a.size()) - 1; // the "/" closing the component to compare
    long ib = static_cast<long>(b.size()) - 1;
    long result = ia; // nothing shared: everything up to the final "/" goes
    if (a[static_cast<size_t>(ia)] != '/') ++ia; // a text without its final "/"
    if (b[static_cast<size_t>(ib)] != '/') ++ib;
    while (ia >= 0 && ib >= 0) {
        const long pa = ia == 0 ? -1 : static_cast<long>(a.rfind('/', static_cast<size_t>(ia - 1)));
        const long pb = ib == 0 ? -1 : static_cast<long>(b.rfind('/', static_cast<size_t>(ib - 1)));
        const std::string_view ca = a.substr(static_cast<size_t>(pa + 1), static_cast<size_t>(ia - pa - 1));
        const std::string_view cb = b.substr(static_cast<size_t>(pb + 1), static_cast<size_t>(ib - pb - 1));
        if (ca != cb) break;
        result = pa;
        if (pa < 0 || pb < 0) break;
        ia = pa;
        ib = pb;
    }
    return static_cast<int>(result);
}

} // namespace zu_path
