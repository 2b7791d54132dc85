// Gzip and zip decoding: files made by gzip, zip and Python's zipfile, hand-made gzip
// headers with every optional field, extreme ratios and corrupt data.
#include <zu/url.h>

#include "url_servers.h"

#include <gtest/gtest.h>
#include <zlib.h>

using namespace urltest;

namespace {

// Raw deflate data (no header) for text.
std::string Deflate(const std::string& text) {
    z_stream z{};
    deflateInit2(&z, 9, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&z, text.size()), '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    z.avail_in = static_cast<uInt>(text.size());
    z.next_out = reinterpret_cast<Bytef*>(&out[0]);
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

// A gzip member with the given flags and their optional fields.
std::string GzipWith(int flags, const std::string& text) {
    std::string g = {'\x1f', '\x8b', 8, static_cast<char>(flags), 1, 2, 3, 4, 0, 3};
    if (flags & 4)
        g += std::string("\x05\x00" "extra", 7);
    if (flags & 8)
        g += std::string("name.txt\0", 9);
    if (flags & 16)
        g += std::string(5000, 'c') + '\0'; // longer than the first chunk
    if (flags & 2)
        g += "hc";
    return g + Deflate(text) + std::string(8, '\0'); // the trailer is not checked
}

bool Have(const char* tool) { return TempDir::Sh(std::string("command -v ") + tool + " >/dev/null") == 0; }

} // namespace

TEST(UrlDecoding, DeliversFilesFromGzipAndZipDecompressed) {
    if (!Have("gzip") || !Have("zip") || !Have("python3"))
        GTEST_SKIP() << "gzip, zip and python3 are needed to make the archives";
    TempDir dir;
    const std::string text = "line one\n" + Repeat("the quick brown fox jumps\n", 300000);
    dir.write("t.txt", text);
    const std::string d = dir.path;
    ASSERT_EQ(TempDir::Sh("cd " + d + " && gzip -k t.txt && zip -q t.zip t.txt && python3 -c \"import "
                          "zipfile; zipfile.ZipFile('p.zip','w',zipfile.ZIP_DEFLATED).write('t.txt')\""),
              0);
    for (const char* name : {"t.txt.gz", "t.zip", "p.zip", "t.txt"}) {
        for (unsigned hints : {0u, 1u}) {
            ZuIUrlStream in(("file:" + d + "/" + name).c_str(), false);
            in.setHints(static_cast<ZuIUrlStream::StreamHint>(hints));
            ASSERT_TRUE(in.good()) << name;
            std::string first;
            std::getline(in, first);
            EXPECT_EQ(first, "line one") << name;
            EXPECT_EQ(first + "\n" + Slurp(in), text) << name << " hints " << hints;
        }
    }
}

TEST(UrlDecoding, SkipsEveryOptionalGzipHeaderField) {
    const std::string text = Repeat("optional fields ", 3000);
    for (int flags : {0, 2, 4, 8, 16, 2 | 4 | 8 | 16, 4 | 16}) {
        std::istringstream source(GzipWith(flags, text));
        ZuIUrlStream in(source);
        EXPECT_EQ(Slurp(in), text) << "flags " << flags;
    }
    // A header cut short ends the input before any byte.
    std::istringstream cut(GzipWith(16, text).substr(0, 3000));
    ZuIUrlStream in(cut);
    EXPECT_EQ(Slurp(in), "");
}

TEST(UrlDecoding, LosesNothingWhateverTheRatio) {
    // Four kilobytes of input inflate to far more than one output block.
    const std::string zeros(24 << 20, '\0');
    TempDir dir;
    dir.write("z", zeros);
    if (!Have("gzip") || TempDir::Sh("gzip -9 " + dir.path + "/z") != 0)
        GTEST_SKIP() << "gzip is needed to make the archive";
    for (unsigned hints : {0u, 1u}) {
        ZuIUrlStream in(("file:" + dir.path + "/z.gz").c_str(), false);
        in.setHints(static_cast<ZuIUrlStream::StreamHint>(hints));
        const std::string got = Slurp(in);
        EXPECT_EQ(got.size(), zeros.size()) << hints;
        EXPECT_TRUE(got == zeros) << hints;
    }
}

TEST(UrlDecoding, CorruptDataEndsTheInputKeepingWhatCameBefore) {
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += std::to_string(i * 7919 % 100003) + ' ';
    const std::string good = GzipWith(8, text);
    // Bytes decoded before the damage are right; a cut stream yields a strict prefix.
    const struct { size_t cut, garbleAt, intact; } cases[] = {
        {good.size() / 2, 0, ~size_t(0)}, {12, 0, ~size_t(0)},
        {good.size(), good.size() / 3, 10000}, {good.size(), 30, 0}};
    for (const auto& c : cases) {
        std::string bad = good.substr(0, c.cut);
        for (size_t i = c.garbleAt; c.garbleAt && i < c.garbleAt + 64; ++i)
            bad[i] = static_cast<char>(0xFF - i);
        std::istringstream source(bad);
        ZuIUrlStream in(source);
        const std::string got = Slurp(in);
        const size_t intact = std::min(c.intact, got.size());
        EXPECT_GE(got.size(), c.intact == ~size_t(0) ? 0 : c.intact) << c.cut << " " << c.garbleAt;
        EXPECT_EQ(got.substr(0, intact), text.substr(0, intact)) << c.cut << " " << c.garbleAt;
        if (!c.garbleAt) {
            EXPECT_LT(got.size(), text.size()) << c.cut;
        }
        in.clear();
        in.seekg(0); // what came stays readable
        EXPECT_EQ(Slurp(in), got);
    }
}
