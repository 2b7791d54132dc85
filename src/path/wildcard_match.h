#ifndef ZU_SRC_PATH_WILDCARD_MATCH_H
#define ZU_SRC_PATH_WILDCARD_MATCH_H

// The whole-name wildcard matcher behind ZuPathName::match, over bytes or wide
// characters. Shared by the path sources only; nothing here is exported.
//
// A pattern is first made canonical: in every run of wildcards the "?" come first and
// the stars fold into one ("*?" acts as "?*", "**" as "*"). Then, k being the index
// of the first wildcard:
// - the first k characters must equal the name's (no wildcard: the whole strings);
// - "?" stands for the character at k and matching goes on after it in both; a name
//   that ends at k goes on empty, so "a?" matches "a" (deliberate leniency);
// - a star at the end matches the rest; otherwise it takes the character at k and the
//   rest of the pattern is tried against the name's rest from offset 0, then from
//   offsets k+1, k+2, ... while the previous candidate was longer than one character.
//   Deliberately the offsets start at k+1, not 1: stored patterns rely on it.
// The candidates are always suffixes of the name and the pattern rests suffixes of the
// pattern, so a failure depends only on the two start positions; failures are
// remembered once a match has made many attempts, which keeps hostile patterns from
// taking exponential time without changing any result.

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace zu_path {

inline char lowerUnit(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}
inline wchar_t lowerUnit(wchar_t c) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c))); }

// Short runs: a plain loop, inlined, beats a call to memcmp here.
template <class C>
inline __attribute__((always_inline)) bool sameUnits(const C* a, const C* b, size_t n, bool caseSensitive) {
    if (caseSensitive) {
        for (size_t i = 0; i < n; ++i)
            if (a[i] != b[i]) return false;
        return true;
    }
    for (size_t i = 0; i < n; ++i)
        if (a[i] != b[i] && lowerUnit(a[i]) != lowerUnit(b[i])) return false;
    return true;
}

template <class C>
class WildcardMatcher {
public:
    using View = std::basic_string_view<C>;

    WildcardMatcher(View name, View pattern, bool caseSensitive)
        : _name(name), _pattern(pattern), _caseSensitive(caseSensitive) {}

    // The star loops are kept on an explicit stack, so that a pattern with very many
    // stars cannot exhaust the call stack.
    bool run() {
        Outcome o = literalRun(0, 0);
        for (;;) {
            if (o.kind == Star) {
                Frame f{o.rest, o.pattern, o.k, 0, o.rest};
                push(f);
                o = attempt(f.start, f.pattern);
                continue;
            }
            if (o.kind == True) return true;
            if (_depth == 0) return false;
            Frame& f = top();
            remember(f.start, f.pattern);
            if (_name.size() - f.start <= 1) {
                pop();
                continue; // o stays False for the frame below
            }
            f.offset = f.offset == 0 ? f.k + 1 : f.offset + 1;
            f.start = f.rest + f.offset < _name.size() ? f.rest + f.offset : _name.size();
            o = attempt(f.start, f.pattern);
        }
    }

private:
    enum Kind { False, True, Star };
    struct Outcome {
        Kind kind;
        size_t rest, pattern, k; // for Star: name rest, pattern rest, index of the star
    };
    struct Frame {
        size_t rest, pattern, k, offset, start; // start: the candidate being tried
    };

    // The name from n on against the pattern from p on, up to the first star that has
    // more pattern after it.
    Outcome literalRun(size_t n, size_t p) const {
        for (;;) {
            const C* name = _name.data() + n;
            const size_t nameLength = _name.size() - n;
            const C* pattern = _pattern.data() + p;
            const size_t patternLength = _pattern.size() - p;
            size_t k = 0;
            while (k < patternLength && pattern[k] != C('?') && pattern[k] != C('*')) ++k;
            if (k == patternLength)
                return verdict(nameLength == patternLength &&
                               sameUnits(name, pattern, k, _caseSensitive));
            if (nameLength < k || !sameUnits(name, pattern, k, _caseSensitive)) return verdict(false);
            const size_t nameRest = k + 1 < nameLength ? n + k + 1 : _name.size();
            const size_t patternRest = p + k + 1;
            if (pattern[k] == C('?')) {
                n = nameRest;
                p = patternRest;
                continue;
            }
            if (patternRest == _pattern.size()) return verdict(true);
            return Outcome{Star, nameRest, patternRest, k};
        }
    }

    static Outcome verdict(bool b) { return Outcome{b ? True : False, 0, 0, 0}; }

    Outcome attempt(size_t n, size_t p) {
        if (++_attempts > kMemoAfter && _failed.count(key(n, p))) return verdict(false);
        return literalRun(n, p);
    }
    void remember(size_t n, size_t p) {
        if (_attempts > kMemoAfter) _failed.insert(key(n, p));
    }
    uint64_t key(size_t n, size_t p) const {
        return static_cast<uint64_t>(n) * (static_cast<uint64_t>(_pattern.size()) + 1) + p;
    }

