// zelvo jpeg: encodes a picture file the way the vCard export does, so that
// a user can see what a photo becomes and compare with other encoders.
#include <charconv>
#include <fstream>
#include <iostream>

#include "command.h"
#include "photos/cjpeg.h"
#include "platform/core/error.h"
#include "platform/imaging/picture_loader.h"

namespace zelvo::cli {

extern const Command kJpegCommand;

namespace {

int RunJpeg(std::span<const std::string> args) {
    if (WantsHelp(args)) {
        std::cout << kJpegCommand.usage;
        return kExitOk;
    }
    std::vector<std::string> files;
    int quality = 0;  // 0: the encoder's default, as the export runs it
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--quality" || args[i] == "-q") {
            if (i + 1 >= args.size()) return UsageError("jpeg", "--quality needs a value");
            const std::string& v = args[++i];
            auto [end, ec] = std::from_chars(v.data(), v.data() + v.size(), quality);
            if (ec != std::errc() || end != v.data() + v.size() || quality < 1 || quality > 100)
                return UsageError("jpeg", "the quality must be a whole number from 1 to 100");
        } else if (!args[i].empty() && args[i][0] == '-' && args[i] != "-") {
            return UsageError("jpeg", "unknown option " + args[i]);
        } else {
            files.push_back(args[i]);
        }
    }
    if (files.size() != 2) return UsageError("jpeg", "give the input picture and the output file");

    imaging::PictureLoader loader;
    const std::optional<imaging::Picture> picture = loader.LoadPicture(files[0]);
    if (!picture) {
        std::cerr << "zelvo jpeg: " << files[0] << ": " << loader.LastError().Description << " (error "
                  << loader.LastError().Number << ")\n";
        return kExitFailure;
    }
    std::vector<std::uint8_t> bytes;
    try {
        if (quality == 0) {
            bytes = PictureToJpeg(*picture);
        } else {
            // The same steps as PictureToJpeg, with the quality asked for.
            cImage image;
            int bitCount = 0;
            image.CopyStdPicture(*picture, bitCount);
            cJpeg jpeg;
            jpeg.Quality(quality);
            int result = 0;
            jpeg.SampleHDC(image.hdc(), image.Width(), image.Height(), 0, 0, result);
            jpeg.CreateArray(bytes);
        }
    } catch (const Error& e) {
        std::cerr << "zelvo jpeg: " << e.description() << " (error " << e.number() << ")\n";
        return kExitFailure;
    }
    std::ofstream out(files[1], std::ios::binary | std::ios::trunc);
    if (!out || !out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size())) ||
        !out.flush()) {
        std::cerr << "zelvo jpeg: cannot write " << files[1] << "\n";
        return kExitFailure;
    }
    std::cout << files[1] << ": " << picture->Width << "x" << picture->Height << ", " << bytes.size()
              << " bytes\n";
    return kExitOk;
}

}  // namespace

extern const Command kJpegCommand{
    "jpeg", "encode a picture as the JPEG a vCard photo becomes",
    "Usage: zelvo jpeg IN OUT [--quality Q]\n"
    "Reads the picture IN (JPEG, PNG, GIF, TIFF, BMP or PNM) and writes OUT as the\n"
    "baseline JPEG the vCard export makes of it: 4:2:0, optimal Huffman tables,\n"
    "quality 75 unless Q (1 to 100) is given. OUT is overwritten.\n",
    RunJpeg};

}  // namespace zelvo::cli
