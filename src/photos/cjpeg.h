// cJpeg: the system's own baseline JPEG encoder, and PictureToJpeg.
//
// A complete encoder with no image library behind it: it samples a cImage,
// converts colour (Y Cb Cr), runs the floating-point AAN DCT, quantizes, and
// then builds the optimal Huffman tables for this one image (ITU T.81 Annex
// K.2) before it writes a baseline sequential JFIF file (SOF0, no restart
// markers). Every vCard photo leaves the book through it.
//
// Use: settings (Quality, SetSamplingFrequencies, Comment), then SampleHDC,
// then CreateArray or SaveFile. Quantization happens inside SampleHDC, so a
// later change of Quality doesn't change the blocks.
//
// Errors raised to the caller are zelvo::Error with number 1 and the texts
// kInvalidSampling, kIllegalCommentLength, kBadQuantizationTable,
// kIllegalPrecision and kBadHuffmanTable.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "photos/cimage.h"
#include "platform/imaging/picture.h"

namespace zelvo {

inline constexpr const char* kInvalidSampling = "Invalid Sampling Value";
inline constexpr const char* kIllegalCommentLength = "Illegal Comment Length";
inline constexpr const char* kBadQuantizationTable = "Bad Quantization Table";
inline constexpr const char* kIllegalPrecision = "Illegal precission in Quantization Table";
inline constexpr const char* kBadHuffmanTable = "Bad Huffman Table";
// The frame header holds each side in 16 bits.
inline constexpr const char* kPictureTooLarge = "Picture too large for JPEG: at most 65535 pixels a side";

class cJpeg {
public:
    struct Component {
        int Id = 0;       // 1 Y, 2 Cb, 3 Cr
        int H = 1, V = 1; // sampling factors, 1 to 4
        int Tq = 0;       // quantization slot: 0 for the first component, 1 for the others
        std::vector<std::int16_t> Data;  // quantized blocks, 64 values each in zigzag order, row by row
        int BlocksPerRow = 0;            // blocks in one row of the plane
        int BlockRows = 0;
    };

    // Defaults: quality 75; sampling 2x2, 1x1, 1x1 (4:2:0); no comment.
    cJpeg();

    int Quality() const { return quality_; }
    // 1 to 100 scales the base tables of ITU T.81 Annex K (50 gives them
    // as they are); any other value is ignored and the tables stay.
    void Quality(int q);

    // Factors of Y, Cb, Cr, each 1 to 4. H2..V3 all 0 makes a one-component
    // (grey) image with factors 1x1. Raises kInvalidSampling for a value out
    // of range, changing nothing. Replaces the components, dropping any
    // blocks sampled before.
    void SetSamplingFrequencies(int H1, int V1, int H2, int V2, int H3, int V3);

    // Samples Width x Height pixels from (SrcX, SrcY) of the image behind
    // hDC, and quantizes them. Result 0 on success, 1 when there was no image
    // to sample or the size can't be held.
    void SampleHDC(Hdc hDC, int Width, int Height, int SrcX, int SrcY, int& Result);

    const std::string& Comment() const { return comment_; }
    // Stored only (no segment of the file carries it). Raises
    // kIllegalCommentLength above 65535 characters, keeping the old value.
    void Comment(const std::string& text);

    // The finished file. Can be called again: the tables are rebuilt from the
    // sampled blocks each time. Raises kBadHuffmanTable when there is nothing
    // sampled to code.
    void CreateArray(std::vector<std::uint8_t>& Bytes);

    // Writes the file: Result 1 for an empty name, 2 when the file exists
    // (it is left untouched), 0 after the write. A failing write raises
    // zelvo::Error 75.
    void SaveFile(const std::string& FileName, int& Result);

    // What the file is made of, for inspection.
    int Precision() const { return precision_; }
    int Width() const { return width_; }
    int Height() const { return height_; }
    int ComponentCount() const { return int(components_.size()); }
    int HMax() const { return hMax_; }
    int VMax() const { return vMax_; }
    const Component& GetComponent(int i) const { return components_.at(std::size_t(i)); }
    // The 64 steps of a quantization slot (0 or 1), in zigzag order.
    const std::array<int, 64>& QuantizationSteps(int slot) const { return steps_.at(std::size_t(slot)); }

    // One Huffman slot: BITS, HUFFVAL, and each symbol's code and size.
    struct HuffmanTable {
        std::array<std::uint8_t, 17> Bits{};  // Bits[l]: count of codes of length l
        std::vector<std::uint8_t> HuffVal;
        std::array<std::uint16_t, 256> Code{};
        std::array<std::uint8_t, 256> Size{};  // 0: the symbol has no code
    };

private:
    struct Statistics {
        std::array<std::array<std::int64_t, 256>, 2> dc{}, ac{};
    };

    void MakeDivisors();
    std::vector<std::vector<int>> ScanGroups() const;
    void Gather(Statistics& stats) const;
    void WriteScan(const std::vector<int>& group, std::vector<std::uint8_t>& out) const;

    int precision_ = 0;
    int width_ = 0;
    int height_ = 0;
    int hMax_ = 1;
    int vMax_ = 1;
    int quality_ = 0;
    std::string comment_;
    std::vector<Component> components_;
    std::array<std::array<int, 64>, 4> steps_{};
    std::array<std::array<float, 64>, 4> divisors_{};  // zigzag order, like the steps
    std::array<HuffmanTable, 2> dcTables_, acTables_;
};

// A picture as the JPEG that a vCard carries: copied into a cImage at its
// own depth, encoded by a cJpeg at its defaults (quality 75, 4:2:0), at the
// picture's own size. Errors of the encoder go to the caller.
std::vector<std::uint8_t> PictureToJpeg(const imaging::Picture& Picture);

}  // namespace zelvo
