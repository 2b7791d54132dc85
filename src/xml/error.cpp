// The process-wide parse error record.
#include <zu/xml.h>

namespace {

// Names of codes 1 to 25; codes 8 and 25 deliberately have none.
const char* const CodeNames[] = {
    nullptr,
    "INVALID_DOCUMENT",
    "EMPTY_DOCUMENT",
    "EARLY_END_OF_DOCUMENT",
    "END_OF_DOCUMENT_EXPECTED",
    "END_OF_DOCUMENT_UNEXPECTED",
    "INVALID_VERSION_INFO",
    "INVALID_SD_DECLARATION",
    nullptr,
    "INVALID_DECLARATION_END",
    "INVALID_COMMENT_CHARS",
    "RESERVED_PI_TARGET_NAME",
    "INVALID_CDATA",
    "INVALID_ENCODING_NAME",
    "INVALID_ENCODING_DECLARATION",
    "INVALID_TAG_NAME",
    "UNEXPECTED_TAG_SYMBOL",
    "END_TAG_EXPECTED",
    "END_TAG_NOT_MATCHED",
    "INVALID_TAG_END",
    "EQUAL_SIGN_EXPECTED",
    "INVALID_ATTRIBUTE_VALUE",
    "INVALID_REFERENCE_DECLARATION",
    "INVALID_CHARREF_DECLARATION",
    "INVALID_DOCTYPE_NAME",
    nullptr,
};

const int CodeCount = sizeof CodeNames / sizeof CodeNames[0];

} // namespace

ZuXmlError::Severity ZuXmlError::_severity = ZuXmlError::NoError;
int ZuXmlError::_code = 0;
int ZuXmlError::_line = 0;

void ZuXmlError::Set(Severity severity, int code, int line) {
    _severity = severity;
    _code = code;
    _line = line;
}

void ZuXmlError::Set(int severity, int code, int line) {
    Set(static_cast<Severity>(severity), code, line);
}

bool ZuXmlError::IsSet() { return _severity != NoError; }

void ZuXmlError::Reset() { Set(NoError, 0, 0); }

const char* ZuXmlError::Get(Severity& severity, int& code, int& line) {
    severity = _severity;
    code = _code;
    line = _line;
    return code > 0 && code < CodeCount ? CodeNames[code] : nullptr;
}
