// Gzip and zip decoding: files made by gzip, zip and Python's zipfile, gzip headers with
// every optional field, extreme ratios and corrupt data.
#include "url_servers.h"

namespace {

// A gzip member with the given flags and their optional fields (trailer not checked).
std::string GzipWith(int flags, const std::string& text) {
    std::string g = {'\x1f', '\x8b', 8, static_cast<char>(flags), 1, 2, 3, 4, 0, 3};
    g += std::string(flags & 4 ? "\x05\x00" "extra" : "", flags & 4 ? 7 : 0);
    g += std::string(flags & 8 ? "name.txt" : "", flags & 8 ? 9 : 0);
    g += flags & 16 ? std::string(5000, 'c') + '\0' : ""; // longer than the first chunk
    return g + (flags & 2 ? "hc" : "") + Pack(text, -15) + std::string(8, '\0');
}

} // namespace

TEST(UrlDecoding, DeliversGzipAndZipFilesDecompressed) {
    TempDir dir;
    const std::string text = "line one\n" + Repeat("the quick brown fox jumps\n", 300000);
    dir.write("t.txt", text);
    if (Sh("cd " + dir.path + " && gzip -k t.txt && zip -q t.zip t.txt && python3 -c \"import "
           "zipfile; zipfile.ZipFile('p.zip','w',zipfile.ZIP_DEFLATED).write('t.txt')\"") != 0)
        GTEST_SKIP() << "gzip, zip and python3 are needed to make the archives";
    for (const char* name : {"t.txt.gz", "t.zip", "p.zip", "t.txt"}) {
        for (auto hints : {ZuIUrlStream::NoHint, ZuIUrlStream::NoHistory}) {
            ZuIUrlStream in(("file:" + dir.path + "/" + name).c_str(), false);
            in.setHints(hints);
            std::string first;
            EXPECT_TRUE(std::getline(in, first) && first == "line one") << name;
            EXPECT_EQ(first + "\n" + Slurp(in), text) << name << " hints " << hints;
        }
    }
}

TEST(UrlDecoding, SkipsEveryOptionalGzipHeaderField) {
    const std::string text = Repeat("optional fields ", 30000);
    for (int flags : {0, 2, 4, 8, 16, 2 | 4 | 8 | 16}) {
        std::istringstream source(GzipWith(flags, text));
        ZuIUrlStream in(source);
        EXPECT_EQ(Slurp(in), text) << "flags " << flags;
    }
}

TEST(UrlDecoding, LosesNothingWhateverTheRatio) {
    // Four kilobytes of input inflate to megabytes, far more than one output block.
    const std::string zeros(24 << 20, '\0');
    TempDir dir;
    dir.write("z", zeros);
    if (Sh("gzip -9 " + dir.path + "/z") != 0)
        GTEST_SKIP() << "gzip is needed to make the archive";
    for (auto hints : {ZuIUrlStream::NoHint, ZuIUrlStream::NoHistory}) {
        ZuIUrlStream in(("file:" + dir.path + "/z.gz").c_str(), false);
        in.setHints(hints);
        EXPECT_TRUE(Slurp(in) == zeros) << hints;
    }
}

TEST(UrlDecoding, CorruptDataEndsTheInputKeepingWhatCameBefore) {
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += std::to_string(i * 7919 % 100003) + ' ';
    const std::string good = GzipWith(8 | 16, text);
    // Bytes decoded before the damage are right; a cut stream yields a strict prefix.
    const struct { size_t cut, garbleAt, intact; } cases[] = {
        {good.size() / 2, 0, 1}, {3000, 0, 0}, {good.size(), good.size() / 3, 10000},
        {good.size(), 5020, 0}};
    for (const auto& c : cases) {
        std::string bad = good.substr(0, c.cut);
        for (size_t i = c.garbleAt; c.garbleAt && i < c.garbleAt + 64; ++i)
            bad[i] = static_cast<char>(0xFF - i);
        std::istringstream source(bad);
        ZuIUrlStream in(source);
        const std::string got = Slurp(in);
        const size_t intact = c.intact == 1 ? got.size() : c.intact;
        EXPECT_TRUE(got.size() >= intact && got.size() < text.size() + c.garbleAt) << c.cut;
        EXPECT_EQ(got.substr(0, intact), text.substr(0, intact)) << c.cut << " " << c.garbleAt;
        in.clear();
        in.seekg(0); // what came stays readable
        EXPECT_EQ(Slurp(in), got);
    }
}
