#include "platform/vcard/vcard_document.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "platform/core/error.h"
#include "platform/ui/ui_host.h"
#include "platform/vcard/vcard_writer.h"

namespace zelvo::vcard {

namespace {

constexpr const char* kFilter = "vCard (*.vcf;*.vcard)|*.vcf;*.vcard|All files (*.*)|*.*";

// Reads a whole file in one go; false with `reason` set when it cannot.
bool ReadWholeFile(const std::string& path, std::string& bytes, std::string& reason) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) {
        reason = std::string("cannot open the file: ") + std::strerror(errno);
        return false;
    }
    bytes.clear();
    long size = -1;
    if (std::fseek(f, 0, SEEK_END) == 0) size = std::ftell(f);
    std::rewind(f);
    if (size > static_cast<long>(kMaxVCardFileBytes)) {
        std::fclose(f);
        reason = "file is larger than 256 MB; not read";
        return false;
    }
    if (size > 0) bytes.reserve(static_cast<std::size_t>(size));
    // Read to the end whatever the size said: pipes and growing files have none.
    char chunk[1 << 16];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0) {
        if (bytes.size() + n > kMaxVCardFileBytes) {
            std::fclose(f);
            reason = "file is larger than 256 MB; not read";
            return false;
        }
        bytes.append(chunk, n);
    }
    bool failed = std::ferror(f) != 0;
    std::fclose(f);
    if (failed) {
        reason = "cannot read the file";
        return false;
    }
    return true;
}

}  // namespace

bool VCardDocument::LoadFile(std::string& path) {
    card_ = VCardContent{};
    cards_.clear();
    diagnostics_.clear();
    if (path.empty()) {
        ui::FileDialogRequest request;
        request.title = "Open a business card";
        request.filter = kFilter;
        request.defaultExtension = "vcf";
        path = ui::CurrentUiHost().ShowOpenDialog(request);
        if (path.empty()) return false;
    }
    std::string bytes;
    std::string reason;
    if (!ReadWholeFile(path, bytes, reason)) {
        diagnostics_.push_back({path, 0, 0, Severity::Error, reason});
        return false;
    }
    return LoadBytes(bytes, path);
}

bool VCardDocument::LoadBytes(std::string_view bytes, std::string_view name) {
    card_ = VCardContent{};
    ReadResult r = ReadVCards(bytes, name, options_);
    cards_ = std::move(r.cards);
    diagnostics_ = std::move(r.diagnostics);
    return LoadCard(1);
}

bool VCardDocument::LoadCard(int n) {
    if (n < 1 || n > CardCount()) return false;
    card_ = cards_[static_cast<std::size_t>(n - 1)].content;
    return true;
}

int VCardDocument::CardNumber(int n) const {
    return n >= 1 && n <= CardCount() ? cards_[static_cast<std::size_t>(n - 1)].number : 0;
}

long VCardDocument::CardLine(int n) const {
    return n >= 1 && n <= CardCount() ? cards_[static_cast<std::size_t>(n - 1)].line : 0;
}

std::string VCardDocument::ToText() const { return WriteVCard(card_); }

bool VCardDocument::SaveFile(std::string& path) {
    if (path.empty()) {
        ui::FileDialogRequest request;
        request.title = "Save the business card";
        request.filter = kFilter;
        request.defaultExtension = "vcf";
        request.fileName = card_.FullName.empty() ? std::string() : card_.FullName + ".vcf";
        path = ui::CurrentUiHost().ShowSaveDialog(request);
        if (path.empty()) return false;
    }
    // Written beside the target and renamed over it, so a failure half-way
    // (a full disk) leaves no torn card and the old file, if any, intact.
    std::string text = ToText();
    std::string temp = path + ".part";
    errno = 0;
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (out) out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (out) out.close();
    bool ok = static_cast<bool>(out) && std::rename(temp.c_str(), path.c_str()) == 0;
    if (!ok) {
        int saved = errno;
        std::remove(temp.c_str());
        throw Error(75,
                    "Path/File access error: cannot write " + path +
                        (saved ? std::string(" (") + std::strerror(saved) + ")" : std::string()),
                    "VCardDocument.SaveFile");
    }
    return true;
}

}  // namespace zelvo::vcard
