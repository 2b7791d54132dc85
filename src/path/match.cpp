// ZuPathName::match: device, directory and file-name stages, with one alternation
// group in the pattern's file name. Works on the path's fields without printing, so
// the cache is never touched.
#include <zu/pathname.h>

#include "path_text.h"
#include "wildcard_match.h"

#include <string>
#include <string_view>

using zu_path::bytesOf;

namespace {

// Matching runs on bytes, or on wide characters when some part holds multibyte
// characters, so that "?" always stands for one character.
inline bool holdsMultibyte(const ZuString& s) {
    return static_cast<size_t>(s.getInternal()->getLength()) != bytesOf(s).size() &&
           s.getInternal()->getType() == 1;
}

template <class C>
struct Units;

template <>
struct Units<char> {
    static std::string_view of(const ZuString& s, std::string&) { return bytesOf(s); }
};

template <>
struct Units<wchar_t> {
    static std::wstring_view of(const ZuString& s, std::wstring& keep) {
        const ZuInternalString* rep = s.getInternal();
        if (rep->getType() == 1)
            return std::wstring_view(static_cast<const ZuMBString*>(rep)->getWValue(),
                                     static_cast<size_t>(s.getLength()));
        // A single-byte string among multibyte ones: its bytes, one unit each.
        const std::string_view bytes = bytesOf(s);
        keep.assign(bytes.begin(), bytes.end());
        for (wchar_t& c : keep) c = static_cast<wchar_t>(static_cast<unsigned char>(c));
        return keep;
    }
};

template <class C>
class PathMatch {
public:
    using View = std::basic_string_view<C>;
    using Text = std::basic_string<C>;

    PathMatch(const ZuPathName& path, const ZuPathName& pattern, bool caseSensitive)
        : _path(path), _pattern(pattern), _caseSensitive(caseSensitive) {}

    bool run() {
        Text k1, k2;
        // Two empty devices, or two empty directories ("./" each), match at once.
        const bool noDevices = bytesOf(_path.getDevice()).empty() && bytesOf(_pattern.getDevice()).empty();
        if (!noDevices && !names(of(_path.getDevice(), k1), of(_pattern.getDevice(), k2))) return false;
        const bool noDirectories = bytesOf(_path.getInternalDirectory()).empty() &&
                                   bytesOf(_pattern.getInternalDirectory()).empty();
        if (!noDirectories && !names(directory(_path, k1), directory(_pattern, k2))) return false;
        Text k3, k4;
        const View patternBase = of(_pattern.getBaseNameOnly(), k3);
        const View patternExtension = of(_pattern.getExtension(), k4);
        // Without a "(" there is no group, and the whole pattern file name is only built
        // when the fallback needs it.
        if (patternBase.find(C('(')) == View::npos && patternExtension.find(C('(')) == View::npos)
            return internalMatch(patternBase, patternExtension, nullptr);
        Text fileName;
        const View F = file(_pattern, fileName);
        const size_t open = F.find(C('('));
        const size_t bar = open == View::npos ? open : F.find(C('|'), open);
        const size_t close = bar == View::npos ? bar : F.find(C(')'), bar);
        if (close == View::npos) return internalMatch(patternBase, patternExtension, &F);
        const View prefix = F.substr(0, open);
        const View suffix = F.substr(close + 1);
        size_t from = open + 1;
        for (;;) {
            size_t to = F.find(C('|'), from);
            if (to == View::npos || to > close) to = close;
            Text candidate(prefix);
            candidate.append(F.substr(from, to - from));
            candidate.append(suffix);
            View base, extension;
            splitCandidate(candidate, base, extension);
            if (internalMatch(base, extension, &F)) return true;
            if (to == close) return false;
            from = to + 1;
        }
    }

private:
    bool names(View name, View pattern) const {
        return zu_path::doesNameMatch<C>(name, pattern, _caseSensitive);
    }

    static View of(const ZuString& s, Text& keep) { return Units<C>::of(s, keep); }

    // getUnixDirectory(true) without building a string.
    static View directory(const ZuPathName& p, Text& keep) {
        if (bytesOf(p.getInternalDirectory()).empty()) {
            static const C currentDir[] = {C('.'), C('/'), C(0)};
            return View(currentDir, 2);
        }
        return of(p.getInternalDirectory(), keep);
    }

    // getBaseName(): base name, then "." and the extension when there is one.
    static View file(const ZuPathName& p, Text& out) {
        if (bytesOf(p.getExtension()).empty()) return of(p.getBaseNameOnly(), out);
        Text keep;
        out.assign(of(p.getBaseNameOnly(), keep));
        out.push_back(C('.'));
        out.append(of(p.getExtension(), keep));
        return out;
    }

    // The base name and extension a path made from the candidate text would have.
    static void splitCandidate(View text, View& base, View& extension) {
        base = extension = View();
        if (text.empty() || (text.size() == 1 && text[0] == C('.'))) return;
        const size_t slash = text.rfind(C('/'));
        if (slash != View::npos) {
            if (slash + 1 == text.size()) return;
            text = text.substr(slash + 1);
        }
        const size_t dot = text.rfind(C('.'));
        if (dot != View::npos && dot > 0 && dot + 1 < text.size()) {
            base = text.substr(0, dot);
            extension = text.substr(dot + 1);
        } else {
            base = text;
        }
    }

    // The file-name stage: extension and base name separately, else the whole name.
    // A null patternFile stands for the pattern's own file name.
    bool internalMatch(View patternBase, View patternExtension, const View* patternFile) {
        Text k1, k2;
        if (!patternExtension.empty() && names(of(_path.getExtension(), k1), patternExtension) &&
            names(of(_path.getBaseNameOnly(), k2), patternBase))
            return true;
        if (!_pathFileReady) {
            _pathFileView = file(_path, _pathFile);
            _pathFileReady = true;
        }
        if (patternFile) return names(_pathFileView, *patternFile);
        if (patternExtension.empty()) return names(_pathFileView, patternBase);
        Text whole;
        return names(_pathFileView, file(_pattern, whole));
    }

    const ZuPathName& _path;
    const ZuPathName& _pattern;
    bool _caseSensitive;
    Text _pathFile;
    View _pathFileView;
    bool _pathFileReady = false;
};

bool needsWideUnits(const ZuPathName& a, const ZuPathName& b) {
    for (const ZuPathName* p : {&a, &b})
        if (holdsMultibyte(p->getDevice()) || holdsMultibyte(p->getInternalDirectory()) ||
            holdsMultibyte(p->getBaseNameOnly()) || holdsMultibyte(p->getExtension()))
            return true;
    return false;
}

} // namespace

bool ZuPathName::match(const ZuPathName& pattern) const {
    const bool caseSensitive = isSensitive() && pattern.isSensitive();
    if (needsWideUnits(*this, pattern)) return PathMatch<wchar_t>(*this, pattern, caseSensitive).run();
    return PathMatch<char>(*this, pattern, caseSensitive).run();
}
