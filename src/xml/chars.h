// Character classes of the XML parser, over code points (16-bit units in practice).
#ifndef ZU_SRC_XML_CHARS_H
#define ZU_SRC_XML_CHARS_H

namespace zu_xml {

// Space, tab, line feed, carriage return.
inline bool IsSpace_(int c) { return c == 0x20 || c == 0x09 || c == 0x0A || c == 0x0D; }
// ASCII letters only.
constexpr bool IsAlpha_(int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
// The Digit production of XML 1.0, Appendix B.
bool IsDigit_(int c);
// The BaseChar production of XML 1.0, Appendix B.
bool IsBaseChar_(int c);
// 0x4E00-0x9FA5 and 0x3007. The range 0x3021-0x3029 of the standard's Ideographic
// production is deliberately left out.
bool IsIdeographic_(int c);
// The CombiningChar production of XML 1.0, Appendix B.
bool IsCombiningChar_(int c);
// The Extender production of XML 1.0, Appendix B.
bool IsExtender_(int c);

// The same two classes beyond ASCII.
bool IsWideNameStart_(int c);
bool IsWideNameChar_(int c);

// ASCII name classes: bit 0 name start, bit 1 name character.
struct AsciiNameTable {
    unsigned char bits[128];
    constexpr AsciiNameTable() : bits() {
        for (int c = 0; c < 128; ++c) {
            if (IsAlpha_(c) || c == '_' || c == ':')
                bits[c] = 3;
            else if ((c >= '0' && c <= '9') || c == '.' || c == '-')
                bits[c] = 2;
        }
    }
};
constexpr AsciiNameTable AsciiNames{};

// First character of a name: BaseChar, Ideographic, "_" or ":".
inline bool IsNameStart_(int c) {
    return c < 128 ? c >= 0 && (AsciiNames.bits[c] & 1) : IsWideNameStart_(c);
}
// Later characters: also Digit, ".", "-", CombiningChar and Extender.
inline bool IsNameChar_(int c) {
    return c < 128 ? c >= 0 && (AsciiNames.bits[c] & 2) : IsWideNameChar_(c);
}

// 1 plus the line feeds from start up to, not including, pos; 1 when pos is not after start.
int GetLineNumber(const unsigned short* start, const unsigned short* pos);

} // namespace zu_xml

#endif
