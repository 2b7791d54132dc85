// XML parse and write throughput (MB/s) of Zu against pugixml, tinyxml2 and libxml2 on
// generated documents: records of about 8 MB and 2 KB (many small elements, indented),
// and articles of about 8 MB (few elements, long texts); and the peak memory each parser
// needs for the two 8 MB documents (measured in child processes). Each Zu run
// carries the counter speedup: its peer's time over its own.
#include <zu/xml.h>

#include <benchmark/benchmark.h>

#include "ratio_reporter.h"

#ifdef ZU_BENCH_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef ZU_BENCH_TINYXML2
#include <tinyxml2.h>
#endif
#ifdef ZU_BENCH_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#endif

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace {

// A catalogue of records: attributes, short and long texts, an entity now and then,
// a comment every tenth record, indented one element per line.
std::string makeDocument(size_t targetBytes) {
    static const char* const Words[] = {"alpha", "bravo", "charlie", "delta", "echo",
                                        "foxtrot", "golf", "hotel", "india", "juliet",
                                        "kilo", "lima", "mike", "november", "oscar"};
    std::string s = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<catalog>\n";
    unsigned seed = 12345;
    auto next = [&seed]() { return seed = seed * 1103515245u + 12345u, (seed >> 8) & 0xFFFF; };
    for (unsigned i = 0; s.size() < targetBytes; ++i) {
        char head[160];
        std::snprintf(head, sizeof head,
                      "  <book id=\"bk%06u\" lang=\"en\" available=\"%s\">\n", i,
                      i % 3 ? "yes" : "no");
        s += head;
        s += "    <title>";
        for (int w = 0; w < 4; ++w) {
            s += Words[next() % 15];
            s += ' ';
        }
        s += "volume " + std::to_string(i) + "</title>\n";
        s += "    <author>" + std::string(Words[next() % 15]) + " " + Words[next() % 15] +
             "</author>\n";
        s += "    <price currency=\"EUR\">" + std::to_string(next() % 100) + "." +
             std::to_string(next() % 90 + 10) + "</price>\n";
        s += "    <summary>";
        const int words = 12 + next() % 20;
        for (int w = 0; w < words; ++w) {
            s += Words[next() % 15];
            s += w % 9 == 8 ? " &amp; " : " ";
        }
        s += "</summary>\n";
        if (i % 10 == 0)
            s += "    <!-- reviewed -->\n";
        s += "  </book>\n";
    }
    s += "</catalog>\n";
    return s;
}

// Articles: few elements, long texts (about 1.2 KB of words per article).
std::string makeArticles(size_t targetBytes) {
    static const char* const Words[] = {"alpha", "bravo", "charlie", "delta", "echo",
                                        "foxtrot", "golf", "hotel", "india", "juliet"};
    std::string s = "<?xml version=\"1.0\"?>\n<articles>\n";
    unsigned seed = 777;
    for (unsigned i = 0; s.size() < targetBytes; ++i) {
        std::string body;
        for (int w = 0; w < 180; ++w) {
            seed = seed * 1103515245u + 12345u;
            body += Words[(seed >> 8) % 10];
            body += ' ';
        }
        s += "  <article id=\"a" + std::to_string(i) + "\">\n    <title>" + body.substr(0, 60) +
             "</title>\n    <body>" + body + "</body>\n  </article>\n";
    }
    return s + "</articles>\n";
}

const std::string& textDocument() {
    static const std::string doc = makeArticles(8u << 20);
    return doc;
}

const std::string& largeDocument() {
    static const std::string doc = makeDocument(8u << 20);
    return doc;
}

const std::string& smallDocument() {
    static const std::string doc = makeDocument(2000);
    return doc;
}

// An input stream over a string without copying it.
class MemoryBuf : public std::streambuf {
public:
    explicit MemoryBuf(const std::string& s) {
        char* p = const_cast<char*>(s.data());
        setg(p, p, p + s.size());
    }
};

// ---- the parsers -----------------------------------------------------------------------

void zuParse(const std::string& text) {
    ZuXmlError::Reset();
    MemoryBuf buf(text);
    std::istream in(&buf);
    ZuXmlDocument doc;
    doc.read(in);
    if (ZuXmlError::IsSet() || !doc.getRootElement())
        std::abort();
    benchmark::DoNotOptimize(doc.getRootElement());
}

#ifdef ZU_BENCH_PUGIXML
void pugiParse(const std::string& text) {
    pugi::xml_document doc;
    if (!doc.load_buffer(text.data(), text.size()))
        std::abort();
    benchmark::DoNotOptimize(doc.first_child());
}
#endif

#ifdef ZU_BENCH_TINYXML2
void tinyParse(const std::string& text) {
    tinyxml2::XMLDocument doc;
    if (doc.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS)
        std::abort();
    benchmark::DoNotOptimize(doc.RootElement());
}
#endif

#ifdef ZU_BENCH_LIBXML2
void libxmlParse(const std::string& text) {
    xmlDocPtr doc = xmlReadMemory(text.data(), int(text.size()), nullptr, nullptr, 0);
    if (!doc)
        std::abort();
    benchmark::DoNotOptimize(doc);
    xmlFreeDoc(doc);
}
#endif

template <void (*Parse)(const std::string&)>
void parseBench(benchmark::State& state, const std::string& (*document)()) {
    const std::string& text = document();
    for (auto _ : state)
        Parse(text);
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}

// ---- the writers (output size is the measure) ------------------------------------------

void zuWrite(benchmark::State& state, const std::string& (*document)()) {
    ZuXmlError::Reset();
    MemoryBuf buf(document());
    std::istream in(&buf);
    ZuXmlDocument doc;
    doc.read(in);
    size_t bytes = 0;
    for (auto _ : state) {
        std::ostringstream out;
        doc.write(out);
        bytes += out.str().size();
    }
    state.SetBytesProcessed(int64_t(bytes));
}

#ifdef ZU_BENCH_PUGIXML
void pugiWrite(benchmark::State& state, const std::string& (*document)()) {
    pugi::xml_document doc;
    doc.load_buffer(document().data(), document().size());
    size_t bytes = 0;
    for (auto _ : state) {
        std::ostringstream out;
        doc.save(out);
        bytes += out.str().size();
    }
    state.SetBytesProcessed(int64_t(bytes));
}
#endif

#ifdef ZU_BENCH_TINYXML2
void tinyWrite(benchmark::State& state, const std::string& (*document)()) {
    tinyxml2::XMLDocument doc;
    doc.Parse(document().data(), document().size());
    size_t bytes = 0;
    for (auto _ : state) {
        tinyxml2::XMLPrinter printer;
        doc.Print(&printer);
        bytes += size_t(printer.CStrSize());
    }
    state.SetBytesProcessed(int64_t(bytes));
}
#endif

#ifdef ZU_BENCH_LIBXML2
void libxmlWrite(benchmark::State& state, const std::string& (*document)()) {
    xmlDocPtr doc = xmlReadMemory(document().data(), int(document().size()), nullptr, nullptr, 0);
    size_t bytes = 0;
    for (auto _ : state) {
        xmlChar* out = nullptr;
        int size = 0;
        xmlDocDumpMemory(doc, &out, &size);
        bytes += size_t(size);
        xmlFree(out);
    }
    xmlFreeDoc(doc);
    state.SetBytesProcessed(int64_t(bytes));
}
#endif

// ---- peak memory -------------------------------------------------------------------------

long statusKb(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    const size_t n = std::strlen(field);
    while (std::getline(status, line)) {
        if (line.compare(0, n, field) == 0)
            return std::stol(line.substr(n + 1));
    }
    return -1;
}

// The parsers above destroy their tree before returning; these keep it until measured.
using HoldFn = void (*)(const std::string&);

void zuHold(const std::string& text) {
    ZuXmlError::Reset();
    MemoryBuf buf(text);
    std::istream in(&buf);
    static ZuXmlDocument doc;
    doc.read(in);
}

#ifdef ZU_BENCH_PUGIXML
void pugiHold(const std::string& t) {
    static pugi::xml_document held;
    held.load_buffer(t.data(), t.size());
}
#endif
#ifdef ZU_BENCH_TINYXML2
void tinyHold(const std::string& t) {
    static tinyxml2::XMLDocument held;
    held.Parse(t.data(), t.size());
}
#endif
#ifdef ZU_BENCH_LIBXML2
void libxmlHold(const std::string& t) {
    benchmark::DoNotOptimize(xmlReadMemory(t.data(), int(t.size()), nullptr, nullptr, 0));
}
#endif

const std::vector<std::pair<const char*, HoldFn>>& holders() {
    static const std::vector<std::pair<const char*, HoldFn>> all = {
        {"Zu", zuHold},
#ifdef ZU_BENCH_PUGIXML
        {"pugixml", pugiHold},
#endif
#ifdef ZU_BENCH_TINYXML2
        {"tinyxml2", tinyHold},
#endif
#ifdef ZU_BENCH_LIBXML2
        {"libxml2", libxmlHold},
#endif
    };
    return all;
}

const char PeakOption[] = "--zu-peak=";

// Child side of a measurement: parse one document with one parser, keep the tree and
// print the growth of the peak resident size over the size before parsing (-1 when the
// peak cannot be reset: no /proc/self/clear_refs).
int measureInThisProcess(const char* what) {
    const bool articles = std::strchr(what, ':') && std::strcmp(std::strchr(what, ':') + 1, "articles") == 0;
    std::string text = articles ? makeArticles(8u << 20) : makeDocument(8u << 20);
    text.shrink_to_fit();
    long result = -1;
    for (const auto& holder : holders()) {
        if (std::strncmp(what, holder.first, std::strlen(holder.first)) != 0 ||
            what[std::strlen(holder.first)] != ':')
            continue;
        std::ofstream clear("/proc/self/clear_refs");
        clear << "5" << std::flush;
        if (clear) {
            const long base = statusKb("VmRSS:");
            holder.second(text);
            result = (statusKb("VmHWM:") - base) * 1024;
        }
    }
    std::printf("%ld\n", result);
    return 0;
}

// Each measurement runs in a fresh process (this program again), so that no parser
// finds resident memory freed by the document generation or by another parser.
long peakBytes(const char* parser, const char* document) {
    char self[4096];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0)
        return -1;
    self[length] = 0;
    const std::string command = std::string(self) + " " + PeakOption + parser + ":" + document;
    FILE* child = popen(command.c_str(), "r");
    if (!child)
        return -1;
    long result = -1;
    if (std::fscanf(child, "%ld", &result) != 1)
        result = -1;
    pclose(child);
    return result;
}

