#ifndef ZU_SRC_STRING_OPERAND_H
#define ZU_SRC_STRING_OPERAND_H

// The second string of a two-string operation, resolved against the first one's class.

#include <zu/string.h>

#include <cstdlib>
#include <memory>

namespace {

// Both of one class: the other's own representation. This one multibyte, the other
// single-byte and the locale still multibyte: a temporary multibyte copy of the other's
// bytes. Otherwise (this one single-byte, or the locale no longer multibyte) the
// operation gives up.
class Operand {
public:
    Operand(const ZuString& self, const ZuString& other) : _rep(other.getInternal()) {
        const ZuInternalString* mine = self.getInternal();
        if (mine->getType() == _rep->getType()) return;
        if (mine->getType() == 0 || MB_CUR_MAX <= 1) {
            _rep = nullptr;
            return;
        }
        _temp.reset(new ZuMBString(other.getValue()));
        _rep = _temp.get();
    }

    bool ok() const { return _rep != nullptr; }
    bool converted() const { return _temp != nullptr; }
    const ZuInternalString& rep() const { return *_rep; }
    int length() const { return static_cast<int>(_rep->getLength()); }

private:
    const ZuInternalString* _rep;
    std::unique_ptr<ZuMBString> _temp;
};

// End of a range: -1, or anything past the text, means the end of the text.
inline int clampStringEnd(int end, int length) { return end == -1 || end > length ? length : end; }

} // namespace

#endif
