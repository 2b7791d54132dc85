// Reading a 50 MB file through ZuIUrlStream, plain against std::ifstream and gzip against
// zlib's gzread (gzgets for lines), with and without history (hint NoHistory), in 64 KiB
// blocks and line by line. Each Zu benchmark reads through
// its peer too, alternately, and reports "vs_peer": its throughput divided by the peer's,
// in CPU time (the machine may be shared: wall time would measure the neighbours too). Peak memory
// of one full read is measured first, each in a fresh child process, and printed.
#include <zu/url.h>

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <ctime>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

const char* const Dir = "/tmp/zu_url_bench";
const std::string Plain = std::string(Dir) + "/data.txt";
const std::string Gzip = Plain + ".gz";
const long long Size = 50LL << 20;
const size_t ReadSize = 64 << 10;

std::map<std::string, long> g_peakKb;        // peak resident memory of one read, by name

long long FileSize(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<long long>(st.st_size) : -1;
}

// 50 MB of varied text lines (about 4:1 under gzip), and its gzip; kept between runs.
void MakeInputs() {
    mkdir(Dir, 0755);
    if (FileSize(Plain) != Size) {
        const char* words[] = {"alpha", "beta", "gamma", "delta", "stream", "buffer", "zu",
                               "history", "chunk", "inflate", "socket", "header"};
        FILE* out = std::fopen(Plain.c_str(), "wb");
        std::string line;
        unsigned seed = 12345;
        for (long long written = 0; written < Size;
             written += static_cast<long long>(line.size())) {
            line.clear();
            for (int w = 0; w < 8; ++w) {
                seed = seed * 1103515245u + 12345u;
                line += words[(seed >> 16) % 12];
                line += ' ' + std::to_string((seed >> 8) % 10000) + ' ';
            }
            line.back() = '\n';
            if (written + static_cast<long long>(line.size()) > Size)
                line.resize(static_cast<size_t>(Size - written));
            std::fwrite(line.data(), 1, line.size(), out);
        }
        std::fclose(out);
        std::remove(Gzip.c_str());
    }
    if (FileSize(Gzip) <= 0) {
        FILE* in = std::fopen(Plain.c_str(), "rb");
        gzFile out = gzopen(Gzip.c_str(), "wb6");
        std::vector<char> buf(1 << 20);
        for (size_t n; (n = std::fread(buf.data(), 1, buf.size(), in)) > 0;)
            gzwrite(out, buf.data(), static_cast<unsigned>(n));
        gzclose(out);
        std::fclose(in);
    }
}

// The readers: each reads its whole input once, in 64 KiB blocks or line by line, and
// returns the byte count (line ends included).
long long ReadStream(std::istream& in, bool lines) {
    long long total = 0;
    if (lines) {
        for (std::string line; std::getline(in, line);)
            total += static_cast<long long>(line.size()) + (in.eof() ? 0 : 1);
        return total;
    }
    std::vector<char> buf(ReadSize);
    while (in.read(buf.data(), static_cast<std::streamsize>(buf.size())) || in.gcount() > 0)
        total += in.gcount();
    return total;
}

long long ReadZu(const std::string& path, bool history, bool lines) {
    ZuIUrlStream in(("file:" + path).c_str(), false);
    if (!history)
        in.setHints(ZuIUrlStream::NoHistory);
    return ReadStream(in, lines);
}

long long ReadIfstream(bool lines) {
    std::ifstream in(Plain, std::ios::binary);
    return ReadStream(in, lines);
}

long long ReadGzread(bool lines) {
    gzFile in = gzopen(Gzip.c_str(), "rb");
    std::vector<char> buf(ReadSize);
    long long total = 0;
    if (lines) {
        while (gzgets(in, buf.data(), static_cast<int>(buf.size())))
            total += static_cast<long long>(std::strlen(buf.data()));
    } else {
        for (int n; (n = gzread(in, buf.data(), static_cast<unsigned>(buf.size()))) > 0;)
            total += n;
    }
    gzclose(in);
    return total;
}

