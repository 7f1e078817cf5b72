#include "platform/dao/row_storage.h"

#include <cstring>
#include <functional>
#include <mutex>

namespace zelvo::dao::detail {

namespace {

enum : char { kNull = 0, kInteger, kDouble, kBoolean, kText, kBytes };

template <class T>
void Append(std::string& out, T v) {
    char buf[sizeof(T)];
    std::memcpy(buf, &v, sizeof(T));
    out.append(buf, sizeof(T));
}

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

PackedValues::Builder::Builder(std::string& scratch, std::size_t count, std::size_t payloadHint)
    : data_(scratch), count_(count) {
    data_.clear();
    data_.reserve(count * (sizeof(std::uint32_t) + 1) + payloadHint);
    data_.resize(count * sizeof(std::uint32_t));
}

void PackedValues::Builder::Begin(char kind) {
    auto offset = static_cast<std::uint32_t>(data_.size());
    std::memcpy(data_.data() + next_ * sizeof(std::uint32_t), &offset, sizeof offset);
    ++next_;
    data_.push_back(kind);
}

void PackedValues::Builder::Null() { Begin(kNull); }

void PackedValues::Builder::Integer(std::int64_t v) {
    Begin(kInteger);
    Append(data_, v);
}

void PackedValues::Builder::Double(double v) {
    Begin(kDouble);
    Append(data_, v);
}

void PackedValues::Builder::Boolean(bool v) {
    Begin(kBoolean);
    data_.push_back(v ? 1 : 0);
}

void PackedValues::Builder::Text(std::string_view v) {
    Begin(kText);
    Append(data_, static_cast<std::uint32_t>(v.size()));
    data_.append(v);
}

void PackedValues::Builder::Bytes(const std::uint8_t* data, std::size_t size) {
    Begin(kBytes);
    Append(data_, static_cast<std::uint32_t>(size));
    data_.append(reinterpret_cast<const char*>(data), size);
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
    if (arena) {
        char* bytes = arena->Allocate(data_.size());
        std::memcpy(bytes, data_.data(), data_.size());
        return PackedValues(bytes, data_.size(), count_, nullptr);
    }
    auto owned = std::make_unique<char[]>(data_.size());
    std::memcpy(owned.get(), data_.data(), data_.size());
    const char* bytes = owned.get();
    return PackedValues(bytes, data_.size(), count_, std::move(owned));
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
    std::string scratch;
    Builder b(scratch, values.size());
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

void RowKeys::push_back(std::int64_t value) {
    if (size_ < kInline) {
        inline_[size_++] = value;
        return;
    }
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