    void push(const Frame& f) {
        if (_depth < kInline)
            _inline[_depth] = f;
        else
            _more.push_back(f);
        ++_depth;
    }
    Frame& top() { return _depth <= kInline ? _inline[_depth - 1] : _more.back(); }
    void pop() {
        if (_depth > kInline) _more.pop_back();
        --_depth;
    }

    static const size_t kMemoAfter = 4096;
    static const size_t kInline = 8;

    View _name;
    View _pattern;
    bool _caseSensitive;
    size_t _attempts = 0;
    std::unordered_set<uint64_t> _failed;
    Frame _inline[kInline];
    std::vector<Frame> _more;
    size_t _depth = 0;
};

// True when the pattern needs no rewriting (no "*?" and no "**"); counts its stars.
template <class C>
bool isCanonical(std::basic_string_view<C> pattern, size_t& stars) {
    stars = 0;
    for (size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != C('*')) continue;
        ++stars;
        if (i + 1 < pattern.size() && (pattern[i + 1] == C('*') || pattern[i + 1] == C('?'))) return false;
    }
    return true;
}

// The same rules as WildcardMatcher, as a plain recursion without memory, for the
// short names and patterns met in practice: 1 match, 0 no match, -1 gave up because
// the attempts ran out (the caller then runs WildcardMatcher). The recursion depth is
// at most the number of stars in the pattern.
template <class C>
int quickMatch(const C* name, size_t nameLength, const C* pattern, size_t patternLength,
               bool caseSensitive, long& budget) {
    for (;;) {
        if (--budget < 0) return -1;
        size_t k = 0;
        while (k < patternLength && pattern[k] != C('?') && pattern[k] != C('*')) ++k;
        if (k == patternLength)
            return nameLength == patternLength && sameUnits(name, pattern, k, caseSensitive);
        if (nameLength < k || !sameUnits(name, pattern, k, caseSensitive)) return 0;
        const size_t skip = k + 1 < nameLength ? k + 1 : nameLength;
        const C* rest = name + skip;
        const size_t restLength = nameLength - skip;
        const C* patternRest = pattern + k + 1;
        const size_t patternRestLength = patternLength - k - 1;
        if (pattern[k] == C('?')) {
            name = rest;
            nameLength = restLength;
            pattern = patternRest;
            patternLength = patternRestLength;
            continue;
        }
        if (patternRestLength == 0) return 1;
        // A literal rest can only match the candidate of its own length: the one at
        // offset restLength - patternRestLength, which the loop below tries when it is
        // 0, or at least k + 1 while the rest is longer than one character.
        size_t w = 0;
        while (w < patternRestLength && patternRest[w] != C('?') && patternRest[w] != C('*')) ++w;
        if (w == patternRestLength) {
            if (--budget < 0) return -1;
            if (restLength < patternRestLength) return 0;
            const size_t at = restLength - patternRestLength;
            if (at != 0 && (restLength <= 1 || at < k + 1)) return 0;
            return sameUnits(rest + at, patternRest, patternRestLength, caseSensitive);
        }
        for (size_t offset = 0;;) {
            const int r = quickMatch(rest + offset, restLength - offset, patternRest, patternRestLength,
                                     caseSensitive, budget);
            if (r != 0) return r;
            if (restLength - offset <= 1) return 0;
            offset = offset == 0 ? k + 1 : offset + 1;
            if (offset > restLength) offset = restLength;
        }
    }
}

// Every run of wildcards rewritten as its "?" followed by one "*" when it had any.
template <class C>
std::basic_string<C> canonicalPattern(std::basic_string_view<C> pattern) {
    std::basic_string<C> out;
    out.reserve(pattern.size());
    size_t i = 0;
    while (i < pattern.size()) {
        if (pattern[i] != C('*') && pattern[i] != C('?')) {
            out.push_back(pattern[i++]);
            continue;
        }
        bool star = false;
        for (; i < pattern.size() && (pattern[i] == C('*') || pattern[i] == C('?')); ++i) {
            if (pattern[i] == C('*'))
                star = true;
            else
                out.push_back(C('?'));
        }
        if (star) out.push_back(C('*'));
    }
    return out;
}

// Limits of the plain recursion: its depth (stars) and its work (attempts).
const size_t kQuickStars = 64;
const long kQuickAttempts = 4096;

template <class C>
bool doesNameMatch(std::basic_string_view<C> name, std::basic_string_view<C> pattern,
                   bool caseSensitive) {
    size_t stars = 0;
    if (isCanonical(pattern, stars)) {
        if (stars <= kQuickStars) {
            long budget = kQuickAttempts;
            const int r = quickMatch(name.data(), name.size(), pattern.data(), pattern.size(),
                                     caseSensitive, budget);
            if (r >= 0) return r == 1;
        }
        return WildcardMatcher<C>(name, pattern, caseSensitive).run();
    }
    const std::basic_string<C> canonical = canonicalPattern(pattern);
    return WildcardMatcher<C>(name, canonical, caseSensitive).run();
}

} // namespace zu_path

#endif
