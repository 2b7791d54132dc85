// Gzip and zip decoding: files made by gzip, zip and Python's zipfile, gzip headers with
// every optional field, extreme ratios and corrupt data.
#include "url_servers.h"

TEST(UrlDecoding, DeliversFilesDecompressedLosingNothing) {
    TempDir dir;
    const std::string text = "line one\n" + Repeat("the quick brown fox jumps\n", 300000);
    const std::string zeros(24 << 20, '\0'); // 4 kB of its gzip inflate to megabytes
    dir.write("t.txt", text);
    dir.write("z", zeros);
    if (Sh("cd " + dir.path + " && gzip -k t.txt && gzip -9 z && zip -q t.zip t.txt && python3 -c "
           "\"import zipfile as z; z.ZipFile('p.zip','w',z.ZIP_DEFLATED).write('t.txt')\"") != 0)
        GTEST_SKIP() << "gzip, zip and python3 are needed to make the archives";
    const struct { const char* name; const std::string& content; } cases[] = {
        {"t.txt.gz", text}, {"t.zip", text}, {"p.zip", text}, {"t.txt", text}, {"z.gz", zeros}};
    for (const auto& c : cases) {
        for (auto hints : {ZuIUrlStream::NoHint, ZuIUrlStream::NoHistory}) {
            ZuIUrlStream in(("file:" + dir.path + "/" + c.name).c_str(), false);
            in.setHints(hints);
            EXPECT_TRUE(Slurp(in) == c.content) << c.name << " hints " << hints;
        }
    }
}

TEST(UrlDecoding, SkipsEveryOptionalGzipHeaderField) {
    const std::string text = Repeat("optional fields ", 30000);
    for (int flags : {0, 2, 4, 8, 16, 2 | 4 | 8 | 16}) {
        std::istringstream source(Gzip(text, flags));
        ZuIUrlStream in(source);
        EXPECT_EQ(Slurp(in), text) << "flags " << flags;
    }
}

TEST(UrlDecoding, CorruptDataEndsTheInputKeepingWhatCameBefore) {
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += std::to_string(i * 7919 % 100003) + ' ';
    const std::string good = Gzip(text, 8 | 16);
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
