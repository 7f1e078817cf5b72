#include "platform/dao/row_storage.h"

#include <cstring>
#include <functional>
#include <mutex>

namespace zelvo::dao::detail {

namespace {

enum : char { kNull = 0, kInteger, kDouble, kBoolean, kText, kBytes };

template <class T>
T Read(const char* p) {
    T v;
    std::memcpy(&v, p, sizeof(T));
    return v;
}

// Blocks of 128 KiB; the pool keeps up to 32 MiB of them between record sets.
constexpr std::size_t kBlockSize = 128 * 1024;
constexpr std::size_t kPoolLimit = 256;

struct BlockPool {
    std::mutex mutex;
    std::vector<char*> free;
    ~BlockPool() {
        for (char* b : free) delete[] b;
    }
};

BlockPool& Pool() {
    static BlockPool pool;
    return pool;
}

char* TakeBlock() {
    BlockPool& pool = Pool();
    {
        std::lock_guard lock(pool.mutex);
        if (!pool.free.empty()) {
            char* b = pool.free.back();
            pool.free.pop_back();
            return b;
        }
    }
    return new char[kBlockSize];
}

void GiveBack(char* block) {
    BlockPool& pool = Pool();
    {
        std::lock_guard lock(pool.mutex);
        if (pool.free.size() < kPoolLimit) {
            pool.free.push_back(block);
            return;
        }
    }
    delete[] block;
}

}  // namespace

// ------------------------------------------------------------ RowArena

char* RowArena::Allocate(std::size_t size) {
    size = (size + 7) & ~std::size_t{7};
    if (size > kBlockSize / 4) {
        large_.push_back(std::make_unique<char[]>(size));
        return large_.back().get();
    }
    if (size > left_) {
        blocks_.push_back(TakeBlock());
        next_ = blocks_.back();
        left_ = kBlockSize;
    }
    char* p = next_;
    next_ += size;
    left_ -= size;
    return p;
}

void RowArena::Clear() {
    for (char* b : blocks_) GiveBack(b);
    blocks_.clear();
    large_.clear();
    next_ = nullptr;
    left_ = 0;
}

// ------------------------------------------------------------ PackedValues

PackedValues::Builder::Builder(std::vector<Staged>& staging, std::size_t count) : staged_(staging), count_(count) {
    staged_.resize(count);
}

void PackedValues::Builder::Null() { Next().kind = kNull; }

void PackedValues::Builder::Integer(std::int64_t v) {
    Staged& s = Next();
    s.kind = kInteger;
    s.integer = v;
}

void PackedValues::Builder::Double(double v) {
    Staged& s = Next();
    s.kind = kDouble;
    s.real = v;
}

void PackedValues::Builder::Boolean(bool v) {
    Staged& s = Next();
    s.kind = kBoolean;
    s.integer = v ? 1 : 0;
}

void PackedValues::Builder::Text(std::string_view v) {
    Staged& s = Next();
    s.kind = kText;
    s.size = static_cast<std::uint32_t>(v.size());
    s.bytes = v.data();
}

void PackedValues::Builder::Bytes(const std::uint8_t* data, std::size_t size) {
    Staged& s = Next();
    s.kind = kBytes;
    s.size = static_cast<std::uint32_t>(size);
    s.bytes = reinterpret_cast<const char*>(data);
}

void PackedValues::Builder::Add(const Variant& v) {
    switch (v.kind()) {
        case Variant::Kind::Null: Null(); break;
        case Variant::Kind::Integer: Integer(v.integer()); break;
        case Variant::Kind::Double: Double(v.real()); break;
        case Variant::Kind::Boolean: Boolean(v.boolean()); break;
        case Variant::Kind::Text: Text(v.text()); break;
        case Variant::Kind::Bytes: Bytes(v.bytes().data(), v.bytes().size()); break;
    }
}

PackedValues PackedValues::Builder::Finish(RowArena* arena) {
    while (next_ < count_) Null();
    std::size_t size = count_ * sizeof(std::uint32_t);
    for (const Staged& v : staged_) {
        size += 1;
        switch (v.kind) {
            case kInteger: case kDouble: size += 8; break;
            case kBoolean: size += 1; break;
            case kText: case kBytes: size += sizeof(std::uint32_t) + v.size; break;
            default: break;
        }
    }
    std::unique_ptr<char[]> owned;
    char* const bytes = arena ? arena->Allocate(size) : (owned = std::make_unique<char[]>(size)).get();
    char* out = bytes + count_ * sizeof(std::uint32_t);
    for (std::size_t i = 0; i < count_; ++i) {
        const Staged& v = staged_[i];
        const auto offset = static_cast<std::uint32_t>(out - bytes);
        std::memcpy(bytes + i * sizeof(std::uint32_t), &offset, sizeof offset);
        *out++ = v.kind;
        switch (v.kind) {
            case kInteger: case kDouble: std::memcpy(out, &v.integer, 8); out += 8; break;
            case kBoolean: *out++ = v.integer ? 1 : 0; break;
            case kText: case kBytes:
                std::memcpy(out, &v.size, sizeof v.size);
                out += sizeof v.size;
                if (v.size) std::memcpy(out, v.bytes, v.size);
                out += v.size;
                break;
            default: break;
        }
    }
    return PackedValues(bytes, size, count_, std::move(owned));
}

PackedValues::PackedValues(const char* data, std::size_t size, std::size_t count, std::unique_ptr<char[]> owned)
    : data_(data), size_(size), count_(count), owned_(std::move(owned)) {}

PackedValues::PackedValues(const PackedValues& other) : size_(other.size_), count_(other.count_) {
    if (other.data_) {
        owned_ = std::make_unique<char[]>(size_);
        std::memcpy(owned_.get(), other.data_, size_);
        data_ = owned_.get();
    }
}

PackedValues& PackedValues::operator=(const PackedValues& other) {
    if (this != &other) *this = PackedValues(other);
    return *this;
}

PackedValues::PackedValues(PackedValues&& other) noexcept
    : data_(other.data_), size_(other.size_), count_(other.count_), owned_(std::move(other.owned_)) {
    other.data_ = nullptr;
    other.size_ = other.count_ = 0;
}

PackedValues& PackedValues::operator=(PackedValues&& other) noexcept {
    if (this != &other) {
        data_ = other.data_;
        size_ = other.size_;
        count_ = other.count_;
        owned_ = std::move(other.owned_);
        other.data_ = nullptr;
        other.size_ = other.count_ = 0;
    }
    return *this;
}

PackedValues PackedValues::Of(const std::vector<Variant>& values) {
    std::vector<Builder::Staged> staging;
    Builder b(staging, values.size());
    for (const Variant& v : values) b.Add(v);
    return b.Finish();
}

Variant PackedValues::Get(std::size_t i) const {
    const char* p = data_ + Read<std::uint32_t>(data_ + i * sizeof(std::uint32_t));
    switch (*p++) {
        case kInteger: return Variant(Read<std::int64_t>(p));
        case kDouble: return Variant(Read<double>(p));
        case kBoolean: return Variant(*p != 0);
        case kText: return Variant(std::string(p + sizeof(std::uint32_t), Read<std::uint32_t>(p)));
        case kBytes: {
            const auto* b = reinterpret_cast<const std::uint8_t*>(p + sizeof(std::uint32_t));
            return Variant(zelvo::Bytes(b, b + Read<std::uint32_t>(p)));
        }
        default: return Variant();
    }
}

std::vector<Variant> PackedValues::Unpack() const {
    std::vector<Variant> out;
    out.reserve(count_);
    for (std::size_t i = 0; i < count_; ++i) out.push_back(Get(i));
    return out;
}

// ------------------------------------------------------------ RowKeys

void RowKeys::assign(std::size_t count, std::int64_t value) {
    size_ = count;
    heap_.clear();
    if (count <= kInline) {
        for (std::size_t i = 0; i < count; ++i) inline_[i] = value;
    } else {
        heap_.assign(count, value);
    }
}

void RowKeys::PushBackToHeap(std::int64_t value) {
    if (size_ == kInline) heap_.assign(inline_, inline_ + kInline);
    heap_.push_back(value);
    ++size_;
}

bool RowKeys::operator==(const RowKeys& other) const {
    if (size_ != other.size_) return false;
    for (std::size_t i = 0; i < size_; ++i)
        if ((*this)[i] != other[i]) return false;
    return true;
}

std::size_t RowKeys::Hash() const {
    std::size_t h = 0;
    for (std::size_t i = 0; i < size_; ++i) h = h * 1000003u ^ std::hash<std::int64_t>()((*this)[i]);
    return h;
}

}  // namespace zelvo::dao::detail
