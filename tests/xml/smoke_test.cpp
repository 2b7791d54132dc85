#include <zu/xml.h>
#include <gtest/gtest.h>
#include <sstream>
TEST(Smoke, Parses) {
    ZuXmlError::Reset();
    std::istringstream in("<?xml version=\"1.0\"?>\n<a x=\"1\"><b>hi</b></a>");
    ZuXmlDocument doc;
    doc.read(in);
    EXPECT_FALSE(ZuXmlError::IsSet());
    std::ostringstream out;
    doc.write(out);
    std::cout << out.str();
}
