// JPEG through libjpeg-turbo: every variant a camera or phone writes
// (baseline, progressive, grey, Adobe CMYK/YCCK, restart markers).
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>
#include <jerror.h>

#include "platform/imaging/decoders.h"

namespace zelvo::imaging::detail {

namespace {

// A progressive file may carry any number of scans; past this many it is
// damaged or hostile, and decoding it would only burn time.
constexpr int kMaxScans = 1000;

struct ErrorManager {
    jpeg_error_mgr pub;
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX];
    bool truncated = false;
};

void OnError(j_common_ptr cinfo) {
    auto* err = reinterpret_cast<ErrorManager*>(cinfo->err);
    (*cinfo->err->format_message)(cinfo, err->message);
    std::longjmp(err->jump, 1);
}

void OnMessage(j_common_ptr cinfo, int level) {
    // Warnings about damaged data are passed over, as every viewer does, but a
    // file that ends early is an error: the rest of the picture would be grey.
    if (level < 0 && cinfo->err->msg_code == JWRN_JPEG_EOF) {
        auto* err = reinterpret_cast<ErrorManager*>(cinfo->err);
        err->truncated = true;
    }
}

void OnProgress(j_common_ptr cinfo) {
    if (cinfo->is_decompressor) {
        auto* d = reinterpret_cast<j_decompress_ptr>(cinfo);
        if (d->input_scan_number > kMaxScans) {
            auto* err = reinterpret_cast<ErrorManager*>(cinfo->err);
            std::snprintf(err->message, sizeof err->message, "more than %d scans", kMaxScans);
            std::longjmp(err->jump, 1);
        }
    }
}

}  // namespace

bool LooksLikeJpeg(Bytes b) { return b.size() >= 3 && b[0] == 0xFF && b[1] == 0xD8 && b[2] == 0xFF; }

Picture DecodeJpeg(Bytes b) { return DecodeJpeg(b, 0, 0); }

Picture DecodeJpeg(Bytes b, int minWidth, int minHeight) {
    jpeg_decompress_struct cinfo{};
    ErrorManager err{};
    jpeg_progress_mgr progress{};
    Picture pic;
    cinfo.err = jpeg_std_error(&err.pub);
    err.pub.error_exit = OnError;
    err.pub.emit_message = OnMessage;
    std::vector<std::uint8_t> row;
    if (setjmp(err.jump)) {
        jpeg_destroy_decompress(&cinfo);
        Fail(std::string("JPEG: ") + err.message);
    }
    jpeg_create_decompress(&cinfo);
    progress.progress_monitor = OnProgress;
    cinfo.progress = &progress;
    jpeg_mem_src(&cinfo, b.data(), static_cast<unsigned long>(b.size()));
    jpeg_read_header(&cinfo, TRUE);
    const bool cmyk = cinfo.jpeg_color_space == JCS_CMYK || cinfo.jpeg_color_space == JCS_YCCK;
    cinfo.out_color_space = cmyk ? JCS_CMYK : JCS_RGB;
    {
        // Checked before jpeg_start_decompress, which allocates the buffers.
        const std::int64_t w = cinfo.image_width, h = cinfo.image_height;
        if (w <= 0 || h <= 0 || w * h > kMaxPicturePixels) {
            jpeg_destroy_decompress(&cinfo);
            AllocatePicture(pic, w, h);  // throws with the reason
        }
    }
    if (minWidth > 0 && minHeight > 0) {
        for (unsigned denom = 8; denom >= 2; denom /= 2) {
            if ((cinfo.image_width + denom - 1) / denom >= unsigned(minWidth) &&
                (cinfo.image_height + denom - 1) / denom >= unsigned(minHeight)) {
                cinfo.scale_num = 1;
                cinfo.scale_denom = denom;
                break;
            }
        }
    }
    jpeg_start_decompress(&cinfo);
    AllocatePicture(pic, cinfo.output_width, cinfo.output_height);
    row.resize(std::size_t(cinfo.output_width) * std::size_t(cinfo.output_components));
    while (cinfo.output_scanline < cinfo.output_height) {
        JSAMPROW rows[1] = {row.data()};
        const int y = int(cinfo.output_scanline);
        if (jpeg_read_scanlines(&cinfo, rows, 1) != 1) break;
        std::uint8_t* out = pic.Row(y);
        if (cmyk) {
            // Adobe writes CMYK inverted (the byte is 255 - ink), so the ink
            // left on white paper is the product of the stored values.
            for (unsigned x = 0; x < cinfo.output_width; ++x) {
                const unsigned c = row[4 * x], m = row[4 * x + 1], yy = row[4 * x + 2], k = row[4 * x + 3];
                const bool inverted = cinfo.saw_Adobe_marker;
                auto chan = [&](unsigned v) {
                    return std::uint8_t(inverted ? (v * k + 127) / 255 : ((255 - v) * (255 - k) + 127) / 255);
                };
                out[3 * x] = chan(c);
                out[3 * x + 1] = chan(m);
                out[3 * x + 2] = chan(yy);
            }
        } else {
            std::memcpy(out, row.data(), row.size());
        }
    }
    if (err.truncated) {
        jpeg_destroy_decompress(&cinfo);
        Fail("JPEG: the file ends before the picture does");
    }
    jpeg_finish_decompress(&cinfo);
    jpeg_destroy_decompress(&cinfo);
    if (err.truncated) Fail("JPEG: the file ends before the picture does");
    return pic;
}

}  // namespace zelvo::imaging::detail