// Peak resident memory in kB of a fresh child running reader once.
long PeakKb(const std::function<long long()>& reader) {
    const pid_t pid = fork();
    if (pid == 0)
        _exit(reader() == Size ? 0 : 1);
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? usage.ru_maxrss : -1;
}

double CpuSeconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) / 1e9;
}

// Runs reader as the benchmark loop.
void Loop(benchmark::State& state, const std::function<long long()>& reader) {
    for (auto _ : state) {
        const long long n = reader();
        if (n != Size)
            state.SkipWithError("short read");
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * Size);
}

void Peer(benchmark::State& state, bool gzip, bool lines) {
    Loop(state, [=] { return gzip ? ReadGzread(lines) : ReadIfstream(lines); });
}

// Each iteration reads through Zu and through the peer, alternately, so that both see the
// same machine; the reported time is Zu's alone.
void Zu(benchmark::State& state, bool gzip, bool history, bool lines) {
    double zuSeconds = 0, peerSeconds = 0;
    for (auto _ : state) {
        double start = CpuSeconds();
        if (ReadZu(gzip ? Gzip : Plain, history, lines) != Size)
            state.SkipWithError("short read");
        const double zu = CpuSeconds() - start;
        zuSeconds += zu;
        start = CpuSeconds();
        benchmark::DoNotOptimize(gzip ? ReadGzread(lines) : ReadIfstream(lines));
        peerSeconds += CpuSeconds() - start;
        state.SetIterationTime(zu);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * Size);
    state.counters["vs_peer"] = peerSeconds / zuSeconds;
    state.counters["peak_MB"] =
        static_cast<double>(g_peakKb[std::string(gzip ? "zu gzip" : "zu plain") +
                                     (history ? ", history" : ", no history")]) / 1024.0;
}

} // namespace

#define ZU_URL_BENCH(name, ...) \
    BENCHMARK_CAPTURE(Zu, name, __VA_ARGS__)->Unit(benchmark::kMillisecond)->UseManualTime()
BENCHMARK_CAPTURE(Peer, Plain_ifstream_blocks, false, false)->Unit(benchmark::kMillisecond);
ZU_URL_BENCH(Plain_NoHistory_blocks, false, false, false);
ZU_URL_BENCH(Plain_History_blocks, false, true, false);
BENCHMARK_CAPTURE(Peer, Plain_ifstream_lines, false, true)->Unit(benchmark::kMillisecond);
ZU_URL_BENCH(Plain_NoHistory_lines, false, false, true);
ZU_URL_BENCH(Plain_History_lines, false, true, true);
BENCHMARK_CAPTURE(Peer, Gzip_gzread_blocks, true, false)->Unit(benchmark::kMillisecond);
ZU_URL_BENCH(Gzip_NoHistory_blocks, true, false, false);
ZU_URL_BENCH(Gzip_History_blocks, true, true, false);
BENCHMARK_CAPTURE(Peer, Gzip_gzgets_lines, true, true)->Unit(benchmark::kMillisecond);
ZU_URL_BENCH(Gzip_NoHistory_lines, true, false, true);
ZU_URL_BENCH(Gzip_History_lines, true, true, true);

int main(int argc, char** argv) {
    MakeInputs();
    const std::pair<const char*, std::function<long long()>> readers[] = {
        {"nothing read", [] { return Size; }},
        {"ifstream plain", [] { return ReadIfstream(false); }},
        {"zu plain, no history", [] { return ReadZu(Plain, false, false); }},
        {"zu plain, history", [] { return ReadZu(Plain, true, false); }},
        {"gzread", [] { return ReadGzread(false); }},
        {"zu gzip, no history", [] { return ReadZu(Gzip, false, false); }},
        {"zu gzip, history", [] { return ReadZu(Gzip, true, false); }}};
    std::printf("Peak resident memory of one read of %lld MB (fresh process each):\n", Size >> 20);
    for (const auto& r : readers) {
        g_peakKb[r.first] = PeakKb(r.second);
        std::printf("  %-22s %8.1f MB\n", r.first, static_cast<double>(g_peakKb[r.first]) / 1024.0);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
