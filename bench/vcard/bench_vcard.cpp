// bench_vcard [MEGABYTES] [--no-vobject]: read throughput of the vCard
// reader in MB/s on a generated file of many cards (50 MB unless told),
// beside python3-vobject reading the same file in the same run.
//
// The file mixes what phone backups and mail programs hold: vCard 3.0 in
// UTF-8 with folded lines and groups, 2.1 with quoted-printable windows-1251
// names, and one card in twenty with a small base64 photo. Its composition
// is printed, so that figures from different runs can be told apart.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/vcard/vcard_document.h"
#include "platform/vcard/vcard_reader.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace zelvo::vcard;

const char* kFamilies[] = {"Ivanov", "Smith", "Müller", "Петров", "Сидоренко", "Nguyễn", "O'Brien", "García"};
const char* kGiven[] = {"Anna", "John", "Jürgen", "Мария", "Олег", "Thị", "Seán", "Lucía"};
const char* kOrgs[] = {"Acme Corp;Research", "Рога и копыта", "Globex;Sales;EMEA", "Initech"};

std::string Qp1251(const std::string& utf8Cyrillic) {
    // Only the letters used by the generator: А–я and ё.
    std::string out;
    for (std::size_t i = 0; i < utf8Cyrillic.size();) {
        unsigned char c = utf8Cyrillic[i];
        unsigned cp;
        if (c < 0x80) { cp = c; i += 1; }
        else { cp = ((c & 0x1F) << 6) | (utf8Cyrillic[i + 1] & 0x3F); i += 2; }
        unsigned b = cp < 0x80 ? cp : (cp >= 0x410 && cp <= 0x44F ? cp - 0x410 + 0xC0 : '?');
        char buf[4];
        std::snprintf(buf, sizeof buf, "=%02X", b);
        out += (b < 0x80 && b != '=') ? std::string(1, static_cast<char>(b)) : std::string(buf);
    }
    return out;
}

std::string Photo(std::mt19937& rng) {
    static const char* b64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string data = "/9j/4AAQSkZJRgABAQEASABIAAD/";
    for (int i = 0; i < 8000; ++i) data.push_back(b64[rng() % 64]);
    std::string folded;
    for (std::size_t i = 0; i < data.size(); i += 74) folded += " " + data.substr(i, 74) + "\r\n";
    return folded;
}

std::string Generate(std::size_t bytes, bool withPhotos, int& cards, int& photos) {
    std::mt19937 rng(42);
    std::string out;
    out.reserve(bytes + 20000);
    cards = photos = 0;
    while (out.size() < bytes) {
        int n = cards++;
        const char* fam = kFamilies[rng() % 8];
        const char* giv = kGiven[rng() % 8];
        if (n % 4 == 3) {
            out += "BEGIN:VCARD\r\nVERSION:2.1\r\n";
            out += "N;CHARSET=WINDOWS-1251;ENCODING=QUOTED-PRINTABLE:" + Qp1251("Кузнецов") + ";" + Qp1251("Пётр") + ";" +
                   Qp1251("Ильич") + ";;\r\n";
            out += "FN;CHARSET=WINDOWS-1251;ENCODING=QUOTED-PRINTABLE:" + Qp1251("Пётр Ильич Кузнецов") + "\r\n";
            out += "TEL;CELL;PREF:+7916" + std::to_string(1000000 + n) + "\r\n";
            out += "TEL;WORK;VOICE:+7495" + std::to_string(2000000 + n) + "\r\n";
            out += "ADR;HOME;CHARSET=WINDOWS-1251;ENCODING=QUOTED-PRINTABLE:;;" + Qp1251("ул. Ленина 5") + ";" +
                   Qp1251("Москва") + ";;101000;" + Qp1251("Россия") + "\r\n";
            out += "END:VCARD\r\n";
            continue;
        }
        out += "BEGIN:VCARD\r\nVERSION:3.0\r\nPRODID:-//Bench//Generator//EN\r\n";
        out += std::string("N:") + fam + ";" + giv + ";;;\r\n";
        out += std::string("FN:") + giv + " " + fam + "\r\n";
        out += std::string("ORG:") + kOrgs[rng() % 4] + "\r\nTITLE:Senior engineer\\, platform\r\n";
        out += "item1.EMAIL;TYPE=INTERNET,WORK,pref:user" + std::to_string(n) + "@example.com\r\n";
        out += "item1.X-ABLabel:_$!<Work>!$_\r\n";
        out += "TEL;TYPE=CELL:+1 555 " + std::to_string(100000 + n) + "\r\n";
        out += "TEL;TYPE=HOME,VOICE:+1 555 " + std::to_string(200000 + n) + "\r\n";
        out += "ADR;TYPE=WORK:;Suite 100;1 Infinite Loop;Cupertino;CA;95014;United States of\r\n  America\r\n";
        out += "URL;TYPE=WORK:https://example.com/people/" + std::to_string(n) + "\r\n";
        out += "NOTE:Met at the conference in 2019\\; follow up about the contract and the\r\n  quarterly review.\r\n";
        out += "BDAY:1980-01-01\r\nUID:urn:uuid:" + std::to_string(rng()) + "\r\n";
        if (withPhotos && n % 20 == 0) {
            ++photos;
            out += "PHOTO;ENCODING=b;TYPE=JPEG:\r\n" + Photo(rng);
        }
        out += "END:VCARD\r\n";
    }
    return out;
}

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

