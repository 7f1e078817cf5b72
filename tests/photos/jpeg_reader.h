// A small, independent reader of baseline JPEG files for the tests: splits a
// file into its segments and decodes the entropy-coded scans into blocks of
// quantized coefficients, following ITU T.81 directly (MCU geometry from the
// frame header, Huffman codes from the DHT segments). It shares no code with
// the encoder, so the two can check each other.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace zelvo::testing {

struct Segment {
    std::uint8_t marker = 0;        // the byte after FF
    std::vector<std::uint8_t> body; // without marker and length
    std::vector<std::uint8_t> data; // after an SOS: the entropy-coded bytes as stored (stuffed)
};

std::vector<Segment> SplitSegments(const std::vector<std::uint8_t>& file);

// The markers in order, as text: "SOI APP0 DQT ... EOI".
std::string MarkerNames(const std::vector<Segment>& segments);

struct HuffmanCodes {
    std::uint8_t bits[17] = {};
    std::vector<std::uint8_t> values;
};

struct FrameComponent {
    int id = 0, h = 1, v = 1, tq = 0;
    int blocksPerRow = 0, blockRows = 0;  // of the component's plane
};

struct DecodedBlock {
    int component = 0;   // index in the frame
    int row = 0, col = 0;  // block position in the plane; may lie outside it
    bool inside = true;  // false for the padding blocks of an edge MCU
    std::int16_t coef[64] = {};  // zigzag order, DC absolute
};

struct DecodedScan {
    std::vector<int> components;  // indexes into the frame
    std::vector<DecodedBlock> blocks;
    int paddingBits = 0;  // bits left at the end of the data (all ones)
};

struct DecodedJpeg {
    int precision = 0, width = 0, height = 0;
    std::vector<FrameComponent> components;
    std::map<int, HuffmanCodes> tables;  // key: class * 16 + slot (0x00 DC0, 0x10 AC0, ...)
    std::vector<std::vector<int>> quant; // per DQT slot, zigzag order
    std::vector<DecodedScan> scans;
};

// Decodes a baseline file; throws std::runtime_error on anything malformed.
DecodedJpeg DecodeBaseline(const std::vector<std::uint8_t>& file);

}  // namespace zelvo::testing