std::string measureMemory() {
    std::string report;
    char text[160];
    for (const std::string* doc : {&largeDocument(), &textDocument()}) {
        const bool records = doc == &largeDocument();
        const double input = double(doc->size());
        std::snprintf(text, sizeof text,
                      "\nPeak memory parsing the %.1f MB %s document (tree kept), times the input size\n",
                      input / 1e6, records ? "record" : "article");
        report += text;
        for (const auto& holder : holders()) {
            const long bytes = peakBytes(holder.first, records ? "records" : "articles");
            if (bytes < 0)
                std::snprintf(text, sizeof text, "  %-9s unavailable\n", holder.first);
            else
                std::snprintf(text, sizeof text, "  %-9s %7.1f MB  x%.2f\n", holder.first,
                              double(bytes) / 1e6, double(bytes) / input);
            report += text;
        }
    }
    return report;
}

// Each peer run is named "Peer<Op>/<size>/<peer>" and followed by the Zu run of the same
// name with "Zu" in place of "Peer", so that the ratio reporter gives every Zu run the
// counter speedup = peer time / Zu time (above 1: Zu faster). Zu thus runs once per peer.
void registerAll() {
    using Bench = void (*)(benchmark::State&, const std::string& (*)());
    struct Peer {
        const char* name;
        Bench parse;
        Bench write;
    };
    const std::vector<Peer> peers = {
#ifdef ZU_BENCH_PUGIXML
        {"pugixml", parseBench<pugiParse>, pugiWrite},
#endif
#ifdef ZU_BENCH_TINYXML2
        {"tinyxml2", parseBench<tinyParse>, tinyWrite},
#endif
#ifdef ZU_BENCH_LIBXML2
        {"libxml2", parseBench<libxmlParse>, libxmlWrite},
#endif
    };
    struct Size {
        const char* name;
        const std::string& (*document)();
    };
    for (const Size& size : {Size{"8MB", largeDocument}, Size{"2KB", smallDocument},
                             Size{"8MB-articles", textDocument}}) {
        for (const Peer& peer : peers) {
            const std::string suffix = std::string("/") + size.name + "/" + peer.name;
            benchmark::RegisterBenchmark(("PeerParse" + suffix).c_str(), peer.parse, size.document);
            benchmark::RegisterBenchmark(("ZuParse" + suffix).c_str(), parseBench<zuParse>,
                                         size.document);
            benchmark::RegisterBenchmark(("PeerWrite" + suffix).c_str(), peer.write, size.document);
            benchmark::RegisterBenchmark(("ZuWrite" + suffix).c_str(), zuWrite, size.document);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strncmp(argv[1], PeakOption, sizeof PeakOption - 1) == 0)
        return measureInThisProcess(argv[1] + sizeof PeakOption - 1);
    // A filtered run (a partial one, for profiling) leaves the memory figures out.
    bool filtered = false;
    for (int i = 1; i < argc; ++i)
        filtered = filtered || std::strncmp(argv[i], "--benchmark_filter", 18) == 0;
    registerAll();
    std::printf("Documents: records %zu bytes and %zu bytes, articles %zu bytes\n",
                largeDocument().size(), smallDocument().size(), textDocument().size());
    const std::string memory = filtered ? std::string() : measureMemory();
    const int status = ZuRatioReporter("Zu", "Peer").runMain(argc, argv);
    std::fputs(memory.c_str(), stdout);
    return status;
}