struct Figures {
    double zelvo = 0, vobject = 0;
};

// Measures one generated file; returns false when the reader reported errors.
bool Measure(std::size_t megabytes, bool withPhotos, bool vobject) {
    int cards = 0, photos = 0;
    std::string text = Generate(megabytes << 20, withPhotos, cards, photos);
    const double mb = static_cast<double>(text.size()) / 1e6;
    auto path = std::filesystem::temp_directory_path() / ("zelvo-bench-" + std::to_string(::getpid()) + ".vcf");
    std::ofstream(path, std::ios::binary) << text;
    std::printf("\nfile: %.1f MB, %d cards (1 in 4 vCard 2.1 quoted-printable windows-1251; %d with a 6 KB photo)\n",
                mb, cards, photos);

    // Our reader, in memory: best of five.
    double best = 1e9;
    std::size_t read = 0;
    for (int run = 0; run < 5; ++run) {
        auto t0 = Clock::now();
        ReadResult r = ReadVCards(text, "bench.vcf");
        best = std::min(best, Seconds(Clock::now() - t0));
        read = r.cards.size();
        if (r.HasErrors()) {
            std::fprintf(stderr, "bench: the reader reported errors: %s\n",
                         FormatDiagnostic(r.diagnostics.front()).c_str());
            return false;
        }
    }
    std::printf("  zelvo ReadVCards (memory):       %8.3f s  %8.1f MB/s  (%zu cards)\n", best, mb / best, read);

    // The whole LoadFile, file reading included.
    VCardDocument doc;
    std::string p = path.string();
    auto t0 = Clock::now();
    doc.LoadFile(p);
    double load = Seconds(Clock::now() - t0);
    std::printf("  zelvo LoadFile (from disk):      %8.3f s  %8.1f MB/s  (%d cards)\n", load, mb / load,
                doc.CardCount());

    if (vobject) {
        std::string cmd =
            "/usr/bin/python3 -c 'import sys, time, vobject\n"
            "text = open(sys.argv[1], encoding=\"utf-8\", newline=\"\").read()\n"
            "t = time.perf_counter()\n"
            "n = sum(1 for _ in vobject.readComponents(text, ignoreUnreadable=True))\n"
            "print(\"%f %d\" % (time.perf_counter() - t, n))' " + p;
        FILE* pipe = ::popen(cmd.c_str(), "r");
        double secs = 0;
        int n = 0;
        if (pipe && std::fscanf(pipe, "%lf %d", &secs, &n) == 2 && secs > 0) {
            std::printf("  python3-vobject readComponents:  %8.3f s  %8.2f MB/s  (%d cards)\n", secs, mb / secs, n);
            std::printf("  ratio zelvo / vobject:           %8.1f x\n", secs / best);
        } else {
            std::printf("  python3-vobject: could not run (is python3-vobject installed?)\n");
        }
        if (pipe) ::pclose(pipe);
    }
    std::filesystem::remove(path);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t megabytes = 50;
    bool vobject = true;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--no-vobject") vobject = false;
        else megabytes = static_cast<std::size_t>(std::max(1, std::atoi(argv[i])));
    }
    // With photos the base64 share lifts the figure; without them it is
    // text alone, the harder case.
    bool ok = Measure(megabytes, true, vobject) && Measure(megabytes, false, vobject);
    return ok ? 0 : 1;
}
