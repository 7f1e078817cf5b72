// How a record set keeps the rows it has read. A set walked from its last
// row to its first holds every row at once, so a row is stored compactly:
// its values packed into bytes, its table keys inline. The bytes of the
// rows read from SQLite come from a RowArena, whose blocks are used again
// by the next record set instead of going back to the system (a list filled
// anew would otherwise fault in fresh pages for every row, every time).
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/variant.h"

namespace zelvo::dao::detail {

// Memory for the packed rows of one record set, taken in blocks from a
// pool the whole process shares; Clear gives the blocks back to the pool.
class RowArena {
public:
    RowArena() = default;
    RowArena(const RowArena&) = delete;
    RowArena& operator=(const RowArena&) = delete;
    ~RowArena() { Clear(); }

    char* Allocate(std::size_t size);  // 8-byte aligned, valid until Clear
    void Clear();

private:
    std::vector<char*> blocks_;
    std::vector<std::unique_ptr<char[]>> large_;  // pieces bigger than a block's quarter
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

// The values of one row, packed: for each value a kind byte, then 8 bytes
// for a number, 1 for a Boolean, or a 4-byte length and the bytes of a text
// or binary value. An offset table in front finds value i at once.
class PackedValues {
public:
    // Builds a row value by value. Values are only noted as they come (a
    // text or byte value by reference: its bytes must stay valid until
    // Finish), and Finish writes the row once, at its exact size. The
    // staging vector is the caller's, so its capacity serves row after row.
    class Builder {
    public:
        struct Staged {
            char kind;
            std::uint32_t size;  // of a text or byte value
            union {
                std::int64_t integer;
                double real;
                const char* bytes;
            };
        };
        Builder(std::vector<Staged>& staging, std::size_t count);
        void Null();
        void Integer(std::int64_t v);
        void Double(double v);
        void Boolean(bool v);
        void Text(std::string_view v);
        void Bytes(const std::uint8_t* data, std::size_t size);
        void Add(const Variant& v);
        // The row, its bytes in `arena` (nullptr: on the heap, its own).
        PackedValues Finish(RowArena* arena = nullptr);

    private:
        Staged& Next() { return staged_[next_++]; }
        std::vector<Staged>& staged_;
        std::size_t count_;
        std::size_t next_ = 0;
    };

    PackedValues() = default;
    // A copy owns its bytes, wherever the original's are.
    PackedValues(const PackedValues& other);
    PackedValues& operator=(const PackedValues& other);
    PackedValues(PackedValues&& other) noexcept;
    PackedValues& operator=(PackedValues&& other) noexcept;
    static PackedValues Of(const std::vector<Variant>& values);

    std::size_t size() const { return count_; }
    Variant Get(std::size_t i) const;
    std::vector<Variant> Unpack() const;

private:
    PackedValues(const char* data, std::size_t size, std::size_t count, std::unique_ptr<char[]> owned);

    const char* data_ = nullptr;  // offsets (uint32 each), then the values
    std::size_t size_ = 0;
    std::size_t count_ = 0;
    std::unique_ptr<char[]> owned_;  // the bytes, when they are not in an arena
};

// The rowids of the tables a row came from, one per keyed source; most
// record sets have one or two, which live inside the row itself.
class RowKeys {
public:
    RowKeys() = default;
    RowKeys(std::size_t count, std::int64_t value) { assign(count, value); }
    void assign(std::size_t count, std::int64_t value);
    void push_back(std::int64_t value) {
        if (size_ < kInline) {
            inline_[size_++] = value;
            return;
        }
        PushBackToHeap(value);
    }
    std::size_t size() const { return size_; }
    std::int64_t& operator[](std::size_t i) { return size_ <= kInline ? inline_[i] : heap_[i]; }
    std::int64_t operator[](std::size_t i) const { return size_ <= kInline ? inline_[i] : heap_[i]; }
    bool operator==(const RowKeys& other) const;
    std::size_t Hash() const;

private:
    void PushBackToHeap(std::int64_t value);
    static constexpr std::size_t kInline = 3;
    std::size_t size_ = 0;
    std::int64_t inline_[kInline] = {};
    std::vector<std::int64_t> heap_;  // all keys, when there are more than kInline
};

// The rows of a record set in read order. Like std::deque it grows without
// moving what it holds, but its chunks double in size (8 rows, 16, 32, ...),
// so a set of one row costs one small chunk and a set of a hundred thousand
// a few big ones, and a row is found by a bit count instead of a division
// (libstdc++'s deque holds only five rows of this size per block). Slots are
// built with their chunk and emptied on pop_back.
template <class T>
class ChunkedList {
public:
    std::size_t size() const { return size_; }
    T& operator[](std::size_t i) { return At(i); }
    const T& operator[](std::size_t i) const { return const_cast<ChunkedList*>(this)->At(i); }

    T& emplace_back() {
        if (size_ == capacity_) {
            const std::size_t chunk = kFirst << chunks_.size();
            chunks_.push_back(std::make_unique<T[]>(chunk));
            capacity_ += chunk;
        }
        return At(size_++);
    }
    void push_back(T&& value) { emplace_back() = std::move(value); }
    void pop_back() { At(--size_) = T(); }
    void clear() {
        chunks_.clear();
        size_ = capacity_ = 0;
    }

private:
    static constexpr std::size_t kFirstBits = 3;
    static constexpr std::size_t kFirst = std::size_t{1} << kFirstBits;

    // Chunk c holds the rows from kFirst * (2^c - 1) on; with p = i + kFirst,
    // c is the place of p's highest bit less kFirstBits, and the rest of p's
    // bits are the offset in the chunk.
    T& At(std::size_t i) {
        const std::size_t p = i + kFirst;
        const int high = std::bit_width(p) - 1;
        return chunks_[std::size_t(high) - kFirstBits][p - (std::size_t{1} << high)];
    }

    std::vector<std::unique_ptr<T[]>> chunks_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace zelvo::dao::detail
