// libFuzzer target: any input is parsed as an XML document; a successful parse of a small
// input is written back. Build with -DZU_BUILD_FUZZ=ON and clang, then run
// ./build/fuzz/zu_xml_fuzz [corpus directory].
#include <zu/xml.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ZuXmlError::Reset();
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    ZuXmlDocument doc;
    doc.read(in);
    // The written size grows with the square of the nesting depth: small inputs only.
    if (!ZuXmlError::IsSet() && size < 4096) {
        std::ostringstream out;
        doc.write(out);
    }
    return 0;
}
